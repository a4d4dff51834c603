// SDRs to test with; positions are those of IPMI 2.0 tables 43-1 and 43-2, from 1.
#pragma once

#include "smash-db/sync/sdr_repository.h"

#include <initializer_list>
#include <string_view>

class SdrBuilder {
public:
    static SdrBuilder full(std::uint8_t sensorType, std::uint8_t eventReadingType, std::string_view name);
    static SdrBuilder compact(std::uint8_t sensorType, std::uint8_t eventReadingType, std::string_view name);
    static SdrBuilder fruLocator(std::uint8_t fruDeviceId, std::uint8_t entityId,
                                 std::uint8_t entityInstance);

    // Makes a record of its bytes from the sixth on.
    static SdrBuilder record(std::uint8_t type, std::initializer_list<std::uint8_t> bytes);

    SdrBuilder& set(std::size_t position, std::initializer_list<std::uint8_t> values);
    SdrBuilder& number(std::uint8_t sensorNumber) { return set(8, {sensorNumber}); }
    SdrBuilder& states(std::uint16_t mask);
    // Cuts or extends the record, its length byte with it.
    SdrBuilder& resize(std::size_t size);

    smash::SdrRecord record(std::uint16_t id = 1) const;

private:
    SdrBuilder(std::uint8_t type, std::size_t fixedSize, std::string_view name);

    std::vector<std::uint8_t> bytes_;
};
