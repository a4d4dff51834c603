#include "reply_output.h"

#include "sensor_labels.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace phctl {

SensorLabels labelsFor(const std::vector<broker::Instance>& instances) {
    const bool tellsOfEvents =
        std::any_of(instances.begin(), instances.end(), [](const broker::Instance& instance) {
            return broker::find(instance.properties, "RecordData") != nullptr;
        });
    return tellsOfEvents ? sensorLabels() : SensorLabels();
}

Presentation presentationOf(const RequestOptions& options, const std::vector<broker::Instance>& instances,
                            const broker::PropertyList& wanted) {
    return {.wanted = wanted,
            .hasWords = options.words,
            .layout = layoutOf(STDOUT_FILENO, options.wide),
            .sensors = options.json ? SensorLabels() : labelsFor(instances)};
}

void printInstances(const std::vector<broker::Instance>& instances, const broker::PropertyList& wanted,
                    const RequestOptions& options) {
    const Presentation how = presentationOf(options, instances, wanted);
    if (!options.json)
        return printInstances(std::cout, instances, how);
    auto list = nlohmann::ordered_json::array();
    for (const broker::Instance& instance : instances)
        list.push_back(toJson(instance, how));
    printJson(std::cout, list);
}

void printPaths(const std::vector<broker::ObjectPath>& paths, bool asJson) {
    auto list = nlohmann::ordered_json::array();
    for (const broker::ObjectPath& path : paths) {
        list.push_back(broker::toText(path));
        if (!asJson)
            std::cout << printable(broker::toText(path)) << '\n';
    }
    if (asJson)
        printJson(std::cout, list);
}

} // namespace phctl
