// Answers to each hook: the input says which one is called, with which arguments, and what a BMC answers.
#include "answers.h"
#include "hook_calls.h"
#include "target.h"

#include <platform/cim_hooks.h>
#include <platform/support.h>

#include <unistd.h>

namespace {

Input* input = nullptr;

} // namespace

// In place of the libraries' own.
std::unique_ptr<ipmi::Transport> ipmi::openTransport(const SessionSettings&) {
    return std::make_unique<AnsweringInput>(*input);
}
#pragma GCC visibility push(default)
extern "C" {
void IDBG_LINUXAPP_DbgOut(int, const char*, ...) {}
int usleep(useconds_t) {
    return 0;
}
}
#pragma GCC visibility pop

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input bytes(data, size);
    input = &bytes;
    const auto hooks = hookCalls();
    const HookCall& hook = hooks[bytes.byte() % hooks.size()];
    IPMI20_SESSION_T session{};
    require(CIM_Create_IPMI20_Session(&session, "", 623, "", "", 0, 3, 0, 0, 4, 30) == 0,
            "a session is opened");
    const auto outcome = hook.call(&session, [&](std::uint64_t limit) { return bytes.byte() % limit; });
    require(outcome.faults.empty(), outcome.faults.empty() ? "" : outcome.faults.front().c_str());
    CIM_Close_Session(&session);
    return 0;
}
