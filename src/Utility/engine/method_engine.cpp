// How requests for methods are answered, over the tables of all classes.
#include "Utility/engine/class_family.h"
#include "Utility/requests/request_texts.h"

#include <algorithm>
#include <strings.h>

namespace ph {

bool MethodCall::makeJobPath() {
    if (job_.hasPath() || job_.makePath(request.broker, request.ref))
        return true;
    refuse(CMPI_RC_ERR_FAILED, noJobPath);
    return false;
}

bool MethodCall::readRequestedState(std::uint16_t& state) {
    const auto requested = argument(request.in, "RequestedState");
    if (requested && GetUINT16Value(*requested, &state) == 0)
        return true;
    refuse(CMPI_RC_ERR_INVALID_PARAMETER, "RequestedState Parameter is Invalid");
    return false;
}

MethodAnswer MethodCall::notCreated() {
    return how_->notCreated.message != nullptr ? refuse(how_->notCreated) : MethodAnswer(methodFailed);
}

MethodAnswer MethodCall::handOut(MethodJob::Outcome outcome) {
    const bool isHandedOut = (outcome != MethodJob::Outcome::Unrecorded || how_->handsOutUnrecorded) &&
                             job_.returnReference(request.out);
    if (outcome == MethodJob::Outcome::Started)
        return methodStarted; // whether or not the client gets to know the job
    return isHandedOut && outcome == MethodJob::Outcome::Done ? methodDone : methodFailed;
}

namespace engine {
namespace {

using Keys = Invocation::Keys;
using Closes = Invocation::Closes;

bool readKeys(const ClassFamily& family, MethodCall& call) {
    call.status = call.keys.read(call.request.broker, call.request.ref, family.keys);
    if (call.status.rc == CMPI_RC_OK)
        return true;
    if (family.invocation.badKeys.message != nullptr)
        call.refuse(family.invocation.badKeys);
    return false;
}

bool isThere(const ClassFamily& family, MethodCall& call) {
    const Invocation& rules = family.invocation;
    const bool isThere = rules.isLookedUp ? hasInstance(family, call.keys)
                                          : rules.exists == nullptr || rules.exists(call.keys);
    if (isThere)
        return true;
    call.refuse(rules.missing);
    return false;
}

const Method* find(const ClassFamily& family, const Request& request) {
    if (request.method == nullptr ||
        (family.invocation.keys == Keys::None && !isOfClass(request.ref, family.name)))
        return nullptr;
    const auto method = std::ranges::find_if(
        family.methods, [&](const Method& each) { return strcasecmp(each.name, request.method) == 0; });
    return method != family.methods.end() ? &*method : nullptr;
}

// Does what comes before the method itself. Returns nullptr when the request is refused.
const Method* accept(const ClassFamily& family, MethodCall& call) {
    const Invocation& rules = family.invocation;
    if ((rules.isTakenUpFirst && !call.makeJobPath()) ||
        (rules.keys == Keys::First && !readKeys(family, call)))
        return nullptr;
    const Method* method = find(family, call.request);
    if (method == nullptr) {
        call.refuse(rules.unknownMethod);
        return nullptr;
    }
    return rules.keys != Keys::First || isThere(family, call) ? method : nullptr;
}

// Runs the method and returns its value to the client.
MethodAnswer carryOut(const ClassFamily& family, const Method& method, MethodCall& call) {
    const auto run = [&]() -> MethodAnswer {
        if (family.invocation.keys == Keys::AfterName && (!readKeys(family, call) || !isThere(family, call)))
            return std::nullopt;
        if (method.job.has_value()) {
            if (!call.makeJobPath())
                return std::nullopt;
            call.reportAs(*method.job);
        }
        return method.carryOut(call);
    };
    const MethodAnswer answer = run();
    if (const auto value = answer.has_value() ? answer : method.refusedValue)
        returnValue(call.request.result, *value, method.valueType);
    return answer;
}

// Any exception of these is a want of memory.
template <class Answer>
MethodAnswer answered(MethodCall& call, Answer answer) {
    try {
        return answer();
    } catch (...) {
        return call.refuse(CMPI_RC_ERR_FAILED, "Out of memory");
    }
}

} // namespace

CMPIStatus invoke(const ClassFamily& family, const CMPIBroker* broker, const CMPIContext* context,
                  const CMPIResult* result, const CMPIObjectPath* ref, const char* name, const CMPIArgs* in,
                  CMPIArgs* out) {
    if (family.methods.empty())
        return fail(broker, CMPI_RC_ERR_NOT_SUPPORTED, "Invoke Method not supported");
    const Invocation& rules = family.invocation;
    const Request request{.broker = broker,
                          .context = context,
                          .result = result,
                          .ref = ref,
                          .method = name,
                          .in = in,
                          .out = out};
    MethodCall call(request);
    const MethodAnswer answer = answered(call, [&]() -> MethodAnswer {
        if (const Method* method = accept(family, call))
            return carryOut(family, *method, call);
        if (rules.isTakenUpFirst)
            returnValue(result, methodFailed);
        return std::nullopt;
    });
    if (rules.closes == Closes::Always || (rules.closes == Closes::WhenDone && answer == methodDone))
        CMReturnDone(result);
    return call.status;
}

MethodAnswer carryOut(const ClassFamily& family, const Method& method, const Request& request,
                      CMPIString** keys, CMPIStatus* status) {
    MethodCall call(request);
    call.keys.assign(keys, family.keys.size());
    const MethodAnswer answer = answered(call, [&] { return carryOut(family, method, call); });
    if (status != nullptr && call.status.rc != CMPI_RC_OK)
        *status = call.status;
    return answer;
}

} // namespace engine
} // namespace ph
