#include "virtual-bmc/sel/sel.h"

#include "virtual-bmc/sel/sel_file.h"
#include "virtual-bmc/state/json_fields.h"

#include <algorithm>
#include <ctime>

namespace vbmc {
namespace {

constexpr Choice policies[] = {{0, "stop"}, {1, "wrap"}};

std::uint16_t following(std::uint16_t id) {
    return id == Sel::lastId ? Sel::firstId : static_cast<std::uint16_t>(id + 1);
}

void dropOldest(Sel& sel) {
    sel.head = (sel.head + 1) % (sel.capacity + 1U);
    --sel.count;
}

// Makes room for a record with the next ID. false when the log takes no more.
bool makeRoom(Sel& sel, const SelFile& file) {
    const auto isFull = [&] {
        return sel.count == sel.capacity ||
               (sel.count > 0 && PH_SelRecordId(file.read(sel, 0).data()) == sel.nextId);
    };
    while (isFull() && sel.wraps)
        dropOldest(sel);
    return !isFull();
}

void putTime(SelRecord& record, std::uint32_t time) {
    ipmi::Writer(std::span(record).subspan(SEL_TIME_OFFSET)).u32(time);
}

// An event message of the BMC itself (IPMI 2.0, 29.7).
SelRecord sensorEvent(std::uint8_t sensorType, std::uint8_t number, std::uint8_t eventType,
                      bool isDeassertion, std::array<std::uint8_t, 3> data) {
    constexpr std::uint16_t bmc = 0x0020;
    constexpr std::uint8_t ipmi20 = 0x04;
    SelRecord record{};
    ipmi::Writer(record)
        .u16(0)
        .u8(SEL_SYSTEM_EVENT)
        .u32(0)
        .u16(bmc)
        .u8(ipmi20)
        .u8(sensorType)
        .u8(number)
        .u8(static_cast<std::uint8_t>(isDeassertion ? eventType | SEL_DEASSERTION : eventType))
        .bytes(data);
    return record;
}

// Events as a server's log has them: a sensor goes beyond a limit or into a state, and back.
SelRecord sampleEvent(const Sensors& sensors, std::size_t number) {
    SelRecord record{};
    ipmi::Writer writer(record);
    writer.u16(0);
    if (number % 10 == 8) {
        writer.u8(SEL_FIRST_OEM_TIMED).u32(0).u24(0x000157).u32(static_cast<std::uint32_t>(number));
        return record;
    }
    if (number % 10 == 9) {
        writer.u8(SEL_FIRST_OEM_UNTIMED).fill(9, 0xA5).u32(static_cast<std::uint32_t>(number));
        return record;
    }
    const bool isDeassertion = number % 2 == 1;
    if (sensors.list.empty())
        return sensorEvent(0x12, 0, 0x6F, isDeassertion, {0x00, 0xFF, 0xFF});
    const Sensor& sensor = sensors.list[number / 2 % sensors.list.size()];
    // Upper critical going high with reading and threshold, or state offset 0.
    return sensorEvent(sensor.type, sensor.number, sensor.readingType, isDeassertion,
                       sensor.isThreshold() ? std::array<std::uint8_t, 3>{0x59, 0x7D, 0x78}
                                            : std::array<std::uint8_t, 3>{0x00, 0xFF, 0xFF});
}

std::uint8_t getSelInfo(State& state, ipmi::Reader, ipmi::Writer& answer) {
    constexpr std::uint8_t version = 0x51;
    constexpr std::uint8_t operations = 0x0B; // Delete, Reserve, Get Allocation Info
    const auto& sel = state.get<Sel>();
    const std::uint32_t freeBytes = (sel.capacity - sel.count) * 16U;
    answer.u8(version)
        .u16(sel.count)
        .u16(static_cast<std::uint16_t>(std::min<std::uint32_t>(freeBytes, 0xFFFF)))
        .u32(sel.lastAddition)
        .u32(sel.lastErasure)
        .u8(static_cast<std::uint8_t>(operations | (sel.hasDropped ? 0x80 : 0)));
    return ipmi::completion::success;
}

std::uint8_t getSelAllocationInfo(State& state, ipmi::Reader, ipmi::Writer& answer) {
    const auto& sel = state.get<Sel>();
    const auto freeRecords = static_cast<std::uint16_t>(sel.capacity - sel.count);
    answer.u16(sel.capacity).u16(16).u16(freeRecords).u16(freeRecords).u8(1);
    return ipmi::completion::success;
}

std::uint8_t reserveSel(State& state, ipmi::Reader, ipmi::Writer& answer) {
    auto& sel = state.edit<Sel>();
    if (++sel.reservation == Sel::notReserved)
        ++sel.reservation;
    answer.u16(sel.reservation);
    return ipmi::completion::success;
}

bool isReserved(const Sel& sel, std::uint16_t reservation) {
    return reservation != Sel::notReserved && reservation == sel.reservation;
}

std::uint8_t getSelEntry(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const auto& sel = state.get<Sel>();
    const std::uint16_t reservation = request.u16();
    const std::uint16_t id = request.u16();
    const std::size_t offset = request.u8();
    std::size_t size = request.u8();
    if (offset > 0 && !isReserved(sel, reservation))
        return ipmi::completion::reservationCanceled;
    const SelFile file(state);
    const auto position = file.find(sel, id);
    if (!position)
        return ipmi::completion::notPresent;
    if (size == 0xFF)
        size = 16;
    if (size > sel.largestRead)
        return ipmi::completion::cannotReturnBytes;
    if (offset + size > 16)
        return ipmi::completion::parameterOutOfRange;
    const bool isLast = *position + 1 == sel.count;
    const SelRecord record = file.read(sel, *position);
    answer
        .u16(isLast ? 0xFFFF
                    : PH_SelRecordId(file.read(sel, static_cast<std::uint16_t>(*position + 1)).data()))
        .bytes(std::span(record).subspan(offset, size));
    return ipmi::completion::success;
}

std::uint8_t addSelEntry(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    SelRecord record;
    std::ranges::copy(request.bytes(record.size()), record.begin());
    if (PH_SelRecordType(record.data()) < SEL_FIRST_OEM_UNTIMED)
        putTime(record, 0); // the BMC's own
    const auto id = Sel::add(state, SelFile(state), record);
    if (!id)
        return ipmi::completion::outOfSpace;
    answer.u16(*id);
    return ipmi::completion::success;
}

// The records behind it move up, first in the file, then in the state. After a crash between the two, a
// reader of the file finds the last record twice.
std::uint8_t deleteSelEntry(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const auto& sel = state.get<Sel>();
    if (!isReserved(sel, request.u16()))
        return ipmi::completion::reservationCanceled;
    const SelFile file(state);
    const auto position = file.find(sel, request.u16());
    if (!position)
        return ipmi::completion::notPresent;
    answer.u16(PH_SelRecordId(file.read(sel, *position).data()));
    for (auto i = static_cast<std::uint16_t>(*position + 1); i < sel.count; ++i)
        file.write(sel, static_cast<std::uint16_t>(i - 1), file.read(sel, i));
    auto& edited = state.edit<Sel>();
    --edited.count;
    edited.lastErasure = edited.now();
    edited.reservation = Sel::notReserved;
    return ipmi::completion::success;
}

std::uint8_t clearSel(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    constexpr std::uint8_t initiate = 0xAA;
    constexpr std::uint8_t getStatus = 0x00;
    constexpr std::uint8_t inProgress = 0;
    constexpr std::uint8_t completed = 1;
    const std::uint16_t reservation = request.u16();
    const auto word = request.bytes(3);
    const std::uint8_t action = request.u8();
    if (!isReserved(state.get<Sel>(), reservation))
        return ipmi::completion::reservationCanceled;
    if (!std::ranges::equal(word, std::array{'C', 'L', 'R'}) || (action != initiate && action != getStatus))
        return ipmi::completion::invalidDataField;
    auto& sel = state.edit<Sel>();
    if (action == initiate) {
        Sel::clear(state);
        sel.reservation = reservation; // kept, to ask for the progress
        sel.erasureStepsLeft = sel.erasureSteps;
    } else if (sel.erasureStepsLeft > 0) {
        --sel.erasureStepsLeft;
    }
    answer.u8(sel.erasureStepsLeft > 0 ? inProgress : completed);
    return ipmi::completion::success;
}

std::uint8_t getSelTime(State& state, ipmi::Reader, ipmi::Writer& answer) {
    answer.u32(state.get<Sel>().now());
    return ipmi::completion::success;
}

std::uint8_t setSelTime(State& state, ipmi::Reader request, ipmi::Writer&) {
    auto& sel = state.edit<Sel>();
    sel.clockOffset =
        static_cast<std::int32_t>(request.u32() - static_cast<std::uint32_t>(std::time(nullptr)));
    return ipmi::completion::success;
}

std::uint8_t getSelTimeUtcOffset(State& state, ipmi::Reader, ipmi::Writer& answer) {
    answer.u16(static_cast<std::uint16_t>(state.get<Sel>().utcOffset));
    return ipmi::completion::success;
}

std::uint8_t setSelTimeUtcOffset(State& state, ipmi::Reader request, ipmi::Writer&) {
    const auto offset = static_cast<std::int16_t>(request.u16());
    if (offset != Sel::noUtcOffset && (offset < -Sel::mostUtcOffset || offset > Sel::mostUtcOffset))
        return ipmi::completion::parameterOutOfRange;
    state.edit<Sel>().utcOffset = offset;
    return ipmi::completion::success;
}

std::uint8_t getSelPolicy(State& state, ipmi::Reader, ipmi::Writer& answer) {
    answer.u8(state.get<Sel>().wraps ? 1 : 0);
    return ipmi::completion::success;
}

// Writes a time as the log's own clock shows it.
std::string timeText(std::uint32_t seconds) {
    const std::time_t time = seconds;
    std::tm parts{};
    char text[32] = "";
    if (gmtime_r(&time, &parts) != nullptr)
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
    return text;
}

} // namespace

std::span<const Command> Sel::commands() {
    static constexpr Command table[] = {
        {ipmi::command::getSelInfo, 0, getSelInfo},
        {ipmi::command::getSelAllocationInfo, 0, getSelAllocationInfo},
        {ipmi::command::reserveSel, 0, reserveSel},
        {ipmi::command::getSelEntry, 6, getSelEntry},
        {ipmi::command::addSelEntry, 16, addSelEntry},
        {ipmi::command::deleteSelEntry, 4, deleteSelEntry},
        {ipmi::command::clearSel, 6, clearSel},
        {ipmi::command::getSelTime, 0, getSelTime},
        {ipmi::command::setSelTime, 4, setSelTime},
        {ipmi::command::getSelTimeUtcOffset, 0, getSelTimeUtcOffset},
        {ipmi::command::setSelTimeUtcOffset, 2, setSelTimeUtcOffset},
        {ipmi::oem::getSelPolicy, 0, getSelPolicy},
    };
    return table;
}

void Sel::fields(Fields& fields) {
    fields("capacity", capacity);
    fields.choice("whenFull", wraps, policies);
    fields.number("largestRead", largestRead, 1, 16);
    fields("erasureSteps", erasureSteps);
    fields("head", head);
    fields("count", count);
    fields("nextId", nextId);
    fields("lastAddition", lastAddition);
    fields("lastErasure", lastErasure);
    fields("hasDropped", hasDropped);
    fields("reservation", reservation);
    fields("erasureStepsLeft", erasureStepsLeft);
    fields("clockOffset", clockOffset);
    fields("utcOffset", utcOffset);
}

void Sel::check(const Place& place) const {
    if (count > capacity || head > capacity)
        vbmc::fail(place, "there are more records than room");
    if (utcOffset != noUtcOffset && (utcOffset < -mostUtcOffset || utcOffset > mostUtcOffset))
        vbmc::fail(Place{&place, "utcOffset"}, "-1440 to 1440 minutes are allowed");
}

Json Sel::describe(const State&) const {
    Json json = Json::object();
    json["records"] = count;
    json["capacity"] = capacity;
    json["whenFull"] = nameOf(policies, wraps);
    json["hasDropped"] = hasDropped;
    json["timeText"] = timeText(now());
    if (utcOffset != noUtcOffset)
        json["utcOffset"] = utcOffset;
    return json;
}

std::uint32_t Sel::now() const {
    return static_cast<std::uint32_t>(std::time(nullptr)) + static_cast<std::uint32_t>(clockOffset);
}

std::uint32_t Sel::at(std::int64_t milliseconds) const {
    return static_cast<std::uint32_t>(milliseconds / 1000) + static_cast<std::uint32_t>(clockOffset);
}

std::optional<std::uint16_t> Sel::add(State& state, const SelFile& file,
                                      std::span<const std::uint8_t, 16> record) {
    auto& sel = state.edit<Sel>();
    if (sel.count == 0 && sel.capacity == largestCapacity)
        sel.nextId = 0;
    if (!makeRoom(sel, file)) {
        sel.hasDropped = true;
        return std::nullopt;
    }
    const std::uint16_t id = sel.nextId;
    SelRecord stored;
    std::ranges::copy(record, stored.begin());
    ipmi::Writer(stored).u16(id);
    const bool hasTime =
        std::ranges::any_of(record.subspan(SEL_TIME_OFFSET, 4), [](auto byte) { return byte != 0; });
    if (PH_SelRecordType(stored.data()) < SEL_FIRST_OEM_UNTIMED && !hasTime)
        putTime(stored, sel.now());
    file.write(sel, sel.count, stored);
    ++sel.count;
    sel.nextId = following(id);
    sel.lastAddition = sel.now();
    return id;
}

std::optional<std::uint16_t> Sel::addEvent(State& state, const SensorRef& reference, std::uint8_t offset,
                                           bool isDeassertion) {
    return addEvent(state, reference, {offset, 0xFF, 0xFF}, 0, isDeassertion);
}

std::optional<std::uint16_t> Sel::addEvent(State& state, const SensorRef& reference,
                                           std::array<std::uint8_t, 3> data, std::uint32_t time,
                                           bool isDeassertion) {
    const auto& sensors = state.get<Sensors>();
    const auto slot = sensors.find(reference);
    const Sensor& sensor = sensors.sensor(slot);
    SelRecord record = sensorEvent(sensor.type, static_cast<std::uint8_t>(sensor.number + slot.instance),
                                   sensor.readingType, isDeassertion, data);
    putTime(record, time);
    return add(state, SelFile(state), record);
}

std::size_t Sel::fill(State& state, std::size_t count) {
    const SelFile file(state);
    std::size_t added = 0;
    while (added < count && add(state, file, sampleEvent(state.get<Sensors>(), added)))
        ++added;
    return added;
}

void Sel::clear(State& state) {
    auto& sel = state.edit<Sel>();
    sel.head = 0;
    sel.count = 0;
    sel.hasDropped = false;
    sel.lastErasure = sel.now();
    sel.reservation = notReserved;
}

} // namespace vbmc
