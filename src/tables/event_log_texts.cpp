// Texts of the event log and its alerts.
#include "provider_helper/tables.h"

#include <cstddef>
#include <iterator>

static_assert(offsetof(PHEventSeverity, name) == sizeof(void*));

// The DMTF PerceivedSeverity values that alerts have.
constexpr PHEventSeverity EveSeverity[] = {
    {0, "Unspecified"}, {2, "Ok"}, {3, "warning"}, {6, "Critical"}, {7, "Non-Recoverable"},
};
static_assert(std::size(EveSeverity) == 5 && EveSeverity[4].name != nullptr);

constexpr char RecordFormat[][1024] = {
    "*string IPMI_SensorNumber.IPMI_OwnerLUN.IPMI_OwnerID*uint8[2] IPMI_RecordID*uint8 IPMIRecordType"
    "*uint8[4] IPMI_TimeStamp*uint8[2] IPMI_GeneratorID*uint8 IPMI_EvMRev*uint8 IPMI_SensorType"
    "*uint8 IPMI_SensorNumber*boolen IPMI_AssertionEvent*uint8 IPMI_EventType*uint8 IPMI_EventData1"
    "*uint8 IPMI_EventData2*uint8 IPMI_EventData3*uint32 IANA*",
    "*uint8[2] IPMIRecordID*uint8 IPMI_RecordType*uint8[4] IPMI_Timestamp"
    "*uint8[3] IPMI_ManufacturerId*uint8[6] IPMI_OEMDefinedData*uint32 IANA*",
    "*uint8[2] IPMIRecordID*uint8 IPMI_RecordType*uint8[13] IPMI_OEMDefinfedData*",
};
static_assert(std::size(RecordFormat) == 3 && RecordFormat[2][0] != 0);
