#include "virtual-bmc/virtual_bmc.h"

#include "virtual-bmc/pef/pef_alerts.h"
#include "virtual-bmc/sel/sel_file.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state_file.h"

#include <ctime>
#include <fcntl.h>

namespace vbmc {
namespace {

// Runs work on a sensor; errors begin with which sensor it is.
[[noreturn]] void fail(const Sensor& sensor, const std::string& reason) {
    throw Error("sensor '" + sensor.name + "': " + reason);
}

template <class Work>
void editSensor(StateFile& file, const SensorRef& reference, Work&& work) {
    file.transact([&](State& state) {
        const auto slot = state.get<Sensors>().find(reference);
        auto& sensors = state.edit<Sensors>();
        work(sensors.sensor(slot), sensors.live(slot));
    });
}

void requireAnalog(const Sensor& sensor) {
    if (!sensor.isAnalog())
        fail(sensor, "it has no analog reading");
}

std::uint16_t requireAdded(std::optional<std::uint16_t> id) {
    if (!id)
        throw Error("the event log is full");
    return *id;
}

// Returns a struct with some of its members changed.
template <class Entry>
void change(Entry& entry, const Json& changes, const char* name) {
    Json json = write(entry);
    json.update(changes);
    Entry changed;
    read(json, Place{nullptr, name}, changed);
    entry = std::move(changed);
}

void requireLan(const State& state, std::uint8_t channel) {
    if (state.get<Lans>().find(channel) == nullptr)
        throw Error("there is no LAN on channel " + std::to_string(channel));
}

} // namespace

void create(const std::filesystem::path& stateFile, const std::filesystem::path& modelFile,
            Existing existing) {
    const std::string text = readAll(openPrivate(modelFile, O_RDONLY), modelFile);
    createFromText(stateFile, text, modelFile.string(), existing);
}

void createFromText(const std::filesystem::path& stateFile, std::string_view model,
                    const std::string& modelName, Existing existing) {
    State state(stateFile);
    try {
        state.loadModel(model);
    } catch (const Error& error) {
        throw Error(modelName + ": " + error.what());
    }
    // A machine that replaces another one has newer sensor data records.
    if (auto& repository = state.edit<SdrRepository>(); repository.lastAddition == 0)
        repository.lastAddition = static_cast<std::uint32_t>(std::time(nullptr));
    StateFile::create(stateFile, state, existing);
}

VirtualBmc::VirtualBmc(std::filesystem::path stateFile)
    : file_(std::make_unique<StateFile>(std::move(stateFile))) {}

VirtualBmc::~VirtualBmc() = default;

nlohmann::ordered_json VirtualBmc::describe() {
    Json description;
    file_->transact([&](State& state) { description = state.describe(); });
    return description;
}

void VirtualBmc::setReading(const SensorRef& sensor, double value) {
    editSensor(*file_, sensor, [&](Sensor& found, Live& live) {
        requireAnalog(found);
        const auto raw = found.analog.factors.raw(value);
        if (!raw)
            fail(found, "it has no reading for " + Json(value).dump());
        live.raw = *raw;
    });
}

void VirtualBmc::setRawReading(const SensorRef& sensor, std::uint8_t raw) {
    editSensor(*file_, sensor, [&](Sensor& found, Live& live) {
        requireAnalog(found);
        live.raw = raw;
    });
}

void VirtualBmc::setStates(const SensorRef& sensor, std::uint16_t states) {
    editSensor(*file_, sensor, [&](Sensor& found, Live& live) {
        constexpr std::uint16_t reserved = 0x8000;
        if (found.isAnalog())
            fail(found, "its states follow from its reading");
        if ((states & reserved) != 0)
            fail(found, "state offsets end at 14");
        live.states.bits = states;
    });
}

void VirtualBmc::setAvailability(const SensorRef& sensor, Availability availability) {
    editSensor(*file_, sensor, [&](Sensor&, Live& live) { live.availability = availability; });
}

std::uint16_t VirtualBmc::addSelRecord(std::span<const std::uint8_t, 16> record) {
    std::optional<std::uint16_t> id;
    file_->transact([&](State& state) { id = Sel::add(state, SelFile(state), record); });
    return requireAdded(id);
}

std::uint16_t VirtualBmc::addSensorEvent(const SensorRef& sensor, std::uint8_t offset, bool isDeassertion) {
    std::optional<std::uint16_t> id;
    file_->transact([&](State& state) { id = Sel::addEvent(state, sensor, offset, isDeassertion); });
    return requireAdded(id);
}

std::vector<SelRecord> VirtualBmc::selRecords() {
    std::vector<SelRecord> records;
    file_->transact([&](State& state) {
        const auto& sel = state.get<Sel>();
        const SelFile file(state);
        for (std::uint16_t position = 0; position < sel.count; ++position)
            records.push_back(file.read(sel, position));
    });
    return records;
}

std::size_t VirtualBmc::fillSel(std::size_t count) {
    std::size_t added = 0;
    file_->transact([&](State& state) { added = Sel::fill(state, count); });
    return added;
}

void VirtualBmc::clearSel() {
    file_->transact([](State& state) { Sel::clear(state); });
}

void VirtualBmc::setSelWraps(bool wraps) {
    file_->transact([&](State& state) { state.edit<Sel>().wraps = wraps; });
}

EventMatch VirtualBmc::matchEvent(std::span<const std::uint8_t, 16> record) {
    EventMatch match;
    file_->transact([&](State& state) { match = filterEvent(state, record); });
    return match;
}

void VirtualBmc::setAlertDestination(std::uint8_t channel, std::uint8_t selector, const Json& changes) {
    file_->transact([&](State& state) {
        requireLan(state, channel);
        change(state.edit<AlertDestinations>().edit(channel, selector), changes, "alert destination");
    });
}

void VirtualBmc::setMailServer(std::uint8_t channel, bool isSecondary, const Json& changes) {
    file_->transact([&](State& state) {
        requireLan(state, channel);
        change(state.edit<Mail>().edit(channel, isSecondary), changes, "mail server");
    });
}

void VirtualBmc::setWatchdog(const Json& changes) {
    file_->transact([&](State& state) { change(state.edit<Watchdog>(), changes, "watchdog"); });
}

void VirtualBmc::startWatchdog() {
    file_->transact([](State& state) {
        if (state.get<Watchdog>().use == 0)
            throw Error("the watchdog has no use");
        state.edit<Watchdog>().start(Chassis::now());
    });
}

void VirtualBmc::stopWatchdog() {
    file_->transact([](State& state) { state.edit<Watchdog>().stop(); });
}

void VirtualBmc::restartHost() {
    file_->transact([](State& state) {
        auto& chassis = state.edit<Chassis>();
        chassis.settle(Chassis::now());
        if (!chassis.isOn)
            throw Error("the host is off");
        state.edit<BootOptions>().clearValid(ipmi::boot::keepOnSoftReset);
        chassis.reset();
        BootOptions::settle(state, Chassis::now());
    });
}

bool VirtualBmc::letsIn(std::string_view userName, std::string_view password) {
    bool isIn = false;
    file_->transact([&](State& state) { isIn = state.get<Users>().letsIn(userName, password); });
    return isIn;
}

void VirtualBmc::setUserEmail(std::uint8_t userId, const std::string& address) {
    checkMailText(Place{nullptr, "mail address"}, address, ipmi::oem::userAddress);
    file_->transact([&](State& state) {
        if (state.get<Users>().find(userId) == nullptr)
            throw Error("there is no user " + std::to_string(userId));
        state.edit<Users>().slot(userId).email = address;
    });
}

void VirtualBmc::setAlertPolicy(std::uint8_t number, std::span<const std::uint8_t, 3> entry) {
    file_->transact([&](State& state) {
        if (!state.edit<Pef>().setPolicy(number, entry))
            throw Error("alert policies have the numbers 1 to " +
                        std::to_string(state.get<Pef>().policyCount));
    });
}

void VirtualBmc::setLink(const std::string& interfaceName, bool isUp, std::uint16_t speed) {
    file_->transact([&](State& state) {
        Lan& lan = state.edit<Lans>().find(interfaceName);
        lan.isLinkUp = isUp;
        lan.speed = speed;
    });
}

void VirtualBmc::setDhcpLease(const std::string& interfaceName, const std::string& address,
                              const std::string& netmask, const std::string& gateway) {
    const Place place{nullptr, "lease"};
    Ipv4Setting lease;
    read(Json(address), Place{&place, "address"}, lease.address);
    read(Json(netmask), Place{&place, "netmask"}, lease.netmask);
    read(Json(gateway), Place{&place, "gateway"}, lease.gateway);
    lease.check(place);
    file_->transact([&](State& state) { state.edit<Lans>().find(interfaceName).ipv4.lease = lease; });
}

void VirtualBmc::setBond(bool isEnabled) {
    file_->transact([&](State& state) {
        if (!state.edit<Interfaces>().setBond(state, isEnabled))
            throw Error(isEnabled ? "the bond has fewer than two members"
                                  : "no LAN would work without the bond");
    });
}

void VirtualBmc::addFault(const Fault& fault) {
    const FaultEntry entry{fault};
    entry.check(Place{nullptr, "fault"});
    file_->transact([&](State& state) { state.edit<Faults>().list.push_back(entry); });
}

std::vector<Fault> VirtualBmc::faults() {
    std::vector<Fault> faults;
    file_->transact([&](State& state) {
        const auto& list = state.get<Faults>().list;
        faults.assign(list.begin(), list.end());
    });
    return faults;
}

void VirtualBmc::clearFaults() {
    file_->transact([](State& state) { state.edit<Faults>().list.clear(); });
}

void VirtualBmc::recordMessages(std::size_t limit) {
    file_->transact([&](State& state) {
        MessageLog::restart(state, static_cast<std::uint32_t>(std::min<std::size_t>(limit, 0xFFFFFFFF)));
    });
}

std::vector<Message> VirtualBmc::recordedMessages() {
    std::vector<Message> messages;
    file_->transact([&](State& state) { messages = MessageLog::read(state); });
    return messages;
}

} // namespace vbmc
