#include "bmc_connection.h"

#include "errors.h"

namespace phctl {

void BmcConnection::addTo(Command command) {
    session_.addTo(command);
    command.option("--timeout", timeout_, "Seconds that the BMC has for an answer")
        .range(1, 600)
        .showsDefault();
}

SessionRow BmcConnection::row() const {
    if (const auto given = session_.settings())
        return rowOf(*given);
    if (const auto known = sessionRow())
        return *known;
    throw Failure(databaseFile().string() +
                  " does not say where the BMC is: name it with --virtual, --lan or --local");
}

ipmi::SessionSettings BmcConnection::settings(const SessionRow& row) const {
    ipmi::SessionSettings settings = settingsOf(row);
    settings.timeout = timeout_;
    return settings;
}

std::unique_ptr<ipmi::Transport> BmcConnection::open() const {
    const ipmi::SessionSettings bmc = settings(row());
    requireBmc(bmc);
    return ipmi::openTransport(bmc);
}

} // namespace phctl
