// A provider over the CMPI interface alone. Its class names say what it does:
//   CIM_Item    has three instances, with Name "1" to "3"; other requests leave a trace in what they return
//   CIM_Broken  returns an instance, then fails with 1 "broken"; it fails to associate
//   CIM_Relay   makes the same request for CIM_Item through the broker
//   CIM_Who     returns the request's user as the Name of its instance
// As an association provider it names what it returns after the request's filters:
// "assocClass|resultClass|…". As an indication provider it delivers one indication for every listener that is
// announced.
#include <cmpimacs.h>
#include <string>
#include <string_view>

namespace {

const CMPIBroker* broker;
std::string filter;

const CMPIValue* text(const char* chars) {
    return reinterpret_cast<const CMPIValue*>(chars);
}

CMPIStatus failure(CMPIrc code, const char* message) {
    return {code, CMNewString(broker, message, nullptr)};
}

std::string classOf(const CMPIObjectPath* path) {
    return CMGetCharPtr(CMGetClassName(path, nullptr));
}

CMPIObjectPath* itemPath(const CMPIObjectPath* ref, const char* name) {
    CMPIObjectPath* path =
        CMNewObjectPath(broker, CMGetCharPtr(CMGetNameSpace(ref, nullptr)), "CIM_Item", nullptr);
    CMAddKey(path, "Name", text(name), CMPI_chars);
    return path;
}

CMPIObjectPath* relayed(const CMPIObjectPath* ref) {
    CMPIObjectPath* path = CMClone(ref, nullptr);
    CMSetClassName(path, "CIM_Item");
    return path;
}

CMPIStatus returnItem(const CMPIResult* result, const CMPIObjectPath* ref, const char* name,
                      const char** properties) {
    CMPIInstance* instance = CMNewInstance(broker, itemPath(ref, name), nullptr);
    const char* keys[] = {"Name", nullptr};
    CMSetPropertyFilter(instance, properties, keys);
    const CMPIValue size{.uint16 = 7};
    CMSetProperty(instance, "Size", &size, CMPI_uint16);
    CMSetProperty(instance, "Colour", text("blue"), CMPI_chars);
    return CMReturnInstance(result, instance);
}

// Makes the request for CIM_Item: ask(path, status) through the broker.
template <class Ask>
CMPIStatus relay(const CMPIResult* result, const CMPIObjectPath* ref, Ask ask) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIObjectPath* target = relayed(ref);
    CMPIEnumeration* items = ask(target, &status);
    CMRelease(target);
    while (items != nullptr && CMHasNext(items, nullptr)) {
        const CMPIData item = CMGetNext(items, nullptr);
        if (item.type == CMPI_ref)
            CMReturnObjectPath(result, item.value.ref);
        else
            CMReturnInstance(result, item.value.inst);
    }
    return status;
}

CMPIStatus testEnumInstanceNames(CMPIInstanceMI*, const CMPIContext* context, const CMPIResult* result,
                                 const CMPIObjectPath* ref) {
    if (classOf(ref) == "CIM_Relay")
        return relay(result, ref, [&](auto* path, auto* status) {
            return CBEnumInstanceNames(broker, context, path, status);
        });
    for (const char* name : {"1", "2", "3"})
        CMReturnObjectPath(result, itemPath(ref, name));
    return CMReturnDone(result);
}

CMPIStatus testEnumInstances(CMPIInstanceMI*, const CMPIContext* context, const CMPIResult* result,
                             const CMPIObjectPath* ref, const char** properties) {
    const std::string className = classOf(ref);
    if (className == "CIM_Who") {
        CMPIStatus status{CMPI_RC_OK, nullptr};
        const CMPIData user = CMGetContextEntry(context, CMPIPrincipal, &status);
        return returnItem(result, ref, status.rc == CMPI_RC_OK ? CMGetCharPtr(user.value.string) : "nobody",
                          nullptr);
    }
    if (className == "CIM_Relay") {
        CMPIStatus status{CMPI_RC_OK, nullptr};
        CMPIObjectPath* target = relayed(ref);
        CMPIEnumeration* items = CBEnumInstances(broker, context, target, properties, &status);
        CMRelease(target);
        CMPIArray* array = items != nullptr ? CMToArray(items, &status) : nullptr;
        for (CMPICount i = 0; array != nullptr && i < CMGetArrayCount(array, nullptr); ++i)
            CMReturnInstance(result, CMGetArrayElementAt(array, i, nullptr).value.inst);
        return status;
    }
    if (className == "CIM_Broken") {
        returnItem(result, ref, "1", properties);
        return failure(CMPI_RC_ERR_FAILED, "broken");
    }
    for (const char* name : {"1", "2", "3"})
        returnItem(result, ref, name, properties);
    return CMReturnDone(result);
}

