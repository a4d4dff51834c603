// The CMPI provider module: one instance and method provider for every class of libProviderHelper. A
// request's class name finds the library's function at run time, so a class that the library gains needs
// nothing here.
#include "provider_helper/provider_helper.h"

#include <cmpimacs.h>
#include <cstdio>
#include <dlfcn.h>
#include <new>
#include <string_view>

namespace {

// What a created provider keeps; CMPI hands it back as the MI's handle.
struct Provider {
    const CMPIBroker* broker;
    CMPIInstanceMI instanceMI;
    CMPIMethodMI methodMI;
};

// The library's function of the class that `ref` names, such as PH_EI_Sensor, or nullptr with a status.
template <class Function>
Function find(const Provider& provider, const char* operation, const CMPIObjectPath* ref,
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
    status.msg = CMNewString(provider.broker, "This provider does not serve the class", nullptr);
    return nullptr;
}

CMPIStatus done(const CMPIResult* result, const CMPIStatus& status) {
    return status.rc == CMPI_RC_OK ? CMReturnDone(result) : status;
}

const Provider& providerOf(const CMPIInstanceMI* mi) {
    return *static_cast<const Provider*>(mi->hdl);
}

CMPIStatus enumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                             const CMPIObjectPath* ref) {
    const Provider& provider = providerOf(mi);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (const auto function = find<decltype(&PH_EIN_HostComputerSystem)>(provider, "PH_EIN_", ref, status))
        function(provider.broker, context, ref, result, &status);
    return done(result, status);
}

CMPIStatus enumInstances(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                         const CMPIObjectPath* ref, const char** properties) {
    const Provider& provider = providerOf(mi);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (const auto function = find<decltype(&PH_EI_HostComputerSystem)>(provider, "PH_EI_", ref, status))
        function(provider.broker, context, ref, properties, result, &status);
    return done(result, status);
}

CMPIStatus getInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                       const CMPIObjectPath* ref, const char** properties) {
    const Provider& provider = providerOf(mi);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (const auto function = find<decltype(&PH_GI_HostComputerSystem)>(provider, "PH_GI_", ref, status))
        function(provider.broker, context, ref, properties, result, &status);
    return done(result, status);
}

CMPIStatus createInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* ref, const CMPIInstance* instance) {
    const Provider& provider = providerOf(mi);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (const auto function = find<decltype(&PH_CI_HostComputerSystem)>(provider, "PH_CI_", ref, status))
        status = function(provider.broker, context, result, ref, instance);
    return status;
}

CMPIStatus modifyInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* ref, const CMPIInstance* instance, const char** properties) {
    const Provider& provider = providerOf(mi);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (const auto function = find<decltype(&PH_MI_HostComputerSystem)>(provider, "PH_MI_", ref, status))
        status = function(provider.broker, context, result, ref, instance, properties);
    return status;
}

CMPIStatus deleteInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* ref) {
    const Provider& provider = providerOf(mi);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (const auto function = find<decltype(&PH_DI_HostComputerSystem)>(provider, "PH_DI_", ref, status))
        status = function(provider.broker, context, result, ref);
    return status;
}

CMPIStatus execQuery(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                     const char*, const char*) {
    return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

CMPIStatus invokeMethod(CMPIMethodMI* mi, const CMPIContext* context, const CMPIResult* result,
                        const CMPIObjectPath* ref, const char* method, const CMPIArgs* in, CMPIArgs* out) {
    const Provider& provider = *static_cast<const Provider*>(mi->hdl);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (const auto function = find<decltype(&PH_IM_HostComputerSystem)>(provider, "PH_IM_", ref, status))
        status = function(provider.broker, context, result, ref, method, in, out);
    return status;
}

CMPIStatus cleanup(CMPIInstanceMI* mi, const CMPIContext*, CMPIBoolean) {
    delete static_cast<Provider*>(const_cast<void*>(mi->hdl));
    return {CMPI_RC_OK, nullptr};
}

CMPIStatus methodCleanup(CMPIMethodMI* mi, const CMPIContext*, CMPIBoolean) {
    delete static_cast<Provider*>(const_cast<void*>(mi->hdl));
    return {CMPI_RC_OK, nullptr};
}

constexpr CMPIInstanceMIFT instanceFunctions{.ftVersion = CMPICurrentVersion,
                                             .miVersion = CMPICurrentVersion,
                                             .miName = "ProviderHelper",
                                             .cleanup = cleanup,
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
                                         .cleanup = methodCleanup,
                                         .invokeMethod = invokeMethod};

Provider* create(const CMPIBroker* broker, const CMPIContext* context, const char* name, CMPIStatus* status) {
    // Once per process: the library's tables are the same for every provider.
    static const int initialised = PH_Init(broker, context, name, status);
    Provider* provider = new (std::nothrow) Provider{.broker = broker, .instanceMI = {}, .methodMI = {}};
    if (status != nullptr)
        *status = {provider != nullptr && initialised == 0 ? CMPI_RC_OK : CMPI_RC_ERR_FAILED, nullptr};
    if (provider != nullptr) {
        provider->instanceMI = {.hdl = provider, .ft = &instanceFunctions};
        provider->methodMI = {.hdl = provider, .ft = &methodFunctions};
    }
    return provider;
}

} // namespace

// The entry points that object managers look for: by the provider's registered name, or for any name.
extern "C" {

PH_EXPORT CMPIInstanceMI* _Generic_Create_InstanceMI(const CMPIBroker* broker, const CMPIContext* context,
                                                     const char* name, CMPIStatus* status) {
    Provider* provider = create(broker, context, name, status);
    return provider != nullptr ? &provider->instanceMI : nullptr;
}

PH_EXPORT CMPIMethodMI* _Generic_Create_MethodMI(const CMPIBroker* broker, const CMPIContext* context,
                                                 const char* name, CMPIStatus* status) {
    Provider* provider = create(broker, context, name, status);
    return provider != nullptr ? &provider->methodMI : nullptr;
}

PH_EXPORT CMPIInstanceMI* ProviderHelper_Create_InstanceMI(const CMPIBroker* broker,
                                                           const CMPIContext* context, CMPIStatus* status) {
    return _Generic_Create_InstanceMI(broker, context, "ProviderHelper", status);
}

PH_EXPORT CMPIMethodMI* ProviderHelper_Create_MethodMI(const CMPIBroker* broker, const CMPIContext* context,
                                                       CMPIStatus* status) {
    return _Generic_Create_MethodMI(broker, context, "ProviderHelper", status);
}

} // extern "C"
