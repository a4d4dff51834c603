#include "interop/cim_xml.h"

#include "interop/xml_text.h"

#include <algorithm>
#include <charconv>
#include <cmpimacs.h>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string_view>

namespace interop {
namespace {

void check(const CMPIStatus& status) {
    if (status.rc != CMPI_RC_OK)
        throw std::runtime_error("an object does not answer");
}

// Calls `ask` with a status that must be good then.
template <class Ask>
auto answer(Ask ask) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    auto result = ask(&status);
    check(status);
    return result;
}

// What an object was asked for. The thread that delivers indications stays attached to the broker for good,
// so it has to release itself what requests of other threads release when they end.
struct Release {
    template <class Object>
    void operator()(Object* object) const {
        CMRelease(object);
    }
};
template <class Object>
using Owned = std::unique_ptr<Object, Release>;

bool isNull(const CMPIData& data) {
    return (data.state & (CMPI_nullValue | CMPI_notFound | CMPI_badValue)) != 0;
}

// Owns the value of a property or a key. Elements of an array are not owned: they are released with the
// array.
class OwnedData {
public:
    explicit OwnedData(const CMPIData& data) : data_(data) {}
    ~OwnedData() {
        const CMPIValue& value = data_.value;
        if (isNull(data_))
            return;
        if (CMIsArray(data_))
            release(value.array);
        else if (data_.type == CMPI_string)
            release(value.string);
        else if (data_.type == CMPI_dateTime)
            release(value.dateTime);
        else if (data_.type == CMPI_ref)
            release(value.ref);
        else if (data_.type == CMPI_instance)
            release(value.inst);
    }
    OwnedData(const OwnedData&) = delete;
    OwnedData& operator=(const OwnedData&) = delete;
    const CMPIData& get() const { return data_; }

private:
    template <class Object>
    static void release(Object* object) {
        if (object != nullptr)
            CMRelease(object);
    }

