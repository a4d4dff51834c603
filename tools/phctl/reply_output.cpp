#include "reply_output.h"

#include "json_text.h"
#include "sensor_labels.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace phctl {

namespace {

const SensorLabels& knownSensors() {
    static const SensorLabels sensors = sensorLabels();
    return sensors;
}

} // namespace

Presentation presentationOf(const RequestOptions& options, const broker::PropertyList& wanted) {
    return {.wanted = wanted,
            .hasWords = options.words,
            .layout = layoutOf(STDOUT_FILENO, options.wide),
            .sensors = knownSensors};
}

InstancePrinter::InstancePrinter(const RequestOptions& options, const broker::PropertyList& wanted)
    : how_(presentationOf(options, wanted)),
      text_(how_),
      list_(options.json ? std::make_unique<nlohmann::ordered_json>(nlohmann::ordered_json::array())
                         : nullptr) {}

InstancePrinter::~InstancePrinter() = default;

void InstancePrinter::add(const broker::Instance& instance) {
    if (list_)
        list_->push_back(toJson(instance, how_));
    else
        text_.add(instance);
}

void InstancePrinter::print() {
    if (list_)
        printJson(std::cout, *list_);
    else
        text_.print(std::cout);
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