CMPIStatus testGetInstance(CMPIInstanceMI*, const CMPIContext* context, const CMPIResult* result,
                           const CMPIObjectPath* ref, const char** properties) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (classOf(ref) == "CIM_Relay") {
        CMPIObjectPath* target = relayed(ref);
        const CMPIInstance* instance = CBGetInstance(broker, context, target, properties, &status);
        CMRelease(target);
        return instance != nullptr ? CMReturnInstance(result, instance) : status;
    }
    const CMPIData name = CMGetKey(ref, "Name", &status);
    if (status.rc != CMPI_RC_OK)
        return failure(CMPI_RC_ERR_NOT_FOUND, "no Name");
    return returnItem(result, ref, CMGetCharPtr(name.value.string), properties);
}

// Creates under the name that the instance has.
CMPIStatus testCreateInstance(CMPIInstanceMI*, const CMPIContext* context, const CMPIResult* result,
                              const CMPIObjectPath* ref, const CMPIInstance* instance) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (classOf(ref) == "CIM_Relay") {
        CMPIObjectPath* target = relayed(ref);
        const CMPIObjectPath* path = CBCreateInstance(broker, context, target, instance, &status);
        CMRelease(target);
        return path != nullptr ? CMReturnObjectPath(result, path) : status;
    }
    const CMPIData name = CMGetProperty(instance, "Name", &status);
    if (status.rc != CMPI_RC_OK)
        return failure(CMPI_RC_ERR_INVALID_PARAMETER, "no Name");
    return CMReturnObjectPath(result, itemPath(ref, CMGetCharPtr(name.value.string)));
}

// Fails with what it was asked, which is more than a success would tell.
CMPIStatus testModifyInstance(CMPIInstanceMI*, const CMPIContext* context, const CMPIResult*,
                              const CMPIObjectPath* ref, const CMPIInstance* instance,
                              const char** properties) {
    if (classOf(ref) == "CIM_Relay") {
        CMPIObjectPath* target = relayed(ref);
        const CMPIStatus status = CBModifyInstance(broker, context, target, instance, properties);
        CMRelease(target);
        return status;
    }
    std::string seen = CMGetCharPtr(CMGetKey(ref, "Name", nullptr).value.string);
    seen += " Size=" + std::to_string(CMGetProperty(instance, "Size", nullptr).value.uint16) + " list:";
    for (; properties != nullptr && *properties != nullptr; ++properties)
        seen += std::string(" ") + *properties;
    return failure(CMPI_RC_ERR_ACCESS_DENIED, seen.c_str());
}

CMPIStatus testDeleteInstance(CMPIInstanceMI*, const CMPIContext* context, const CMPIResult*,
                              const CMPIObjectPath* ref) {
    if (classOf(ref) == "CIM_Relay") {
        CMPIObjectPath* target = relayed(ref);
        const CMPIStatus status = CBDeleteInstance(broker, context, target);
        CMRelease(target);
        return status;
    }
    return failure(CMPI_RC_ERR_NOT_FOUND, CMGetCharPtr(CMGetKey(ref, "Name", nullptr).value.string));
}

CMPIStatus testExecQuery(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                         const char*, const char*) {
    return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

// Returns the argument Number plus 1, and hands the method's name out as Method.
CMPIStatus testInvokeMethod(CMPIMethodMI*, const CMPIContext* context, const CMPIResult* result,
                            const CMPIObjectPath* ref, const char* method, const CMPIArgs* in,
                            CMPIArgs* out) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    if (classOf(ref) == "CIM_Relay") {
        CMPIObjectPath* target = relayed(ref);
        const CMPIData value = CBInvokeMethod(broker, context, target, method, in, out, &status);
        CMRelease(target);
        return status.rc == CMPI_RC_OK ? CMReturnData(result, &value.value, value.type) : status;
    }
    CMPIData number = CMGetArg(in, "Number", &status);
    if (status.rc != CMPI_RC_OK)
        return failure(CMPI_RC_ERR_INVALID_PARAMETER, "no Number");
    number.value.uint32 += 1;
    CMReturnData(result, &number.value, CMPI_uint32);
    CMAddArg(out, "Method", text(method), CMPI_chars);
    return CMReturnDone(result);
}

std::string joined(std::initializer_list<const char*> filters) {
    std::string all;
    for (const char* filterName : filters)
        all += (all.empty() ? "" : "|") + std::string(filterName != nullptr ? filterName : "-");
    return all;
}

