#include "machine.h"

#include "database.h"

namespace phctl {

namespace fs = std::filesystem;

fs::path machineFile(const std::string& name) {
    if (!name.empty())
        return fs::absolute(name);
    if (const auto row = sessionRow()) {
        const auto settings = settingsOf(*row);
        if (settings.interfaceType == ipmi::SessionSettings::VirtualBmc)
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
