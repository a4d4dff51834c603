// What sync and tools read of a BMC: its repository, FRU devices and event log as they come over IPMI. The input's first
// byte says what is read.
#include "answers.h"
#include "ipmi-view/chassis_status.h"
#include "ipmi-view/event_log.h"
#include "ipmi-view/fru.h"
#include "ipmi-view/sel_info.h"
#include "ipmi-view/sensors.h"
#include "smash-db/sync/sdr_repository.h"
#include "target.h"

#include <iterator>
#include <unistd.h>

#pragma GCC visibility push(default)
extern "C" int usleep(useconds_t) {
    return 0;
}
#pragma GCC visibility pop

namespace {

using Read = void (*)(ipmi::Transport&);
constexpr Read readers[] = {
    [](ipmi::Transport& bmc) {
        std::vector<smash::SyncRemark> remarks;
        for (const smash::SdrRecord& record : smash::readSdrRepository(bmc, remarks, [](auto, auto) {}))
            require(record.bytes.size() >= 5, "a record has a header");
    },
    [](ipmi::Transport& bmc) {
        view::FruDevice device{.id = 0, .name = {}, .contents = {}, .problems = {}};
        readFru(bmc, device);
        if (device.contents)
            view::fieldsOf(*device.contents);
    },
    [](ipmi::Transport& bmc) { view::findFruDevices(bmc); },
    [](ipmi::Transport& bmc) { view::readEventLog(bmc); },
    [](ipmi::Transport& bmc) { view::readSelInfo(bmc).percentUsed(); },
    [](ipmi::Transport& bmc) { view::readChassisStatus(bmc).lastEvents(); },
    [](ipmi::Transport& bmc) {
        view::SensorRow sensor;
        sensor.readingType = view::thresholdReadingType;
        view::readSensor(bmc, sensor);
        view::readThresholds(bmc, sensor);
    },
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const Read read = readers[input.byte() % std::size(readers)];
    AnsweringInput bmc(input);
    try {
        read(bmc);
    } catch (const std::runtime_error&) {
    }
    return 0;
}
