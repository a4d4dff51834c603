// The CMPI provider module: one instance and method provider for every class of libProviderHelper, and the
// providers of their associations and of indications. A request's class name finds the library's function at
// run time, so a class that the library gains needs nothing here.
#include "association_provider.h"
#include "indication_provider.h"
#include "provider_helper/provider_helper.h"
#include "request_result.h"

#include <cmpimacs.h>
#include <cstdio>
#include <dlfcn.h>
#include <mutex>
#include <new>
#include <string_view>
#include <type_traits>

namespace {

// The library's function of the class that `ref` names, such as PH_EI_Sensor, or nullptr with a status.
template <class Function>
Function find(const CMPIBroker* broker, const char* operation, const CMPIObjectPath* ref,
              CMPIStatus& status) {
    const CMPIString* name = CMGetClassName(ref, nullptr);
    const char* className = name != nullptr ? CMGetCharsPtr(name, nullptr) : nullptr;
    char symbol[256];
    if (className != nullptr && std::string_view(className).starts_with("CIM_") &&
        std::snprintf(symbol, sizeof(symbol), "%s%s", operation, className + 4) <
            static_cast<int>(sizeof(symbol)))
        if (void* function = dlsym(RTLD_DEFAULT, symbol))
            return reinterpret_cast<Function>(function);
    status.rc = CMPI_RC_ERR_INVALID_CLASS;
    status.msg = CMNewString(broker, "This provider does not serve the class", nullptr);
    return nullptr;
}

template <class MI>
const CMPIBroker* brokerOf(const MI* mi) {
    return static_cast<const CMPIBroker*>(mi->hdl);
}

// Runs call(function, broker, result, status) with the class's function. The result of a request that
// succeeds is closed once.
template <class Function, class MI, class Call>
CMPIStatus serve(const MI* mi, const char* operation, const CMPIObjectPath* ref, const CMPIResult* real,
                 Call call) {
    const CMPIBroker* const broker = brokerOf(mi);
    const RequestResult result(real);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (const auto function = find<Function>(broker, operation, ref, status))
        call(function, broker, result.get(), status);
    return status.rc == CMPI_RC_OK ? result.close() : status;
}

CMPIStatus enumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* real,
                             const CMPIObjectPath* ref) {
    if (isAssociationOrProfile(ref))
        return enumerateAssociations({brokerOf(mi), context, real, ref}, associations::Want::Names);
    return serve<decltype(&PH_EIN_HostComputerSystem)>(
        mi, "PH_EIN_", ref, real, [&](auto function, auto* broker, auto* result, CMPIStatus& status) {
            function(broker, context, ref, result, &status);
        });
}

CMPIStatus enumInstances(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* real,
                         const CMPIObjectPath* ref, const char** properties) {
    if (isAssociationOrProfile(ref))
        return enumerateAssociations({brokerOf(mi), context, real, ref, properties},
                                     associations::Want::Instances);
    return serve<decltype(&PH_EI_HostComputerSystem)>(
        mi, "PH_EI_", ref, real, [&](auto function, auto* broker, auto* result, CMPIStatus& status) {
            function(broker, context, ref, properties, result, &status);
        });
}

CMPIStatus getInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* real,
                       const CMPIObjectPath* ref, const char** properties) {
    if (isAssociationOrProfile(ref))
        return getAssociation({brokerOf(mi), context, real, ref, properties});
    return serve<decltype(&PH_GI_HostComputerSystem)>(
        mi, "PH_GI_", ref, real, [&](auto function, auto* broker, auto* result, CMPIStatus& status) {
            function(broker, context, ref, properties, result, &status);
        });
}

CMPIStatus createInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* real,
                          const CMPIObjectPath* ref, const CMPIInstance* instance) {
    if (isAssociationOrProfile(ref))
        return refuseChange(brokerOf(mi), "CreateInstance not supported");
    return serve<decltype(&PH_CI_HostComputerSystem)>(
        mi, "PH_CI_", ref, real, [&](auto function, auto* broker, auto* result, CMPIStatus& status) {
            status = function(broker, context, result, ref, instance);
        });
}

CMPIStatus modifyInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* real,
                          const CMPIObjectPath* ref, const CMPIInstance* instance, const char** properties) {
    if (isAssociationOrProfile(ref))
        return refuseChange(brokerOf(mi), "SetInstance not supported");
    return serve<decltype(&PH_MI_HostComputerSystem)>(
        mi, "PH_MI_", ref, real, [&](auto function, auto* broker, auto* result, CMPIStatus& status) {
            status = function(broker, context, result, ref, instance, properties);
        });
}