    const CMPIData data_;
};

std::string textOf(const CMPIString* string) {
    const char* chars = string != nullptr ? CMGetCharsPtr(string, nullptr) : nullptr;
    return chars != nullptr ? chars : "";
}

// Reads a part of a path that need not be there.
template <class Get>
std::string partOf(const CMPIObjectPath* path, Get get) {
    return textOf(Owned<CMPIString>(get(path, nullptr)).get());
}

template <class Number>
std::string decimal(Number number) {
    char digits[24];
    return {digits, std::to_chars(digits, digits + sizeof digits, number).ptr};
}

// Returns the shortest text that reads back as the number. DSP0201 wants a point in it: 1.0, 1.0e+30.
template <class Real>
std::string real(Real number) {
    char digits[32];
    std::string text(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
    if (text == "inf" || text == "-inf")
        return text == "inf" ? "INF" : "-INF";
    if (text.find("nan") != std::string::npos)
        return "NaN";
    if (text.find('.') == std::string::npos)
        text.insert(std::min(text.find('e'), text.size()), ".0");
    return text;
}

struct TypeName {
    CMPIType type;
    const char* name;
};
constexpr TypeName typeNames[] = {
    {CMPI_boolean, "boolean"}, {CMPI_char16, "char16"}, {CMPI_real32, "real32"},
    {CMPI_real64, "real64"},   {CMPI_uint8, "uint8"},   {CMPI_uint16, "uint16"},
    {CMPI_uint32, "uint32"},   {CMPI_uint64, "uint64"}, {CMPI_sint8, "sint8"},
    {CMPI_sint16, "sint16"},   {CMPI_sint32, "sint32"}, {CMPI_sint64, "sint64"},
    {CMPI_string, "string"},   {CMPI_chars, "string"},  {CMPI_dateTime, "datetime"},
    {CMPI_ref, "reference"},   {CMPI_null, "string"},   {CMPI_instance, "string"}, // embedded: its XML
};

const char* typeName(CMPIType type) {
    for (const TypeName& entry : typeNames)
        if (entry.type == type)
            return entry.name;
    throw std::runtime_error("a type that CIM-XML does not have");
}

bool isNumber(CMPIType type) {
    return (type & (CMPI_INTEGER | CMPI_REAL)) != 0 && (type & CMPI_ENC) == 0;
}

std::string embedded(const CMPIInstance* instance) {
    pugi::xml_document document;
    addInstance(document, instance);
    return toText(document, false);
}

// Returns the value as its element holds it; nothing for null.
std::optional<std::string> valueText(const CMPIData& data) {
    if (isNull(data))
        return std::nullopt;
    const CMPIValue& value = data.value;
    const auto given = [](const void* object) { return object != nullptr; };
    switch (data.type) {
    case CMPI_boolean:
        return value.boolean != 0 ? "TRUE" : "FALSE";
    case CMPI_char16:
        return xmlText(static_cast<char16_t>(value.char16));
    case CMPI_real32:
        return real(value.real32);
    case CMPI_real64:
        return real(value.real64);
    case CMPI_uint8:
        return decimal(value.uint8);
    case CMPI_uint16:
        return decimal(value.uint16);
    case CMPI_uint32:
        return decimal(value.uint32);
    case CMPI_uint64:
        return decimal(value.uint64);
    case CMPI_sint8:
        return decimal(value.sint8);
    case CMPI_sint16:
        return decimal(value.sint16);
    case CMPI_sint32:
        return decimal(value.sint32);
    case CMPI_sint64:
        return decimal(value.sint64);
    case CMPI_string:
        return given(value.string) ? std::optional(xmlText(textOf(value.string))) : std::nullopt;
    case CMPI_chars:
        return given(value.chars) ? std::optional(xmlText(std::string_view(value.chars))) : std::nullopt;
    case CMPI_dateTime:
        if (!given(value.dateTime))
            return std::nullopt;
        return textOf(Owned<CMPIString>(answer([&](CMPIStatus* status) {
                          return CMGetStringFormat(value.dateTime, status);
                      })).get());
    case CMPI_instance:
        return given(value.inst) ? std::optional(embedded(value.inst)) : std::nullopt;
    default:
        throw std::runtime_error("a value that CIM-XML cannot express");
    }
}

void addTextElement(pugi::xml_node parent, const char* name, const std::string& text) {
    if (!addElement(parent, name).text().set(text.c_str()))
        throw std::bad_alloc();
}

void addReference(pugi::xml_node parent, const CMPIObjectPath* path);

void addKeys(pugi::xml_node parent, const CMPIObjectPath* path) {
    const CMPICount count = answer([&](CMPIStatus* status) { return CMGetKeyCount(path, status); });
    for (CMPICount i = 0; i < count; ++i) {
        CMPIString* nameOut = nullptr;
        const OwnedData owned(
            answer([&](CMPIStatus* status) { return CMGetKeyAt(path, i, &nameOut, status); }));
        const Owned<CMPIString> name(nameOut);
        const CMPIData& key = owned.get();
        auto binding = addElement(parent, "KEYBINDING");
        addAttribute(binding, "NAME", textOf(name.get()));
        if (key.type == CMPI_ref && key.value.ref != nullptr) {
            addReference(binding, key.value.ref);
            continue;
        }
        addTextElement(binding, "KEYVALUE", valueText(key).value_or(""));
        addAttribute(binding.last_child(), "VALUETYPE",
                     key.type == CMPI_boolean ? "boolean"
                     : isNumber(key.type)     ? "numeric"
                                              : "string");
    }
}

void addNameSpace(pugi::xml_node parent, std::string_view path) {
    auto local = addElement(parent, "LOCALNAMESPACEPATH");
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        if (end > 0)
            addAttribute(addElement(local, "NAMESPACE"), "NAME", std::string(path.substr(0, end)));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
}

// Writes as much of the path as it has: host and namespace, namespace, or neither.
void addReference(pugi::xml_node parent, const CMPIObjectPath* path) {
    auto where = addElement(parent, "VALUE.REFERENCE");
    const std::string host = partOf(path, path->ft->getHostname);
    const std::string nameSpace = partOf(path, path->ft->getNameSpace);
    if (!nameSpace.empty()) {
        where = addElement(where, host.empty() ? "LOCALINSTANCEPATH" : "INSTANCEPATH");
        if (host.empty()) {
            addNameSpace(where, nameSpace);
        } else {
            auto nameSpacePath = addElement(where, "NAMESPACEPATH");
            addTextElement(nameSpacePath, "HOST", xmlText(host));
            addNameSpace(nameSpacePath, nameSpace);
        }
    }
    auto name = addElement(where, "INSTANCENAME");
    addAttribute(name, "CLASSNAME", partOf(path, path->ft->getClassName));
    addKeys(name, path);
}

void addValues(pugi::xml_node property, const CMPIArray* array) {
    auto values = addElement(property, "VALUE.ARRAY");
    const CMPICount count = answer([&](CMPIStatus* status) { return CMGetArrayCount(array, status); });
    for (CMPICount i = 0; i < count; ++i) {
        const auto text =
            valueText(answer([&](CMPIStatus* status) { return CMGetArrayElementAt(array, i, status); }));
        if (text)
            addTextElement(values, "VALUE", *text);
        else
            addElement(values, "VALUE.NULL");
    }
}

void addProperty(pugi::xml_node parent, const std::string& name, const CMPIData& data) {
    const bool isArray = CMIsArray(data);
    const auto type = static_cast<CMPIType>(data.type & ~CMPI_ARRAY);
    if (type == CMPI_ref) {
        if (isArray)
            throw std::runtime_error("an array of references");
        auto property = addElement(parent, "PROPERTY.REFERENCE");
        addAttribute(property, "NAME", name);
        if (!isNull(data) && data.value.ref != nullptr)
            addReference(property, data.value.ref);
        return;
    }
    auto property = addElement(parent, isArray ? "PROPERTY.ARRAY" : "PROPERTY");
    addAttribute(property, "NAME", name);
    addAttribute(property, "TYPE", typeName(type));
    if (type == CMPI_instance)
        addAttribute(property, "EmbeddedObject", "instance");
    if (isArray) {
        if (!isNull(data) && data.value.array != nullptr)
            addValues(property, data.value.array);
    } else if (const auto text = valueText(data)) {
        addTextElement(property, "VALUE", *text);
    }
}

} // namespace

pugi::xml_node addElement(pugi::xml_node parent, const char* name) {
    const auto element = parent.append_child(name);
    if (!element)
        throw std::bad_alloc();
    return element;
}

void addAttribute(pugi::xml_node element, const char* name, const std::string& value) {
    if (!element.append_attribute(name).set_value(xmlText(value).c_str()))
        throw std::bad_alloc();
}

void addInstance(pugi::xml_node parent, const CMPIInstance* instance) {
    const Owned<CMPIObjectPath> path(
        answer([&](CMPIStatus* status) { return CMGetObjectPath(instance, status); }));
    if (path == nullptr)
        throw std::runtime_error("an instance without a path");
    auto element = addElement(parent, "INSTANCE");
    addAttribute(element, "CLASSNAME", partOf(path.get(), path->ft->getClassName));
    const CMPICount count = answer([&](CMPIStatus* status) { return CMGetPropertyCount(instance, status); });
    for (CMPICount i = 0; i < count; ++i) {
        CMPIString* nameOut = nullptr;
        const OwnedData data(
            answer([&](CMPIStatus* status) { return CMGetPropertyAt(instance, i, &nameOut, status); }));
        const Owned<CMPIString> name(nameOut);
        addProperty(element, textOf(name.get()), data.get());
    }
}

std::string toText(const pugi::xml_document& document, bool withDeclaration) {
    struct Writer : pugi::xml_writer {
        std::string text;
        void write(const void* data, std::size_t size) override {
            // A parser takes a CR that stands there as it is for a line end, and gives it back as LF.
            for (const char c : std::string_view(static_cast<const char*>(data), size)) {
                if (c == '\r')
                    text += "&#13;";
                else
                    text += c;
            }
        }
    } writer;
    document.save(writer, "", pugi::format_raw | (withDeclaration ? 0U : pugi::format_no_declaration),
                  pugi::encoding_utf8);
    return writer.text;
}

} // namespace interop
