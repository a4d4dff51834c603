#include "reply_output.h"

#include "instance_output.h"
#include "sensor_labels.h"
#include "text_layout.h"

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

void printInstances(const std::vector<broker::Instance>& instances, const broker::PropertyList& wanted,
                    bool asJson) {
    if (!asJson)
        return printInstances(std::cout, instances, wanted, terminalWidth(STDOUT_FILENO),
                              labelsFor(instances));
    auto list = nlohmann::ordered_json::array();
    for (const broker::Instance& instance : instances)
        list.push_back(toJson(instance));
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
