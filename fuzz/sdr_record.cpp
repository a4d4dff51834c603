// Sensor data records, one behind the other as their length bytes say, and the rows that they become.
#include "input.h"
#include "smash-db/sync/sdr_mapping.h"
#include "target.h"

#include <cstring>

namespace {

template <std::size_t N>
bool isEnded(const char (&text)[N]) {
    return std::memchr(text, '\0', N) != nullptr;
}

void check(const CompactSdr& row) {
    require(isEnded(row.deviceId) && isEnded(row.name) && isEnded(row.otherSensorType) && isEnded(row.source),
            "texts end");
    require(row.name[0] != '\0' && row.deviceId[0] != '\0', "a sensor has a name");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t header = 5;
    smash::SdrMapping mapping;
    std::vector<smash::SyncRemark> remarks;
    for (Input input(data, size); !input.isEmpty();) {
        const auto head = input.bytes(header);
        smash::SdrRecord record{.id = 1, .bytes{head.begin(), head.end()}};
        record.bytes.resize(header);
        const auto body = input.bytes(record.bytes[header - 1]);
        record.bytes[header - 1] = static_cast<std::uint8_t>(body.size());
        record.bytes.insert(record.bytes.end(), body.begin(), body.end());
        mapping.add(record, remarks);
    }
    for (const FullSdr& row : mapping.numericSensors)
        check(row.common);
    for (const CompactSdr& row : mapping.sensors)
        check(row);
    return 0;
}
