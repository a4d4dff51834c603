#include "alert_machine.h"

#include "sensor_machine.h"

#include <fcntl.h>
#include <filesystem>
#include <platform/smash_db.h>
#include <pthread.h>
#include <stdexcept>
#include <unistd.h>

namespace bench {

AlertMachine& AlertMachine::only() {
    static auto* const machine = new AlertMachine;
    return *machine;
}

AlertMachine::AlertMachine() {
    const std::filesystem::path libraries = root_.path() + "/usr/local/lib";
    std::filesystem::create_directories(libraries);
    std::filesystem::create_directories(root_.path() + "/tmp");
    for (const std::filesystem::path library : {PH_INTEROP, PH_EVENT_DESCRIPTIONS})
        std::filesystem::create_symlink(library, libraries / library.filename());
    PH_Init_Indication();
    pthread_t monitor;
    if (g_InteropLibHandle == nullptr ||
        pthread_create(&monitor, nullptr, ReadSELEvents_And_Deliver, nullptr) != 0)
        throw std::runtime_error("the monitor cannot be started");
    pipe_ = open((root_.path() + SEL_EVENT_PIPE).c_str(), O_WRONLY | O_CLOEXEC);
}

void AlertMachine::make(int sensors, const std::vector<std::string>& listeners) const {
    makeSensorMachine(root_.path(), sensors);
    SMASH_DB_HANDLE database = nullptr;
    if (db_init(&database) != 0)
        throw std::runtime_error(db_last_error());
    for (std::size_t i = 0; i < listeners.size(); ++i) {
        CimxmlDestinationRow row{};
        std::snprintf(row.name, sizeof row.name, "CIMXML-%zu", i + 1);
        listeners[i].copy(row.destination, sizeof row.destination - 1);
        if (db_set_listener_destination(database, &row) != 0)
            throw std::runtime_error(db_last_error());
    }
    db_close(database);
}

SelEventMessage AlertMachine::event(int listener, std::uint16_t recordId) {
    return {{static_cast<std::uint8_t>(recordId), static_cast<std::uint8_t>(recordId >> 8), 0x02, 0xC0, 0x2E,
             0x32, 0x66, 0x20, 0, 0x04, 1, 1, 0x01, 0x59, 0x50, 0x46},
            listener,
            1,
            SEL_EVENT_TO_CIMXML};
}

bool AlertMachine::write(int listener, std::uint16_t recordId) const {
    const SelEventMessage message = event(listener, recordId);
    return ::write(pipe_, &message, sizeof message) == sizeof message;
}

} // namespace bench
