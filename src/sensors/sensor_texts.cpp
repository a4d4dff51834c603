// Caption, Description and ElementName.
#include "provider_helper/sensors.h"
#include "sensors/sensor_sdr.h"
#include "tables/sensor_names.h"

#include <cstdio>
#include <iterator>

namespace ph {
namespace {

const char* typeName(unsigned type, const char* beyond) {
    return type < std::size(sensor_type_names) ? sensor_type_names[type].name : beyond;
}

// The name is empty for the reserved sensor types, which lie between the last named and the first OEM one.
const char* captionName(const CompactSdr& sdr) {
    const unsigned type = sdr.eventReadingType;
    const bool isStandard = (type >= 0x01 && type <= 0x0C) || type == 0x6F;
    const char* oem = "OEM Reserved";
    return !isStandard ? oem : typeName(sdr.ipmiSensorType, sdr.ipmiSensorType >= 0xC0 ? oem : "");
}

} // namespace
} // namespace ph

int PH_Fill_Caption_Description_ElementName_Sensor(const CompactSdr* sdr, SensorRecord* record) {
    ph::formatIdentity(record->ElementName, sdr->name, *sdr);
    std::snprintf(record->Description, sizeof(record->Description), "%s(%d.%d.%d):%s for %s %d", sdr->name,
                  sdr->sensorNumber, sdr->ownerId, sdr->ownerLun,
                  ph::typeName(sdr->ipmiSensorType, "OEM RESERVED"), ph::mappingOf(sdr->entityId).name,
                  sdr->entityInstance);
    record->Caption[0] = '\0';
    if (const char* name = ph::captionName(*sdr); *name != '\0')
        ph::formatIdentity(record->Caption, name, *sdr);
    return 0;
}

int PH_Fill_Caption_Description_ElementName_NumericSensor(const FullSdr* sdr, NumericSensorRecord* record) {
    return PH_Fill_Caption_Description_ElementName_Sensor(&sdr->common, &record->sensor);
}
