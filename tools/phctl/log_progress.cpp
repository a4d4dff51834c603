#include "log_progress.h"

#include "ipmi/command.h"

namespace phctl {
namespace {

constexpr std::size_t longLog = 1000; // records that a BMC sends within seconds
constexpr std::size_t stride = 100;   // records between two updates

} // namespace

void LogProgress::exchanged(std::uint8_t netFn, std::uint8_t command, Bytes request, Bytes answer) {
    const ipmi::CommandCode code{netFn, command};
    if (answer.empty() || answer[0] != ipmi::completion::success)
        return;
    if (code == ipmi::command::getSelInfo) {
        ipmi::Reader reader(answer);
        reader.skip(2); // completion code, version
        total_ = reader.u16();
        read_ = 0;
    } else if (code == ipmi::command::getSelEntry && read_ < total_) {
        ipmi::Reader reader(request);
        reader.skip(4); // reservation, record ID
        if (reader.u8() != 0)
            return; // a further part of the same record
        ++read_;
        if (total_ > longLog && (read_ % stride == 0 || read_ == total_))
            progress_.show("SEL", read_, total_);
    }
}

} // namespace phctl
