#include "data.h"

namespace broker {

namespace {

template <class Handle>
const ObjectOf<Handle>& target(const Handle* handle) {
    return objectOf(handle);
}

Value scalar(const CMPIValue& value, CMPIType type) {
    switch (type) {
    case CMPI_boolean:
        return {type, value.boolean != 0};
    case CMPI_char16:
        return {type, std::uint64_t{value.char16}};
    case CMPI_uint8:
        return {type, std::uint64_t{value.uint8}};
    case CMPI_uint16:
        return {type, std::uint64_t{value.uint16}};
    case CMPI_uint32:
        return {type, std::uint64_t{value.uint32}};
    case CMPI_uint64:
        return {type, std::uint64_t{value.uint64}};
    case CMPI_sint8:
        return {type, std::int64_t{value.sint8}};
    case CMPI_sint16:
        return {type, std::int64_t{value.sint16}};
    case CMPI_sint32:
        return {type, std::int64_t{value.sint32}};
    case CMPI_sint64:
        return {type, std::int64_t{value.sint64}};
    case CMPI_real32:
        return {type, double{value.real32}};
    case CMPI_real64:
        return {type, value.real64};
    case CMPI_string:
        return value.string == nullptr ? Value{type, {}} : Value{type, target(value.string).content};
    case CMPI_dateTime:
        return value.dateTime == nullptr ? Value{type, {}} : Value{type, target(value.dateTime).content};
    case CMPI_ref:
        return value.ref == nullptr
                   ? Value{type, {}}
                   : Value{type, std::make_shared<const ObjectPath>(target(value.ref).content)};
    case CMPI_instance:
        return value.inst == nullptr ? Value{type, {}} : Value{type, target(value.inst).content.share()};
    default:
        throw Failure{CMPI_RC_ERR_INVALID_DATA_TYPE};
    }
}

// Makes the union member of a value that is not null.
struct MemberOf {
    State& state;
    CMPIType type;

    CMPIValue operator()(std::monostate) const { return {}; }
    CMPIValue operator()(bool flag) const { return {.boolean = flag}; }
    CMPIValue operator()(std::uint64_t number) const {
        CMPIValue value{};
        switch (type) {
        case CMPI_uint8:
            value.uint8 = static_cast<CMPIUint8>(number);
            break;
        case CMPI_char16:
        case CMPI_uint16:
            value.uint16 = static_cast<CMPIUint16>(number);
            break;
        case CMPI_uint32:
            value.uint32 = static_cast<CMPIUint32>(number);
            break;
        default:
            value.uint64 = number;
        }
        return value;
    }
    CMPIValue operator()(std::int64_t number) const {
        CMPIValue value{};
        switch (type) {
        case CMPI_sint8:
            value.sint8 = static_cast<CMPISint8>(number);
            break;
        case CMPI_sint16:
            value.sint16 = static_cast<CMPISint16>(number);
            break;
        case CMPI_sint32:
            value.sint32 = static_cast<CMPISint32>(number);
            break;
        default:
            value.sint64 = number;
        }
        return value;
    }
    CMPIValue operator()(double number) const {
        CMPIValue value{};
        if (type == CMPI_real32)
            value.real32 = static_cast<CMPIReal32>(number);
        else
            value.real64 = number;
        return value;
    }
    CMPIValue operator()(const std::string& text) const { return {.string = make<CMPIString>(state, text)}; }
    CMPIValue operator()(const DateTime& time) const { return {.dateTime = make<CMPIDateTime>(state, time)}; }
    CMPIValue operator()(const Value::Reference& path) const {
        return {.ref = make<CMPIObjectPath>(state, *path)};
    }
    CMPIValue operator()(const Value::Embedded& instance) const {
        return {.inst = make<CMPIInstance>(state, InstanceContent(instance))};
    }
    CMPIValue operator()(const Value::Array& elements) const {
        return {.array = make<CMPIArray>(state, Value{type, elements})};
    }
};

} // namespace

CMPIType storedType(CMPIType type) {
    return (type & ~CMPI_ARRAY) == CMPI_chars ? CMPI_string | (type & CMPI_ARRAY) : type;
}

bool isStorable(CMPIType type) {
    switch (type) {
    case CMPI_boolean:
    case CMPI_char16:
    case CMPI_uint8:
    case CMPI_uint16:
    case CMPI_uint32:
    case CMPI_uint64:
    case CMPI_sint8:
    case CMPI_sint16:
    case CMPI_sint32:
    case CMPI_sint64:
    case CMPI_real32:
    case CMPI_real64:
    case CMPI_string:
    case CMPI_dateTime:
    case CMPI_ref:
    case CMPI_instance:
        return true;
    default:
        return false;
    }
}

Value valueOf(const CMPIValue* value, CMPIType type) {
    const CMPIType stored = storedType(type);
    if (value == nullptr)
        return {stored, {}};
    if (type == CMPI_chars)
        return {stored, reinterpret_cast<const char*>(value)};
    if ((type & CMPI_ARRAY) == 0)
        return scalar(*value, type);
    if (value->array == nullptr)
        return {stored, {}};
    const Value& elements = target(value->array).content;
    if (elements.type != stored)
        throw Failure{CMPI_RC_ERR_TYPE_MISMATCH};
    return elements;
}

CMPIData dataOf(State& state, const Value& value, CMPIValueState valueState) {
    if (value.isNull())
        return {value.type, static_cast<CMPIValueState>(valueState | CMPI_nullValue), {}};
    return {value.type, valueState, std::visit(MemberOf{state, value.type}, value.content)};
}

CMPIData dataOf(State& state, const NamedValues& values, const char* name, CMPIValueState valueState) {
    const Value* value = find(values, nameOf(name));
    if (value == nullptr)
        throw Failure{CMPI_RC_ERR_NO_SUCH_PROPERTY};
    return dataOf(state, *value, valueState);
}

CMPIData dataAt(State& state, const NamedValues& values, CMPICount index, CMPIString** name,
                CMPIValueState valueState) {
    if (index >= values.size())
        throw Failure{CMPI_RC_ERR_NO_SUCH_PROPERTY};
    if (name != nullptr)
        *name = make<CMPIString>(state, values[index].name);
    return dataOf(state, values[index].value, valueState);
}

std::string_view nameOf(const char* name) {
    if (name == nullptr || *name == '\0')
        throw Failure{CMPI_RC_ERR_INVALID_PARAMETER};
    return name;
}

Value toValue(const CMPIData& data) {
    if ((data.state & CMPI_nullValue) != 0)
        return {storedType(data.type), {}};
    if (data.type == CMPI_chars)
        return {CMPI_string, data.value.chars};
    return valueOf(&data.value, data.type);
}

ObjectPath toObjectPath(const CMPIObjectPath* path) {
    return objectOf(path).content;
}

Instance toInstance(const CMPIInstance* instance) {
    return objectOf(instance).content.get();
}

NamedValues toNamedValues(const CMPIArgs* arguments) {
    return objectOf(arguments).content;
}

std::string toString(const CMPIString* string) {
    return string == nullptr ? std::string() : objectOf(string).content;
}

} // namespace broker
