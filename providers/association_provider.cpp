#include "association_provider.h"

#include "spelling.h"

#include <exception>

namespace {

using associations::Filter;
using associations::Request;
using associations::Want;
using objects::Failure;

// Runs work() on the request in the classes' spelling, closes the result, and tells how that ended.
template <class Work>
CMPIStatus answer(Request request, Work work) {
    const auto fail = [&](CMPIrc code, const char* text) {
        return CMPIStatus{code, CMNewString(request.broker, text, nullptr)};
    };
    try {
        const spelling::Path path(request.broker, request.ref);
        request.ref = path.get();
        work(request);
        return CMReturnDone(request.result);
    } catch (const Failure& failure) {
        return fail(failure.code, failure.what());
    } catch (const std::exception& error) { // no memory
        return fail(CMPI_RC_ERR_FAILED, error.what());
    }
}

const CMPIBroker* brokerOf(const CMPIAssociationMI* mi) {
    return static_cast<const CMPIBroker*>(mi->hdl);
}

// Some brokers give an empty name where the client gave none.
const char* given(const char* name) {
    return name != nullptr && *name != '\0' ? name : nullptr;
}

CMPIStatus cleanUp(CMPIAssociationMI* mi, const CMPIContext*, CMPIBoolean) {
    delete mi;
    return {CMPI_RC_OK, nullptr};
}

CMPIStatus associators(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                       const CMPIObjectPath* ref, const char* assocClass, const char* resultClass,
                       const char* role, const char* resultRole, const char** properties) {
    const Filter filter{given(assocClass), given(resultClass), given(role), given(resultRole)};
    return answer({brokerOf(mi), context, result, ref, properties}, [&](const Request& request) {
        associations::associators(request, filter, Want::Instances);
    });
}

CMPIStatus associatorNames(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                           const CMPIObjectPath* ref, const char* assocClass, const char* resultClass,
                           const char* role, const char* resultRole) {
    const Filter filter{given(assocClass), given(resultClass), given(role), given(resultRole)};
    return answer({brokerOf(mi), context, result, ref},
                  [&](const Request& request) { associations::associators(request, filter, Want::Names); });
}

CMPIStatus references(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                      const CMPIObjectPath* ref, const char* resultClass, const char* role,
                      const char** properties) {
    const Filter filter{.assocClass = given(resultClass), .role = given(role)};
    return answer({brokerOf(mi), context, result, ref, properties}, [&](const Request& request) {
        associations::references(request, filter, Want::Instances);
    });
}

CMPIStatus referenceNames(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* ref, const char* resultClass, const char* role) {
    const Filter filter{.assocClass = given(resultClass), .role = given(role)};
    return answer({brokerOf(mi), context, result, ref},
                  [&](const Request& request) { associations::references(request, filter, Want::Names); });
}

} // namespace

CMPIAssociationMIFT associationFunctions{
    CMPICurrentVersion, CMPICurrentVersion, "ProviderHelper", cleanUp,
    associators,        associatorNames,    references,       referenceNames};

bool isAssociationOrProfile(const CMPIObjectPath* ref) {
    const CMPIString* name = CMGetClassName(ref, nullptr);
    const char* className = name != nullptr ? CMGetCharsPtr(name, nullptr) : nullptr;
    return className != nullptr && associations::serves(className);
}

CMPIStatus enumerateAssociations(const Request& request, Want want) {
    return answer(request, [&](const Request& spelled) { associations::enumerate(spelled, want); });
}

CMPIStatus getAssociation(const Request& request) {
    return answer(request, [&](const Request& spelled) { associations::getInstance(spelled); });
}

CMPIStatus refuseChange(const CMPIBroker* broker, const char* refusal) {
    return {CMPI_RC_ERR_NOT_SUPPORTED, CMNewString(broker, refusal, nullptr)};
}
