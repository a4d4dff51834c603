#include "cimxml/value_writer.h"

#include "cimxml/value_text.h"

namespace cimxml {
namespace {

using broker::Value;

const char* keyKind(CMPIType type) {
    if (type == CMPI_boolean)
        return "boolean";
    return isNumber(type) ? "numeric" : "string";
}

void writeReference(XmlWriter& xml, const broker::ObjectPath& path) {
    xml.element("VALUE.REFERENCE", {}, [&] { writePath(xml, path); });
}

void writeKey(XmlWriter& xml, const Value& value) {
    if (const auto* path = value.as<Value::Reference>())
        return writeReference(xml, **path);
    const std::string type = typeAttribute(value.type);
    xml.element("KEYVALUE", {{"VALUETYPE", keyKind(value.type)}, {"TYPE", type}},
                [&] { xml.text(value.isNull() ? "" : valueText(value)); });
}

void writeNameSpaceWithHost(XmlWriter& xml, const broker::ObjectPath& path) {
    xml.element("NAMESPACEPATH", {}, [&] {
        xml.textElement("HOST", path.host);
        writeNameSpacePath(xml, path.nameSpace);
    });
}

void writeSingle(XmlWriter& xml, const Value& value) {
    if (value.isNull())
        return xml.element("VALUE.NULL");
    if (const auto* path = value.as<Value::Reference>())
        return writeReference(xml, **path);
    if (const auto* instance = value.as<Value::Embedded>()) {
        std::string text;
        XmlWriter inner([&](std::string_view part) { text += part; });
        writeInstance(inner, **instance);
        inner.flush();
        return xml.textElement("VALUE", text);
    }
    xml.textElement("VALUE", valueText(value));
}

void writeProperty(XmlWriter& xml, const std::string& name, const Value& value, const OriginOf& originOf) {
    const std::string origin = originOf ? originOf(name) : "";
    const Attribute originAttribute{origin.empty() ? "" : "CLASSORIGIN", origin};
    if (isReference(value.type) && !value.isArray()) {
        const auto* path = value.as<Value::Reference>();
        const std::string className = path != nullptr ? (*path)->className : "";
        return xml.element(
            "PROPERTY.REFERENCE",
            {{"NAME", name}, {className.empty() ? "" : "REFERENCECLASS", className}, originAttribute},
            [&] { writeValue(xml, value); });
    }
    const std::string type = typeAttribute(value.type);
    xml.element(value.isArray() ? "PROPERTY.ARRAY" : "PROPERTY",
                {{"NAME", name},
                 {"TYPE", type},
                 originAttribute,
                 {isEmbedded(value.type) ? "EmbeddedObject" : "", "instance"}},
                [&] { writeValue(xml, value); });
}

void writeTyped(XmlWriter& xml, const char* element, Attribute name, const Value& value) {
    const std::string type = typeAttribute(value.type);
    xml.element(element,
                {name, {"PARAMTYPE", type}, {isEmbedded(value.type) ? "EmbeddedObject" : "", "instance"}},
                [&] { writeValue(xml, value); });
}

} // namespace

void writeNameSpacePath(XmlWriter& xml, const std::string& nameSpace) {
    xml.element("LOCALNAMESPACEPATH", {}, [&] {
        std::string_view rest = nameSpace;
        while (!rest.empty()) {
            const std::string_view part = rest.substr(0, rest.find('/'));
            if (!part.empty())
                xml.element("NAMESPACE", {{"NAME", part}});
            rest.remove_prefix(std::min(part.size() + 1, rest.size()));
        }
    });
}

void writeInstanceName(XmlWriter& xml, const broker::ObjectPath& path) {
    xml.element("INSTANCENAME", {{"CLASSNAME", path.className}}, [&] {
        for (const broker::NamedValue& key : path.keys) {
            if (key.name.empty()) { // the class's only key
                writeKey(xml, key.value);
                continue;
            }
            xml.element("KEYBINDING", {{"NAME", key.name}}, [&] { writeKey(xml, key.value); });
        }
    });
}

void writeFullPath(XmlWriter& xml, const broker::ObjectPath& path) {
    xml.element(path.keys.empty() ? "CLASSPATH" : "INSTANCEPATH", {}, [&] {
        writeNameSpaceWithHost(xml, path);
        if (path.keys.empty())
            xml.element("CLASSNAME", {{"NAME", path.className}});
        else
            writeInstanceName(xml, path);
    });
}

void writePath(XmlWriter& xml, const broker::ObjectPath& path) {
    if (path.nameSpace.empty())
        return writeInstanceName(xml, path);
    if (!path.host.empty())
        return writeFullPath(xml, path);
    xml.element("LOCALINSTANCEPATH", {}, [&] {
        writeNameSpacePath(xml, path.nameSpace);
        writeInstanceName(xml, path);
    });
}

void writeInstance(XmlWriter& xml, const broker::Instance& instance, const OriginOf& originOf) {
    xml.element("INSTANCE", {{"CLASSNAME", instance.path.className}}, [&] {
        for (const auto& [name, value] : instance.properties)
            writeProperty(xml, name, value, originOf);
    });
}

void writeValue(XmlWriter& xml, const Value& value) {
    if (value.isNull())
        return;
    const auto* elements = value.as<Value::Array>();
    if (elements == nullptr)
        return writeSingle(xml, value);
    xml.element(isReference(value.type) ? "VALUE.REFARRAY" : "VALUE.ARRAY", {}, [&] {
        for (const Value& element : *elements)
            writeSingle(xml, element);
    });
}

void writeReturnValue(XmlWriter& xml, const Value& value) {
    writeTyped(xml, "RETURNVALUE", {}, value);
}

void writeParameter(XmlWriter& xml, const std::string& name, const Value& value) {
    writeTyped(xml, "PARAMVALUE", {"NAME", name}, value);
}

} // namespace cimxml
