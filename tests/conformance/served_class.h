// A class as the library exports it: requests to its functions, looked up by its name as providers do.
#pragma once

#include "broker/broker.h"
#include "class_descriptions.h"

#include <cmpimacs.h>
#include <functional>

class ServedClass {
public:
    ServedClass(broker::Broker& broker, const phctl::ClassDescription& served)
        : description(served), broker_(broker) {}

    // Calls the class's function for the request. For a path that the broker cannot make, `change` gets one
    // and returns what is handed over.
    using PathChange = std::function<const CMPIObjectPath*(const CMPIObjectPath*)>;
    broker::Reply answer(const broker::Request& request, const PathChange& change = nullptr) const;

    broker::ObjectPath path(broker::NamedValues keys = {}) const {
        return {
            .host = {}, .nameSpace = "root/cimv2", .className = description.name, .keys = std::move(keys)};
    }
    std::vector<broker::Instance> instances(const broker::PropertyList& properties = {}) const;
    // By PH_X_GetInstArray; nothing where that gives no array.
    std::optional<std::vector<broker::Instance>> instanceArray() const;
    // PH_Get_X with these key values, which no broker has checked. Whether it found a record.
    bool find(CMPIString** keyValues) const;

    std::vector<std::string> keys() const;

    const phctl::ClassDescription& description;

private:
    void* function(const char* operation, const char* suffix = "") const;

    broker::Broker& broker_;
};

// The operation and the method, for a test's trace.
std::string toText(const broker::Request& request);
