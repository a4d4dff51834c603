// What a reply brought, on standard output: as text or as JSON.
#pragma once

#include "broker/broker.h"
#include "instance_output.h"
#include "requests.h"

#include <nlohmann/json.hpp>

namespace phctl {

// Returns how the options want instances on standard output.
Presentation presentationOf(const RequestOptions& options, const broker::PropertyList& wanted);

// Instances as they come: what goes to standard output is made of each at once, and printed at the end.
class InstancePrinter {
public:
    InstancePrinter(const RequestOptions& options, const broker::PropertyList& wanted);

    void add(const broker::Instance& instance);
    void print();

private:
    const bool asJson_;
    const Presentation how_;
    InstanceText text_;
    nlohmann::ordered_json list_ = nlohmann::ordered_json::array();
};

void printPaths(const std::vector<broker::ObjectPath>& paths, bool asJson);

} // namespace phctl
