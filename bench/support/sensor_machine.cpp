#include "sensor_machine.h"

#include "smash-db/sync/sync.h"
#include "virtual-bmc/virtual_bmc.h"

#include <platform/smash_db.h>
#include <stdexcept>

namespace bench {
namespace {

constexpr char stateFile[] = "/var/lib/virtual-bmc/bmc.state";
constexpr int numbers = 254; // sensor numbers that IPMI has; more SDRs than that share them

std::string model(int count) {
    std::string sensors;
    for (int i = 0; i < count; ++i)
        sensors +=
            std::string(i == 0 ? "" : ",") + R"({"number": )" + std::to_string(1 + i % numbers) +
            R"(, "name": "Temp )" + std::to_string(i) +
            R"(", "type": "Temperature", "entity": 7, "analog": {"format": "unsigned", "unit": "degrees C"},)"
            R"( "thresholds": {"upperNonCritical": 80, "upperCritical": 90}, "reading": )" +
            std::to_string(20 + i % 50) + "}";
    return R"({"device": {}, "frus": [{"id": 0, "name": "Board", "board": {"product": "Benchmark"}}],)"
           R"( "sensors": [)" +
           sensors + "]}";
}

} // namespace

void makeSensorMachine(const std::string& root, int count) {
    const std::string state = root + stateFile;
    vbmc::createFromText(state, model(count), "benchmark", vbmc::Existing::Replace);
    const auto transport = ipmi::openTransport({.address = state,
                                                .userName = {},
                                                .password = {},
                                                .interfaceType = ipmi::SessionSettings::VirtualBmc});
    smash::sync(*transport);
    SMASH_DB_HANDLE database = nullptr;
    IPMISessionInfo session{};
    session.interfaceType[0] = '0' + ipmi::SessionSettings::VirtualBmc;
    if (db_init(&database) != 0 || db_set_ipmi_session_info(database, &session) != 0)
        throw std::runtime_error(db_last_error());
    db_close(database);
}

} // namespace bench
