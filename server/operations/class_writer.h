// Classes as elements of DSP0201.
#pragma once

#include "broker/broker.h"
#include "cimxml/xml_writer.h"
#include "schema/class_schema.h"

namespace server {

// How much of a class a client wants.
struct ClassExtent {
    bool isLocal = false; // without what it inherits
    bool withQualifiers = false, withOrigin = false;
    broker::PropertyList properties = {};
};

void writeClass(cimxml::XmlWriter& xml, const schema::Class& described, const ClassExtent& extent);

} // namespace server
