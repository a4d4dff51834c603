#include "faults.h"

#include "schema/class_schema.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace hostile {
namespace {

using Faults = std::vector<std::string>;
using Operation = broker::Request::Operation;

// What the library refuses with.
constexpr CMPIrc codes[] = {CMPI_RC_OK,
                            CMPI_RC_ERR_FAILED,
                            CMPI_RC_ERR_NOT_FOUND,
                            CMPI_RC_ERR_NOT_SUPPORTED,
                            CMPI_RC_ERR_INVALID_PARAMETER,
                            CMPI_RC_ERR_METHOD_NOT_FOUND,
                            CMPI_RC_ERR_TYPE_MISMATCH,
                            CMPI_RC_ERR_NO_SUCH_PROPERTY};

// The bytes of one character; 0 for none of UTF-8.
std::size_t characterSize(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    const std::size_t size = first < 0x80       ? 1
                             : first >> 5 == 6  ? 2
                             : first >> 4 == 14 ? 3
                             : first >> 3 == 30 ? 4
                                                : 0;
    const bool isWhole =
        size <= text.size() && std::ranges::all_of(text.substr(0, size).substr(size != 0 ? 1 : 0),
                                                   [](char c) { return (c & 0xC0) == 0x80; });
    return isWhole && first != 0xC0 && first != 0xC1 ? size : 0;
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t size = characterSize(text);
        if (size == 0)
            return false;
        text.remove_prefix(size);
    }
    return true;
}

// No BMC tells it: it is 0 in the database until a client sets it.
constexpr std::string_view ofClients = "CIM_StaticIPAssignmentSettingData.IPv6AddressType";

// Whether a value map allows it: it has the value, a range with it, or says that there are others.
bool isIn(std::span<const schema::Value> map, const broker::Value& value) {
    const std::string text = broker::toText(value);
    return map.empty() || value.isNull() || std::ranges::any_of(map, [&](const schema::Value& entry) {
               const std::size_t dots = entry.value.find("..");
               if (dots == std::string_view::npos)
                   return entry.value == text;
               const auto bound = [](std::string_view digits, long long open) {
                   std::from_chars(digits.data(), digits.data() + digits.size(), open);
                   return open;
               };
               const long long number = bound(text, -1);
               return bound(entry.value.substr(0, dots), 0) <= number &&
                      number <= bound(entry.value.substr(dots + 2), INT64_MAX);
           });
}

class Inspection {
public:
    explicit Inspection(Faults& faults) : faults_(faults) {}

    void inspect(const broker::ObjectPath& path) {
        const schema::Class* const declared = schema::find(path.className);
        if (declared == nullptr)
            return fault("class " + path.className + " is unknown");
        for (const schema::Property& property : declared->servedProperties()) {
            const broker::Value* const key = broker::find(path.keys, property.name);
            if (property.isKey && (key == nullptr || key->isNull()))
                fault("key " + std::string(property.name) + " of " + path.className + " is missing");
        }
        inspect(path.keys, *declared);
    }
    void inspect(const broker::Instance& instance) {
        inspect(instance.path);
        if (const schema::Class* const declared = schema::find(instance.path.className))
            inspect(instance.properties, *declared);
    }
    void inspect(const std::string& name, const broker::Value& value, std::span<const schema::Value> map) {
        if (const auto* const array = value.as<broker::Value::Array>())
            for (const broker::Value& element : *array)
                inspect(name, element, map);
        else if (!isIn(map, value))
            fault(name + " is " + broker::toText(value) + ", which means nothing");
    }
    void inspect(const std::string& name, const broker::Value& value) {
        if (const auto* const text = value.as<std::string>(); text != nullptr && !isUtf8(*text))
            fault(name + " is not UTF-8");
        if (const auto* const array = value.as<broker::Value::Array>())
            for (const broker::Value& element : *array)
                inspect(name, element);
    }

private:
    void fault(std::string text) {
        if (std::ranges::find(faults_, text) == faults_.end())
            faults_.push_back(std::move(text));
    }
    void inspect(const broker::NamedValues& values, const schema::Class& declared) {
        for (const auto& [name, value] : values) {
            const schema::Property* const property = declared.property(name);
            if (property == nullptr || property->type != value.type)
                fault(std::string(declared.name) + '.' + name + " is declared otherwise");
            const std::string fullName = std::string(declared.name) + '.' + name;
            inspect(fullName, value);
            if (property != nullptr && fullName != ofClients)
                inspect(fullName, value, property->values);
        }
    }

    Faults& faults_;
};

bool returnsOneInstance(Operation operation) {
    return operation == Operation::GetInstance;
}

} // namespace

Faults faultsOf(const broker::Request& request, const broker::Reply& reply) {
    Faults faults;
    if (std::ranges::find(codes, reply.code) == std::end(codes))
        faults.push_back("status " + broker::codeName(reply.code) + " is none of the library's");
    if (reply.ok() != reply.message.empty())
        faults.push_back(reply.ok() ? "a success has the message " + reply.message
                                    : "a failure has no message");
    if (!reply.ok() && (!reply.instances.empty() || !reply.paths.empty() || !reply.values.empty()))
        faults.emplace_back("a failure returns something");
    if (reply.ok() && returnsOneInstance(request.operation) && reply.instances.size() != 1)
        faults.emplace_back("not one instance is returned");
    if (reply.ok() && request.operation == Operation::InvokeMethod && reply.values.size() != 1)
        faults.emplace_back("a method returns not one value");
    Inspection inspection(faults);
    for (const broker::Instance& instance : reply.instances)
        inspection.inspect(instance);
    for (const broker::ObjectPath& path : reply.paths)
        inspection.inspect(path);
    for (const auto& [name, value] : reply.arguments)
        inspection.inspect(name, value);
    const schema::Class* const asked = schema::find(request.path.className);
    const schema::Method* const method = asked != nullptr ? asked->method(request.method) : nullptr;
    if (method != nullptr)
        for (const broker::Value& value : reply.values)
            inspection.inspect(request.method, value, method->values);
    return faults;
}

} // namespace hostile