CMPIStatus testAssociators(CMPIAssociationMI*, const CMPIContext* context, const CMPIResult* result,
                           const CMPIObjectPath* ref, const char* assocClass, const char* resultClass,
                           const char* role, const char* resultRole, const char** properties) {
    if (classOf(ref) == "CIM_Relay")
        return relay(result, ref, [&](auto* path, auto* status) {
            return CBAssociators(broker, context, path, assocClass, resultClass, role, resultRole, properties,
                                 status);
        });
    return returnItem(result, ref, joined({assocClass, resultClass, role, resultRole}).c_str(), properties);
}

CMPIStatus testAssociatorNames(CMPIAssociationMI*, const CMPIContext* context, const CMPIResult* result,
                               const CMPIObjectPath* ref, const char* assocClass, const char* resultClass,
                               const char* role, const char* resultRole) {
    if (classOf(ref) == "CIM_Broken")
        return failure(CMPI_RC_ERR_FAILED, "broken");
    if (classOf(ref) == "CIM_Relay")
        return relay(result, ref, [&](auto* path, auto* status) {
            return CBAssociatorNames(broker, context, path, assocClass, resultClass, role, resultRole,
                                     status);
        });
    return CMReturnObjectPath(result,
                              itemPath(ref, joined({assocClass, resultClass, role, resultRole}).c_str()));
}

CMPIStatus testReferences(CMPIAssociationMI*, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* ref, const char* resultClass, const char* role,
                          const char** properties) {
    if (classOf(ref) == "CIM_Relay")
        return relay(result, ref, [&](auto* path, auto* status) {
            return CBReferences(broker, context, path, resultClass, role, properties, status);
        });
    return returnItem(result, ref, joined({resultClass, role}).c_str(), properties);
}

CMPIStatus testReferenceNames(CMPIAssociationMI*, const CMPIContext* context, const CMPIResult* result,
                              const CMPIObjectPath* ref, const char* resultClass, const char* role) {
    if (classOf(ref) == "CIM_Relay")
        return relay(result, ref, [&](auto* path, auto* status) {
            return CBReferenceNames(broker, context, path, resultClass, role, status);
        });
    return CMReturnObjectPath(result, itemPath(ref, joined({resultClass, role}).c_str()));
}

template <class Provider>
CMPIStatus cleanUp(Provider*, const CMPIContext*, CMPIBoolean) {
    return {CMPI_RC_OK, nullptr};
}
constexpr auto testCleanup = cleanUp<CMPIInstanceMI>;
constexpr auto testMethodCleanup = cleanUp<CMPIMethodMI>;
constexpr auto testAssociationCleanup = cleanUp<CMPIAssociationMI>;
constexpr auto testIndicationCleanup = cleanUp<CMPIIndicationMI>;

CMPIStatus testAuthorizeFilter(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*, const char*,
                               const CMPIObjectPath*, const char* owner) {
    return {std::string_view(owner) == "guest" ? CMPI_RC_ERR_ACCESS_DENIED : CMPI_RC_OK, nullptr};
}

CMPIStatus testMustPoll(CMPIIndicationMI*, const CMPIContext*, const CMPIResult*, const CMPISelectExp*,
                        const char*, const CMPIObjectPath*) {
    return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

CMPIStatus testActivateFilter(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp* expression,
                              const char*, const CMPIObjectPath*, CMPIBoolean) {
    filter = CMGetCharPtr(expression->ft->getString(expression, nullptr));
    return {CMPI_RC_OK, nullptr};
}

CMPIStatus testDeActivateFilter(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*, const char*,
                                const CMPIObjectPath*, CMPIBoolean) {
    filter.clear();
    return {CMPI_RC_OK, nullptr};
}

CMPIStatus deliver(const CMPIContext* context, const char* what) {
    const CMPIObjectPath* path = CMNewObjectPath(broker, "root/cimv2", "CIM_AlertIndication", nullptr);
    const CMPIInstance* indication = CMNewInstance(broker, path, nullptr);
    CMSetProperty(indication, "Description", text((what + (" " + filter)).c_str()), CMPI_chars);
    return CBDeliverIndication(broker, context, "root/interop", indication);
}

CMPIStatus testEnableIndications(CMPIIndicationMI*, const CMPIContext* context) {
    return deliver(context, "begin");
}

CMPIStatus testDisableIndications(CMPIIndicationMI*, const CMPIContext* context) {
    return deliver(context, "end");
}

} // namespace

CMInstanceMIStub(test, Test, broker, CMNoHook) CMMethodMIStub(test, Test, broker, CMNoHook)
    CMAssociationMIStub(test, Test, broker, CMNoHook) CMIndicationMIStub(test, Test, broker, CMNoHook)
