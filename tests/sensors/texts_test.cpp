// Caption, Description and ElementName.
#include "records.h"

#include <gmock/gmock.h>

namespace {

FullSdr makeSdr(const char* name, int sensorType, int eventReadingType, int entityId) {
    FullSdr sdr{};
    std::snprintf(sdr.common.name, sizeof(sdr.common.name), "%s", name);
    sdr.common.sensorNumber = 254;
    sdr.common.ownerId = 32;
    sdr.common.ownerLun = 3;
    sdr.common.ipmiSensorType = static_cast<uint8_t>(sensorType);
    sdr.common.eventReadingType = static_cast<uint8_t>(eventReadingType);
    sdr.common.entityId = static_cast<uint8_t>(entityId);
    sdr.common.entityInstance = 96;
    return sdr;
}

TEST(Texts, OfSensors) {
    const struct {
        int sensorType;
        int eventReadingType;
        int entityId;
        const char* description; // behind the identity
        const char* caption;     // before it
    } cases[] = {
        {0x01, 0x01, 3, "Temperature for Processor 96", "Temperature"},
        {0x19, 0x6F, 53, "Chip Set for Real Time Clock(RTC) 96", "Chip Set"},
        {0x2C, 0x0C, 54, "FRUState for Other 96", "FRUState"},
        {0x00, 0x02, 0, "Reserved for Unspecified 96", "Reserved"},
        {0xC0, 0x6F, 255, "OEM RESERVED for Other 96", "OEM Reserved"},
        {0x01, 0x70, 7, "Temperature for System Board 96", "OEM Reserved"},
        {0x01, 0x0D, 7, "Temperature for System Board 96", "OEM Reserved"},
        {0x01, 0x00, 7, "Temperature for System Board 96", "OEM Reserved"},
        {0x50, 0x70, 7, "OEM RESERVED for System Board 96", "OEM Reserved"},
        {0x2D, 0x01, 7, "OEM RESERVED for System Board 96", nullptr},
        {0x50, 0x01, 7, "OEM RESERVED for System Board 96", nullptr},
        {0xBF, 0x6F, 7, "OEM RESERVED for System Board 96", nullptr},
    };
    for (const auto& [sensorType, eventReadingType, entityId, description, caption] : cases) {
        const FullSdr sdr = makeSdr("CPU 1 Temp", sensorType, eventReadingType, entityId);
        const auto numeric = makeRecord<NumericSensorRecord>();
        const auto discrete = makeRecord<SensorRecord>();
        EXPECT_EQ(PH_Fill_Caption_Description_ElementName_Sensor(&sdr.common, discrete.get()), 0);
        EXPECT_EQ(PH_Fill_Caption_Description_ElementName_NumericSensor(&sdr, numeric.get()), 0);
        for (const SensorRecord* record : {discrete.get(), &numeric->sensor}) {
            EXPECT_STREQ(record->ElementName, "CPU 1 Temp(254.32.3)");
            EXPECT_EQ(record->Description, std::string("CPU 1 Temp(254.32.3):") + description);
            EXPECT_EQ(record->Caption, caption != nullptr ? std::string(caption) + "(254.32.3)" : "");
        }
    }
}

} // namespace
