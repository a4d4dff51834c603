// C++ values as elements of DSP0201.
#pragma once

#include "broker/value.h"
#include "cimxml/xml_writer.h"

#include <string>

namespace cimxml {

void writeNameSpacePath(XmlWriter& xml, const std::string& nameSpace); // LOCALNAMESPACEPATH
void writeInstanceName(XmlWriter& xml, const broker::ObjectPath& path);
// Writes INSTANCEPATH; CLASSPATH for a path of a class.
void writeFullPath(XmlWriter& xml, const broker::ObjectPath& path);
// Writes as much as the path has: INSTANCEPATH, LOCALINSTANCEPATH or INSTANCENAME.
void writePath(XmlWriter& xml, const broker::ObjectPath& path);

// The class that introduced a property; empty: none is written.
using OriginOf = std::function<std::string(const std::string& property)>;
void writeInstance(XmlWriter& xml, const broker::Instance& instance, const OriginOf& originOf = {});

// Writes VALUE, VALUE.ARRAY, VALUE.REFERENCE or VALUE.REFARRAY; nothing for null.
void writeValue(XmlWriter& xml, const broker::Value& value);
void writeReturnValue(XmlWriter& xml, const broker::Value& value);
void writeParameter(XmlWriter& xml, const std::string& name, const broker::Value& value);

} // namespace cimxml
