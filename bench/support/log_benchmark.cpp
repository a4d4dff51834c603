#include "support/log_benchmark.h"

#include "ipmi/transport.h"
#include "provider_helper/record_log.h"
#include "virtual-bmc/virtual_bmc.h"

#include <cmpimacs.h>
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
    std::size_t count = 0;
    CMPIResultFT table{};
    table.returnInstance = [](const CMPIResult* result, const CMPIInstance*) {
        ++*static_cast<std::size_t*>(const_cast<void*>(result->hdl));
        return CMPIStatus{CMPI_RC_OK, nullptr};
    };
    const CMPIResult result{&count, &table};
    broker::Scope request(broker);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    PH_EI_LogEntry(broker.handle(), request.makeContext(),
                   request.make(broker::parseObjectPath("root/cimv2:CIM_LogEntry")), nullptr, &result,
                   &status);
    if (status.rc != CMPI_RC_OK)
        throw std::runtime_error(broker::toString(status.msg));
    return count;
}

} // namespace bench
