#include "sdr_builder.h"

#include <algorithm>

SdrBuilder::SdrBuilder(std::uint8_t type, std::size_t fixedSize, std::string_view name)
    : bytes_(fixedSize + 1) {
    bytes_[fixedSize] = static_cast<std::uint8_t>(0xC0 | name.size());
    bytes_.insert(bytes_.end(), name.begin(), name.end());
    set(3, {0x51, type});
    resize(bytes_.size());
}

SdrBuilder SdrBuilder::full(std::uint8_t sensorType, std::uint8_t eventReadingType, std::string_view name) {
    SdrBuilder sdr(0x01, 47, name);
    return sdr.set(6, {0x20, 0x00, 0x01}).set(13, {sensorType, eventReadingType}).set(25, {1});
}

SdrBuilder SdrBuilder::compact(std::uint8_t sensorType, std::uint8_t eventReadingType,
                               std::string_view name) {
    SdrBuilder sdr(0x02, 31, name);
    return sdr.set(6, {0x20, 0x00, 0x01}).set(13, {sensorType, eventReadingType}).set(24, {1});
}

SdrBuilder SdrBuilder::fruLocator(std::uint8_t fruDeviceId, std::uint8_t entityId,
                                  std::uint8_t entityInstance) {
    SdrBuilder sdr(0x11, 15, "FRU");
    return sdr.set(6, {0x20, fruDeviceId, 0x80}).set(13, {entityId, entityInstance});
}

SdrBuilder SdrBuilder::record(std::uint8_t type, std::initializer_list<std::uint8_t> bytes) {
    SdrBuilder sdr(type, 5 + bytes.size(), "");
    return sdr.resize(5 + bytes.size()).set(6, bytes);
}

SdrBuilder& SdrBuilder::set(std::size_t position, std::initializer_list<std::uint8_t> values) {
    for (const std::uint8_t value : values)
        bytes_.at(position++ - 1) = value;
    return *this;
}

SdrBuilder& SdrBuilder::states(std::uint16_t mask) {
    return set(19, {static_cast<std::uint8_t>(mask), static_cast<std::uint8_t>(mask >> 8)});
}

SdrBuilder& SdrBuilder::resize(std::size_t size) {
    bytes_.resize(size);
    return set(5, {static_cast<std::uint8_t>(size - 5)});
}

smash::SdrRecord SdrBuilder::record(std::uint16_t id) const {
    smash::SdrRecord record{id, bytes_};
    record.bytes[0] = static_cast<std::uint8_t>(id);
    record.bytes[1] = static_cast<std::uint8_t>(id >> 8);
    return record;
}
