// A class as the library exports it: requests to its functions, looked up by its name as providers do.
#pragma once

#include "class_requests.h"
#include "schema/class_schema.h"

class ServedClass : public ClassRequests {
public:
    ServedClass(const broker::Broker& broker, const schema::Class& served);

    std::vector<broker::Instance> instances(const broker::PropertyList& properties = {}) const {
        return enumerate(properties).instances;
    }
    // PH_Get_X with these key values, which no broker has checked. Whether it found a record.
    bool find(CMPIString** keyValues) const;

    std::vector<std::string> keys() const;

    const schema::Class& description;
};

// The operation and the method, for a test's trace.
std::string toText(const broker::Request& request);
