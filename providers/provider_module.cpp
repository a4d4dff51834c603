// The CMPI provider module: one instance and method provider for every class of libProviderHelper, and the
// providers of their associations and of indications. A request's class name finds the library's function at
// run time, so a class that the library gains needs nothing here.
#include "association_provider.h"
#include "indication_provider.h"
#include "provider_helper/provider_helper.h"
#include "request_result.h"
#include "spelling.h"

#include <algorithm>
#include <dlfcn.h>
#include <mutex>
#include <new>
#include <type_traits>

namespace {

using objects::Failure;

template <class MI>
const CMPIBroker* brokerOf(const MI* mi) {
    return static_cast<const CMPIBroker*>(mi->hdl);
}

// Finds the library's function of a class, such as PH_EI_Sensor. Throws Failure where there is none.
template <class Function>
Function find(const char* operation, const CMPIObjectPath* ref) {
    const std::string className = objects::classNameOf(ref);
    if (className.starts_with("CIM_"))
        if (void* function = dlsym(RTLD_DEFAULT, (operation + className.substr(4)).c_str()))
            return reinterpret_cast<Function>(function);
    throw Failure(CMPI_RC_ERR_INVALID_CLASS, "This provider does not serve the class");
}

// Runs call(function, broker, path, result, status) with the class's function. The result of a request that
// succeeds is closed once.
template <class Function, class MI, class Call>
CMPIStatus serve(const MI* mi, const char* operation, const CMPIObjectPath* ref, const CMPIResult* real,
                 Call call) {
    const CMPIBroker* const broker = brokerOf(mi);
    try {
        const spelling::Path path(broker, ref);
        const RequestResult result(broker, ref, real);
        CMPIStatus status{CMPI_RC_OK, nullptr};
        call(find<Function>(operation, path.get()), broker, path.get(), result.get(), status);
        return status.rc == CMPI_RC_OK ? result.close() : status;
    } catch (const Failure& failure) {
        return {failure.code, CMNewString(broker, failure.what(), nullptr)};
    } catch (const std::exception& error) { // no memory
        return {CMPI_RC_ERR_FAILED, CMNewString(broker, error.what(), nullptr)};
    }
}

CMPIStatus enumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* real,
                             const CMPIObjectPath* ref) {
    if (isAssociationOrProfile(ref))
        return enumerateAssociations({brokerOf(mi), context, real, ref}, associations::Want::Names);
    return serve<decltype(&PH_EIN_HostComputerSystem)>(
        mi, "PH_EIN_", ref, real,
        [&](auto function, auto* broker, auto* path, auto* result, CMPIStatus& status) {
            function(broker, context, path, result, &status);
        });
}

CMPIStatus enumInstances(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* real,
                         const CMPIObjectPath* ref, const char** properties) {
    if (isAssociationOrProfile(ref))
        return enumerateAssociations({brokerOf(mi), context, real, ref, properties},
                                     associations::Want::Instances);
    return serve<decltype(&PH_EI_HostComputerSystem)>(
        mi, "PH_EI_", ref, real,
        [&](auto function, auto* broker, auto* path, auto* result, CMPIStatus& status) {
            function(broker, context, path, spelling::Names(properties).get(), result, &status);
        });
}

CMPIStatus getInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* real,
                       const CMPIObjectPath* ref, const char** properties) {
    if (isAssociationOrProfile(ref))
        return getAssociation({brokerOf(mi), context, real, ref, properties});
    return serve<decltype(&PH_GI_HostComputerSystem)>(
        mi, "PH_GI_", ref, real,
        [&](auto function, auto* broker, auto* path, auto* result, CMPIStatus& status) {
            function(broker, context, path, spelling::Names(properties).get(), result, &status);
        });
}

bool isMissing(const std::optional<CMPIData>& value) {
    return !value || (value->state & CMPI_nullValue) != 0;
}

// Over CIM-XML the path of an instance that is to be made has no keys: they are the instance's.
objects::Owned<CMPIObjectPath> pathOfNew(const CMPIBroker* broker, const CMPIObjectPath* path,
                                         const CMPIInstance* instance) {
    auto complete =
        objects::makePath(broker, objects::nameSpaceOf(path).c_str(), objects::classNameOf(path).c_str());
    const CMPIObjectPath* const own = CMGetObjectPath(instance, nullptr); // some brokers have none
    for (const char* key : spelling::keysOf(objects::classNameOf(path).c_str())) {
        auto value = own != nullptr ? objects::keyOf(own, key) : std::nullopt;
        if (isMissing(value))
            value = objects::propertyOf(instance, key);
        if (!isMissing(value))
            objects::addKey(complete.get(), key, *value);
    }
    return complete;
}

