#include "support/log_benchmark.h"

#include "ipmi/transport.h"
#include "provider_helper/record_log.h"
#include "support/counted_instances.h"
#include "virtual-bmc/virtual_bmc.h"

#include <fstream>
#include <stdexcept>

namespace bench {

std::string makeLogBmc(const std::string& root) {
    std::string state = root + "/var/lib/virtual-bmc/bmc.state";
    vbmc::createFromText(state, R"({"device": {}, "sel": {"capacity": 65535}})", "benchmark");
    std::ofstream(root + "/conf/system_names.ini") << "[names]\nsp = Benchmark\n";
    SMASH_DB_HANDLE database = nullptr;
    IPMISessionInfo session{};
    session.interfaceType[0] = '0' + ipmi::SessionSettings::VirtualBmc;
    if (smash_db_init(&database) != 0 || db_set_ipmi_session_info(database, &session) != 0)
        throw std::runtime_error(db_last_error());
    db_close(database);
    return state;
}

std::size_t countLogEntries(const broker::Broker& broker) {
    return countInstances(broker, "CIM_LogEntry", PH_EI_LogEntry);
}

} // namespace bench
