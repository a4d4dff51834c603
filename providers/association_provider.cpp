#include "association_provider.h"

#include <exception>

namespace {

using associations::Failure;
using associations::Filter;
using associations::Request;
using associations::Want;

// Runs work(), closes the result, and tells how that ended.
template <class Work>
CMPIStatus answer(const Request& request, Work work) {
    const auto fail = [&](CMPIrc code, const char* text) {
        return CMPIStatus{code, CMNewString(request.broker, text, nullptr)};
    };
    try {
        work();
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
    const Request request{brokerOf(mi), context, result, ref, properties};
    const Filter filter{given(assocClass), given(resultClass), given(role), given(resultRole)};
    return answer(request, [&] { associations::associators(request, filter, Want::Instances); });
}

CMPIStatus associatorNames(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                           const CMPIObjectPath* ref, const char* assocClass, const char* resultClass,
                           const char* role, const char* resultRole) {
    const Request request{brokerOf(mi), context, result, ref};
    const Filter filter{given(assocClass), given(resultClass), given(role), given(resultRole)};
    return answer(request, [&] { associations::associators(request, filter, Want::Names); });
}

CMPIStatus references(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                      const CMPIObjectPath* ref, const char* resultClass, const char* role,
                      const char** properties) {
    const Request request{brokerOf(mi), context, result, ref, properties};
    const Filter filter{.assocClass = given(resultClass), .role = given(role)};
    return answer(request, [&] { associations::references(request, filter, Want::Instances); });
}

CMPIStatus referenceNames(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* ref, const char* resultClass, const char* role) {
    const Request request{brokerOf(mi), context, result, ref};
    const Filter filter{.assocClass = given(resultClass), .role = given(role)};
    return answer(request, [&] { associations::references(request, filter, Want::Names); });
}

} // namespace

constexpr CMPIAssociationMIFT associationFunctions{.ftVersion = CMPICurrentVersion,
                                                   .miVersion = CMPICurrentVersion,
                                                   .miName = "ProviderHelper",
                                                   .cleanup = cleanUp,
                                                   .associators = associators,
                                                   .associatorNames = associatorNames,
                                                   .references = references,
                                                   .referenceNames = referenceNames,
                                                   .associatorsFiltered = nullptr,
                                                   .referencesFiltered = nullptr};

bool isAssociationOrProfile(const CMPIObjectPath* ref) {
    const CMPIString* name = CMGetClassName(ref, nullptr);
    const char* className = name != nullptr ? CMGetCharsPtr(name, nullptr) : nullptr;
    return className != nullptr && associations::serves(className);
}

CMPIStatus enumerateAssociations(const Request& request, Want want) {
    return answer(request, [&] { associations::enumerate(request, want); });
}

CMPIStatus getAssociation(const Request& request) {
    return answer(request, [&] { associations::getInstance(request); });
}

CMPIStatus refuseChange(const CMPIBroker* broker, const char* refusal) {
    return {CMPI_RC_ERR_NOT_SUPPORTED, CMNewString(broker, refusal, nullptr)};
}