CMPIStatus createInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* real,
                          const CMPIObjectPath* ref, const CMPIInstance* instance) {
    if (isAssociationOrProfile(ref))
        return refuseChange(brokerOf(mi), "CreateInstance not supported");
    return serve<decltype(&PH_CI_HostComputerSystem)>(
        mi, "PH_CI_", ref, real,
        [&](auto function, auto* broker, auto* path, auto* result, CMPIStatus& status) {
            const spelling::Instance given(broker, path, instance);
            objects::Owned<CMPIObjectPath> complete;
            if (objects::keysOf(path).empty())
                complete = pathOfNew(broker, path, given.get());
            status =
                function(broker, context, result, complete != nullptr ? complete.get() : path, given.get());
        });
}

// Some object managers name all that was sent where the client named nothing. Such a list says no more than
// none does: what differs from the current instance is to be changed.
bool saysNothing(const char** properties, const CMPIInstance* instance) {
    if (properties == nullptr)
        return true;
    const auto sent = objects::propertiesOf(instance);
    std::size_t count = 0;
    while (properties[count] != nullptr)
        ++count;
    return count == sent.size() && std::all_of(sent.begin(), sent.end(), [&](const auto& property) {
               return ExistsInList(properties, property.name.c_str()) != 0;
           });
}

CMPIStatus modifyInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* real,
                          const CMPIObjectPath* ref, const CMPIInstance* instance, const char** properties) {
    if (isAssociationOrProfile(ref))
        return refuseChange(brokerOf(mi), "SetInstance not supported");
    return serve<decltype(&PH_MI_HostComputerSystem)>(
        mi, "PH_MI_", ref, real,
        [&](auto function, auto* broker, auto* path, auto* result, CMPIStatus& status) {
            const spelling::Instance given(broker, path, instance);
            spelling::Names names(saysNothing(properties, instance) ? nullptr : properties);
            status = function(broker, context, result, path, given.get(), names.get());
        });
}

CMPIStatus deleteInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* real,
                          const CMPIObjectPath* ref) {
    if (isAssociationOrProfile(ref))
        return refuseChange(brokerOf(mi), "DeleteInstance not supported");
    return serve<decltype(&PH_DI_HostComputerSystem)>(
        mi, "PH_DI_", ref, real,
        [&](auto function, auto* broker, auto* path, auto* result, CMPIStatus& status) {
            status = function(broker, context, result, path);
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
        mi, "PH_IM_", ref, real,
        [&](auto function, auto* broker, auto* path, auto* result, CMPIStatus& status) {
            status = function(broker, context, result, path,
                              method != nullptr ? spelling::spelled(method) : nullptr, in, out);
        });
}

template <class MI>
CMPIStatus cleanUp(MI* mi, const CMPIContext*, CMPIBoolean) {
    delete mi;
    return {CMPI_RC_OK, nullptr};
}

// By position: the names of members differ between versions of the headers, and newer ones have more at the
// end.
CMPIInstanceMIFT instanceFunctions{CMPICurrentVersion, CMPICurrentVersion, "ProviderHelper", cleanUp,
                                   enumInstanceNames,  enumInstances,      getInstance,      createInstance,
                                   modifyInstance,     deleteInstance,     execQuery};

// An installation of firmware is to end before its process does.
CMPIStatus cleanUpMethods(CMPIMethodMI* mi, const CMPIContext* context, CMPIBoolean terminating) {
    constexpr unsigned longestInstallation = 3600; // seconds
    if (PH_WaitForInstallation(terminating != 0 ? longestInstallation : 0) != 0 && terminating == 0)
        return {CMPI_RC_DO_NOT_UNLOAD, nullptr};
    return cleanUp(mi, context, terminating);
}

CMPIMethodMIFT methodFunctions{CMPICurrentVersion, CMPICurrentVersion, "ProviderHelper", cleanUpMethods,
                               invokeMethod};

// This happens once per process, because the library's tables are the same for every provider.
void initialiseOnce(const CMPIBroker* broker, const CMPIContext* context, const char* name,
                    CMPIStatus* status) {
    static std::once_flag initialised;
    std::call_once(initialised, [&] { PH_Init(broker, context, name, status); });
}

// A provider that knows its broker: a process may have several.
template <class MI, class Functions>
MI* make(Functions& functions, const CMPIBroker* broker, const CMPIContext* context) {
    if constexpr (std::is_same_v<MI, CMPIIndicationMI>)
        return createIndicationProvider(broker, context);
    else
        return new (std::nothrow) MI{const_cast<CMPIBroker*>(broker), &functions};
}

template <class MI, class Functions>
MI* create(Functions& functions, const CMPIBroker* broker, const CMPIContext* context, const char* name,
           CMPIStatus* status) {
    initialiseOnce(broker, context, name, status);
    MI* const mi = make<MI>(functions, broker, context);
    if (status != nullptr)
        *status = {mi != nullptr ? CMPI_RC_OK : CMPI_RC_ERR_FAILED, nullptr};
    return mi;
}

} // namespace

// The entry points that object managers look for: by the provider's registered name, or by the name of the
// module's file. One for any name (_Generic_Create_…) beside them would contradict them to some managers.
#define ENTRY_POINTS(Kind, functions)                                                                        \
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
