#include "event_log_output.h"

#include "json_text.h"
#include "text_layout.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <platform/sel_record.h>
#include <unistd.h>

namespace phctl {
namespace {

using nlohmann::ordered_json;

std::string hexadecimal(std::span<const std::uint8_t> bytes) {
    std::string text;
    for (const unsigned byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02x", byte);
        text += digits;
    }
    return text;
}

ordered_json recordJson(const view::SelRecord& record, const view::EventText& text) {
    ordered_json json = {
        {"id", PH_SelRecordId(record.data())}, {"time", text.time},     {"sensor", text.sensor},
        {"sensorType", text.sensorType},       {"state", text.state()}, {"event", text.event}};
    if (!text.detail.empty())
        json["detail"] = text.detail;
    for (const auto& [name, quantity] : {std::pair{"reading", &text.reading}, {"threshold", &text.threshold}})
        if (*quantity)
            json[name] = {{"value", (*quantity)->value}, {"unit", (*quantity)->unit}};
    json["record"] = hexadecimal(record);
    return json;
}

} // namespace

void printEventLog(std::span<const view::SelRecord> records, const view::SensorLabels& sensors,
                   std::size_t last, bool json) {
    if (last > 0 && last < records.size())
        records = records.last(last);
    Table table({"ID", "Time", "Sensor", "State", "Event"});
    auto rows = ordered_json::array();
    for (const view::SelRecord& record : records) {
        const view::EventText text = view::describeRecord(record, sensors);
        if (json)
            rows.push_back(recordJson(record, text));
        else
            table.add({std::to_string(PH_SelRecordId(record.data())), text.time, text.sensor, text.state(),
                       text.whole()});
    }
    if (json)
        printJson(std::cout, rows);
    else if (records.empty())
        std::cout << "The event log is empty\n";
    else
        table.print(std::cout, layoutOf(STDOUT_FILENO));
}

} // namespace phctl
