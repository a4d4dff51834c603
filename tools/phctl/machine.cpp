#include "machine.h"

#include "database.h"
#include "errors.h"

namespace phctl {

namespace fs = std::filesystem;

void addMachineOption(Command command, std::string& name) {
    command.option("--state", name, "State file of the machine, instead of the one that requests go to");
}

fs::path machineFile(const std::string& name) {
    if (!name.empty())
        return fs::absolute(name);
    if (const auto row = sessionRow()) {
        const auto settings = settingsOf(*row);
        if (settings.interfaceType != ipmi::SessionSettings::VirtualBmc)
            throw Failure(
                "requests go to " + describe(settings) +
                ", which is not a virtual BMC, and `phctl bmc` operates no other: name one with --state "
                "FILE, or give it a configuration of its own with --bmc NAME");
        return settings.address;
    }
    return vbmc::defaultStateFile();
}

vbmc::VirtualBmc openMachine(const std::string& name) {
    const fs::path file = machineFile(name);
    ipmi::SessionSettings settings;
    settings.interfaceType = ipmi::SessionSettings::VirtualBmc;
    settings.address = file;
    requireBmc(settings);
    return vbmc::VirtualBmc(file);
}

} // namespace phctl