CMPIStatus deleteInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* real,
                          const CMPIObjectPath* ref) {
    if (isAssociationOrProfile(ref))
        return refuseChange(brokerOf(mi), "DeleteInstance not supported");
    return serve<decltype(&PH_DI_HostComputerSystem)>(
        mi, "PH_DI_", ref, real, [&](auto function, auto* broker, auto* result, CMPIStatus& status) {
            status = function(broker, context, result, ref);
        });
}

CMPIStatus execQuery(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                     const char*, const char*) {
    return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

CMPIStatus invokeMethod(CMPIMethodMI* mi, const CMPIContext* context, const CMPIResult* real,
                        const CMPIObjectPath* ref, const char* method, const CMPIArgs* in, CMPIArgs* out) {
    if (isAssociationOrProfile(ref))
        return refuseChange(brokerOf(mi), "Invoke Method not supported");
    return serve<decltype(&PH_IM_HostComputerSystem)>(
        mi, "PH_IM_", ref, real, [&](auto function, auto* broker, auto* result, CMPIStatus& status) {
            status = function(broker, context, result, ref, method, in, out);
        });
}

template <class MI>
CMPIStatus cleanUp(MI* mi, const CMPIContext*, CMPIBoolean) {
    delete mi;
    return {CMPI_RC_OK, nullptr};
}

constexpr CMPIInstanceMIFT instanceFunctions{.ftVersion = CMPICurrentVersion,
                                             .miVersion = CMPICurrentVersion,
                                             .miName = "ProviderHelper",
                                             .cleanup = cleanUp,
                                             .enumerateInstanceNames = enumInstanceNames,
                                             .enumerateInstances = enumInstances,
                                             .getInstance = getInstance,
                                             .createInstance = createInstance,
                                             .modifyInstance = modifyInstance,
                                             .deleteInstance = deleteInstance,
                                             .execQuery = execQuery,
                                             .enumerateInstancesFiltered = nullptr};

constexpr CMPIMethodMIFT methodFunctions{.ftVersion = CMPICurrentVersion,
                                         .miVersion = CMPICurrentVersion,
                                         .miName = "ProviderHelper",
                                         .cleanup = cleanUp,
                                         .invokeMethod = invokeMethod};

// Once per process: the library's tables are the same for every provider.
void initialiseOnce(const CMPIBroker* broker, const CMPIContext* context, const char* name,
                    CMPIStatus* status) {
    static std::once_flag initialised;
    std::call_once(initialised, [&] { PH_Init(broker, context, name, status); });
}

// A provider that knows its broker: a process may have several.
template <class MI, class Functions>
MI* create(const Functions& functions, const CMPIBroker* broker, const CMPIContext* context, const char* name,
           CMPIStatus* status) {
    initialiseOnce(broker, context, name, status);
    MI* mi = nullptr;
    if (!std::is_same_v<MI, CMPIIndicationMI> || startMonitor())
        mi = new (std::nothrow) MI{.hdl = broker, .ft = &functions};
    if (status != nullptr)
        *status = {mi != nullptr ? CMPI_RC_OK : CMPI_RC_ERR_FAILED, nullptr};
    return mi;
}

} // namespace

// The entry points that object managers look for: for any provider, by the provider's registered name, and by
// the name of the module's file.
#define ENTRY_POINTS(Kind, functions)                                                                        \
    PH_EXPORT CMPI##Kind##MI* _Generic_Create_##Kind##MI(                                                    \
        const CMPIBroker* broker, const CMPIContext* context, const char* name, CMPIStatus* status) {        \
        return create<CMPI##Kind##MI>(functions, broker, context, name, status);                             \
    }                                                                                                        \
    NAMED_ENTRY_POINT(ProviderHelper, Kind, functions)                                                       \
    NAMED_ENTRY_POINT(ProviderHelperProviders, Kind, functions)
#define NAMED_ENTRY_POINT(name, Kind, functions)                                                             \
    PH_EXPORT CMPI##Kind##MI* name##_Create_##Kind##MI(const CMPIBroker* broker, const CMPIContext* context, \
                                                       CMPIStatus* status) {                                 \
        return create<CMPI##Kind##MI>(functions, broker, context, #name, status);                            \
    }

extern "C" {
ENTRY_POINTS(Instance, instanceFunctions)
ENTRY_POINTS(Method, methodFunctions)
ENTRY_POINTS(Association, associationFunctions)
ENTRY_POINTS(Indication, indicationFunctions)
}
