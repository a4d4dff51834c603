// What a reply brought, on standard output: as text or as JSON.
#pragma once

#include "broker/broker.h"
#include "instance_output.h"
#include "requests.h"

#include <memory>
#include <nlohmann/json_fwd.hpp>

namespace phctl {

// Returns how the options want instances on standard output.
Presentation presentationOf(const RequestOptions& options, const broker::PropertyList& wanted);

// Instances as they come: what goes to standard output is made of each at once, and printed at the end.
class InstancePrinter {
public:
    InstancePrinter(const RequestOptions& options, const broker::PropertyList& wanted);
    ~InstancePrinter();
    InstancePrinter(const InstancePrinter&) = delete;
    InstancePrinter& operator=(const InstancePrinter&) = delete;

    void add(const broker::Instance& instance);
    void print();

private:
    const Presentation how_;
    InstanceText text_;
    const std::unique_ptr<nlohmann::ordered_json> list_; // with --json
};

void printPaths(const std::vector<broker::ObjectPath>& paths, bool asJson);

} // namespace phctl
