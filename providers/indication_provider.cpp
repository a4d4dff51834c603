#include "indication_provider.h"

#include "provider_helper/alert_delivery.h"
#include "sel_watch.h"

#include <cmpimacs.h>
#include <exception>
#include <mutex>
#include <new>
#include <pthread.h>
#include <strings.h>

namespace {

// What the monitor thread asks the object manager for, where the object manager does not offer it.
const CMPIBroker* monitorBroker = nullptr;
const CMPIContext* monitorContext = nullptr;

const CMPIBroker* brokerOfMonitor() {
    return monitorBroker;
}
const CMPIContext* contextOfMonitor() {
    return monitorContext;
}
// The thread is attached already, so there is nothing to take.
void* heapOfMonitor() {
    return const_cast<CMPIBroker*>(monitorBroker);
}

// This happens once in a process, even if the module is loaded again.
bool startMonitor(const CMPIBroker* broker, const CMPIContext* context) {
    static std::once_flag once;
    static bool isStarted = false;
    std::call_once(once, [&] {
        PH_Init_Indication();
        if (pGetBroker == nullptr || pGetContext == nullptr) {
            monitorBroker = broker;
            monitorContext = CBPrepareAttachThread(broker, context);
            pGetBroker = brokerOfMonitor;
            pGetContext = contextOfMonitor;
            GetHeap = heapOfMonitor;
        }
        pthread_t monitor; // detaches itself
        isStarted = pthread_create(&monitor, nullptr, ReadSELEvents_And_Deliver, nullptr) == 0;
    });
    return isStarted;
}

struct Provider {
    CMPIIndicationMI mi;
    SelWatch watch;
};

SelWatch& watchOf(CMPIIndicationMI* mi) {
    return static_cast<Provider*>(const_cast<void*>(static_cast<const void*>(mi->hdl)))->watch;
}

// The monitor reads the pipe as long as the process lasts: an object manager that only wants memory back
// keeps this provider.
CMPIStatus cleanUp(CMPIIndicationMI* mi, const CMPIContext*, CMPIBoolean terminating) {
    if (terminating == 0)
        return {CMPI_RC_NEVER_UNLOAD, nullptr};
    PH_Delete_Pipe();
    delete static_cast<Provider*>(const_cast<void*>(static_cast<const void*>(mi->hdl)));
    return {CMPI_RC_OK, nullptr};
}

// A filter may name the class or one that it derives from.
CMPIStatus authorizeFilter(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*, const char* className,
                           const CMPIObjectPath*, const char*) {
    for (const char* served : {"CIM_AlertIndication", "CIM_ProcessIndication", "CIM_Indication"})
        if (className != nullptr && strcasecmp(className, served) == 0)
            return {CMPI_RC_OK, nullptr};
    return {CMPI_RC_ERR_INVALID_CLASS, nullptr};
}

// Alerts come by themselves. Versions of the headers differ in the parameters.
template <class... Parameters>
CMPIStatus mustPoll(Parameters...) {
    return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

// A thread may not be had.
template <class Action>
CMPIStatus guarded(Action action) {
    try {
        action();
        return {CMPI_RC_OK, nullptr};
    } catch (const std::exception&) {
        return {CMPI_RC_ERR_FAILED, nullptr};
    }
}

CMPIStatus activateFilter(CMPIIndicationMI* mi, const CMPIContext* context, const CMPISelectExp*, const char*,
                          const CMPIObjectPath*, CMPIBoolean) {
    return guarded([&] { watchOf(mi).addFilter(context); });
}

CMPIStatus deActivateFilter(CMPIIndicationMI* mi, const CMPIContext*, const CMPISelectExp*, const char*,
                            const CMPIObjectPath*, CMPIBoolean) {
    return guarded([&] { watchOf(mi).removeFilter(); });
}

CMPIStatus enableIndications(CMPIIndicationMI* mi, const CMPIContext* context) {
    return guarded([&] { watchOf(mi).enable(context); });
}

CMPIStatus disableIndications(CMPIIndicationMI* mi, const CMPIContext*) {
    return guarded([&] { watchOf(mi).disable(); });
}

} // namespace

CMPIIndicationMIFT indicationFunctions{
    CMPICurrentVersion, CMPICurrentVersion, "ProviderHelper", cleanUp,           authorizeFilter,
    mustPoll,           activateFilter,     deActivateFilter, enableIndications, disableIndications};

CMPIIndicationMI* createIndicationProvider(const CMPIBroker* broker, const CMPIContext* context) {
    if (!startMonitor(broker, context))
        return nullptr;
    auto* const provider = new (std::nothrow) Provider{{nullptr, &indicationFunctions}, SelWatch(broker)};
    if (provider == nullptr)
        return nullptr;
    provider->mi.hdl = provider;
    return &provider->mi;
}
