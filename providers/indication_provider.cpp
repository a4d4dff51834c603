#include "indication_provider.h"

#include "provider_helper/alert_delivery.h"

#include <mutex>
#include <pthread.h>
#include <strings.h>

namespace {

bool startThread() {
    PH_Init_Indication();
    pthread_t monitor; // detaches itself
    return pthread_create(&monitor, nullptr, ReadSELEvents_And_Deliver, nullptr) == 0;
}

// The monitor reads the pipe as long as the process lasts: an object manager that only wants memory back
// keeps this provider.
CMPIStatus cleanUp(CMPIIndicationMI* mi, const CMPIContext*, CMPIBoolean terminating) {
    if (terminating == 0)
        return {CMPI_RC_NEVER_UNLOAD, nullptr};
    PH_Delete_Pipe();
    delete mi;
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

// Where alerts go is a matter of the BMC's filters and destinations, whoever subscribes at the object
// manager.
CMPIStatus activateFilter(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*, const char*,
                          const CMPIObjectPath*, CMPIBoolean) {
    return {CMPI_RC_OK, nullptr};
}

CMPIStatus enableOrDisable(CMPIIndicationMI*, const CMPIContext*) {
    return {CMPI_RC_OK, nullptr};
}

} // namespace

CMPIIndicationMIFT indicationFunctions{
    CMPICurrentVersion, CMPICurrentVersion, "ProviderHelper", cleanUp,         authorizeFilter,
    mustPoll,           activateFilter,     activateFilter,   enableOrDisable, enableOrDisable};

bool startMonitor() {
    static std::once_flag once;
    static bool started = false;
    std::call_once(once, [] { started = startThread(); });
    return started;
}
