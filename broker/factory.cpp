// The broker's functions that make objects and tell about them.
#include "data.h"
#include "tables.h"

#include <chrono>

namespace broker {

namespace {

// Keys are properties too. Where the broker is strict, whoever makes the instance has to say so.
CMPIInstance* newInstance(const CMPIBroker* broker, const CMPIObjectPath* path, CMPIStatus* status) {
    return obtain(broker, Call::newInstance, status, [&](State& state) {
        Instance instance{objectOf(path).content, {}};
        instance.properties.reserve(state.usualProperties.load(std::memory_order_relaxed));
        if (!state.isStrict())
            instance.properties.assign(instance.path.keys.begin(), instance.path.keys.end());
        return make<CMPIInstance>(state, InstanceContent(std::move(instance)));
    });
}

CMPIObjectPath* newObjectPath(const CMPIBroker* broker, const char* nameSpace, const char* className,
                              CMPIStatus* status) {
    return obtain(broker, Call::newObjectPath, status, [&](State& state) {
        ObjectPath path;
        if (nameSpace != nullptr)
            path.nameSpace = nameSpace;
        if (className != nullptr)
            path.className = className;
        return make<CMPIObjectPath>(state, std::move(path));
    });
}

CMPIArgs* newArgs(const CMPIBroker* broker, CMPIStatus* status) {
    return obtain(broker, Call::newArgs, status, [](State& state) { return make<CMPIArgs>(state, {}); });
}

CMPIString* newString(const CMPIBroker* broker, const char* text, CMPIStatus* status) {
    return obtain(broker, Call::newString, status, [&](State& state) {
        if (text == nullptr)
            throw Failure{CMPI_RC_ERR_INVALID_PARAMETER};
        return make<CMPIString>(state, text);
    });
}

// Elements that are not set are null.
CMPIArray* newArray(const CMPIBroker* broker, CMPICount size, CMPIType type, CMPIStatus* status) {
    return obtain(broker, Call::newArray, status, [&](State& state) {
        const CMPIType element = storedType(type);
        if ((type & CMPI_ARRAY) != 0 || !isStorable(element))
            throw Failure{CMPI_RC_ERR_INVALID_DATA_TYPE};
        return make<CMPIArray>(
            state, {static_cast<CMPIType>(element | CMPI_ARRAY), Value::Array(size, Value{element, {}})});
    });
}

CMPIDateTime* newDateTime(const CMPIBroker* broker, CMPIStatus* status) {
    return obtain(broker, Call::newDateTime, status, [](State& state) {
        using std::chrono::duration_cast;
        using std::chrono::microseconds;
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        const auto count = static_cast<std::uint64_t>(duration_cast<microseconds>(now).count());
        return make<CMPIDateTime>(state, {.microseconds = count});
    });
}

CMPIDateTime* newDateTimeFromBinary(const CMPIBroker* broker, CMPIUint64 time, CMPIBoolean interval,
                                    CMPIStatus* status) {
    return obtain(broker, Call::newDateTimeFromBinary, status, [&](State& state) {
        return make<CMPIDateTime>(state, {.microseconds = time, .interval = interval != 0});
    });
}

CMPIDateTime* newDateTimeFromChars(const CMPIBroker* broker, const char* text, CMPIStatus* status) {
    return obtain(broker, Call::newDateTimeFromChars, status, [&](State& state) {
        const auto time = text != nullptr ? DateTime::parse(text) : std::nullopt;
        if (!time)
            throw Failure{CMPI_RC_ERR_INVALID_PARAMETER};
        return make<CMPIDateTime>(state, *time);
    });
}

CMPISelectExp* newSelectExp(const CMPIBroker* broker, const char* query, const char*, CMPIArray** projection,
                            CMPIStatus* status) {
    return obtain(broker, Call::newSelectExp, status, [&](State& state) {
        if (query == nullptr)
            throw Failure{CMPI_RC_ERR_INVALID_PARAMETER};
        if (projection != nullptr)
            *projection = nullptr;
        return make<CMPISelectExp>(state, {query});
    });
}

// There is no schema: a class is only known to be itself.
CMPIBoolean classPathIsA(const CMPIBroker* broker, const CMPIObjectPath* path, const char* type,
                         CMPIStatus* status) {
    return obtain(broker, Call::classPathIsA, status, [&](State&) -> CMPIBoolean {
        return sameName(objectOf(path).content.className, nameOf(type));
    });
}

// Every CMPI object begins with its handle.
Object& anyObject(const void* object) {
    const auto* header = static_cast<const CMPIString*>(object);
    if (header == nullptr || header->hdl == nullptr)
        throw Failure{CMPI_RC_ERR_INVALID_HANDLE};
    return *static_cast<Object*>(const_cast<void*>(header->hdl));
}

CMPIString* toString(const CMPIBroker* broker, const void* object, CMPIStatus* status) {
    return obtain(broker, Call::toString, status,
                  [&](State& state) { return make<CMPIString>(state, anyObject(object).describe()); });
}

CMPIBoolean isOfType(const CMPIBroker* broker, const void* object, const char* type, CMPIStatus* status) {
    return obtain(broker, Call::isOfType, status,
                  [&](State&) -> CMPIBoolean { return anyObject(object).type() == nameOf(type); });
}

CMPIString* getType(const CMPIBroker* broker, const void* object, CMPIStatus* status) {
    return obtain(broker, Call::getType, status,
                  [&](State& state) { return make<CMPIString>(state, anyObject(object).type()); });
}

// CMPI declares them so. NOLINTBEGIN(cert-dcl50-cpp)
CMPIString* getMessage(const CMPIBroker*, const char*, const char*, CMPIStatus* status, CMPICount, ...) {
    return unsupported<CMPIString*>(status);
}

CMPIString* getMessage2(const CMPIBroker*, const char*, const CMPIMsgFileHandle, const char*,
                        CMPIStatus* status, CMPICount, ...) {
    return unsupported<CMPIString*>(status);
}
// NOLINTEND(cert-dcl50-cpp)

void log(const State& state, const char* id, const char* text, const CMPIString* string) {
    if (!state.logHandler)
        return;
    const std::string message = string != nullptr ? objectOf(string).content : text != nullptr ? text : "";
    state.logHandler(id != nullptr ? id : "", message);
}

CMPIStatus logMessage(const CMPIBroker* broker, CMPISeverity, const char* id, const char* text,
                      const CMPIString* string) {
    return perform(broker, Call::logMessage, [&](State& state) { log(state, id, text, string); });
}

CMPIStatus trace(const CMPIBroker* broker, CMPILevel, const char* component, const char* text,
                 const CMPIString* string) {
    return perform(broker, Call::trace, [&](State& state) { log(state, component, text, string); });
}

} // namespace

const CMPIBrokerEncFT factoryTable{.ftVersion = CMPICurrentVersion,
                                   .newInstance = newInstance,
                                   .newObjectPath = newObjectPath,
                                   .newArgs = newArgs,
                                   .newString = newString,
                                   .newArray = newArray,
                                   .newDateTime = newDateTime,
                                   .newDateTimeFromBinary = newDateTimeFromBinary,
                                   .newDateTimeFromChars = newDateTimeFromChars,
                                   .newSelectExp = newSelectExp,
                                   .classPathIsA = classPathIsA,
                                   .toString = toString,
                                   .isOfType = isOfType,
                                   .getType = getType,
                                   .getMessage = getMessage,
                                   .logMessage = logMessage,
                                   .trace = trace,
                                   .newCMPIError = unsupported,
                                   .openMessageFile = unsupported,
                                   .closeMessageFile = unsupported,
                                   .getMessage2 = getMessage2,
                                   .newPropertyList = unsupported,
                                   .newStringCP = unsupported,
                                   .newEnumerationFilter = unsupported};

} // namespace broker
