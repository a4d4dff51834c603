#include "pending_deliveries.h"

#include "provider_helper/utility.h"

#include <algorithm>
#include <new>

namespace {

constexpr const char* serviceNameSpace = PH_INTEROP_NAMESPACE;
constexpr const char* repeatNameSpace = "root/cimv2";
// An object manager that takes nothing for a long time may not cost the BMC its memory.
constexpr std::size_t mostPending = 256;

struct Policy {
    CMPIUint16 attempts = 0;
    CMPIUint32 seconds = 0;
};

// Without a service nothing is repeated.
Policy policyOf(const CMPIBroker* broker, const CMPIContext* context) try {
    const auto path = objects::makePath(broker, serviceNameSpace, "CIM_IndicationService");
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const auto services =
        objects::made(CBEnumInstances(broker, context, path.get(), nullptr, &status), status);
    Policy policy;
    if (CMHasNext(services.get(), nullptr) == 0)
        return {};
    const CMPIInstance* const service = CMGetNext(services.get(), nullptr).value.inst;
    if (service == nullptr ||
        GetUINT16Value(CMGetProperty(service, "DeliveryRetryAttempts", nullptr), &policy.attempts) != 0)
        return {};
    (void)GetUINT32Value(CMGetProperty(service, "DeliveryRetryInterval", nullptr), &policy.seconds);
    return policy;
} catch (const objects::Failure&) {
    return {};
}

} // namespace

// The message of a refusal would stay as long as the thread is attached.
bool offerIndication(const CMPIBroker* broker, const CMPIContext* context, const char* nameSpace,
                     const CMPIInstance* indication) {
    const CMPIStatus status = CBDeliverIndication(broker, context, nameSpace, indication);
    const objects::Owned<CMPIString> message(status.msg);
    return status.rc == CMPI_RC_OK;
}

void PendingDeliveries::add(const CMPIContext* context, objects::Owned<CMPIInstance> indication) try {
    const Policy policy = policyOf(broker_, context);
    if (policy.attempts == 0)
        return;
    const std::chrono::seconds interval(policy.seconds);
    pending_.push_back({std::move(indication), policy.attempts, interval, Clock::now() + interval});
    if (pending_.size() > mostPending)
        pending_.pop_front();
} catch (const std::bad_alloc&) { // the indication is lost
}

PendingDeliveries::Clock::time_point PendingDeliveries::offer(const CMPIContext* context) {
    auto next = Clock::time_point::max();
    for (Pending& each : pending_) {
        if (Clock::now() >= each.due) {
            const bool isTaken = offerIndication(broker_, context, repeatNameSpace, each.indication.get());
            each.attempts = isTaken ? 0 : each.attempts - 1;
            each.due = Clock::now() + each.interval;
        }
        if (each.attempts > 0)
            next = std::min(next, each.due);
    }
    std::erase_if(pending_, [](const Pending& each) { return each.attempts == 0; });
    return next;
}
