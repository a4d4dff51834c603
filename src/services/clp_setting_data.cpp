// CIM_CLPSettingData: what sessions of the command-line protocol begin with.
#include "services/clp_options.h"
#include "Utility/back-ends/clp_library.h"
#include "Utility/engine/changed_record.h"
#include "Utility/requests/request_status.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_CLPSettingDataKeyList[1] = {"InstanceID"};

namespace ph {
extern const ClassFamily family_CLPSettingData;
}

namespace ph::clp_setting_data {
namespace {

using Record = CLPSettingDataRecord;

constexpr Property ownProperties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
};
constexpr auto properties = joined(ownProperties, clp::optionProperties<Record>);

// By the value maps of the class; a text has room for its end.
constexpr Settable settables[] = {
    {"KeepTime", 0, 0xFFFF},
    {"WaitBehavior", 0, 1},
    {"OutputFormat", 2, 5},
    {"OutputVerbosity", 2, 4},
    {"OutputLanguage", 2, sizeof(CLPOptions::OutputLanguage) - 1},
    {"OutputPosition", 2, 3},
    {"OutputOrder", 2, 3},
    {"OutputCount", 0, 0xFFFFFFFF},
    {"DisplayOption", 0, sizeof(CLPOptions::DisplayOption) - 1},
};

int enumerate(RecordArray<Record>& settings, Detail detail) {
    Record* setting = settings.append();
    if (setting == nullptr)
        return -1;
    copyText(setting->InstanceID, "CLPSettingData");
    if (detail == Detail::Names)
        return 0;
    const ClpLibrary library;
    const auto request = library.find<decltype(&SMP_Frame_Options_Req)>("SMP_Frame_Options_Req");
    CLPOptions options{};
    return PH_Fill_CLPSettingData(request != nullptr && request(&options) == 0 ? &options : nullptr, setting);
}

CMPIStatus modify(const Request& request) {
    ChangedRecord changed(family_CLPSettingData);
    if (const CMPIStatus status = changed.apply(request, settables);
        status.rc != CMPI_RC_OK || !changed.hasChanges())
        return status;
    // Without what the others are, none can be written.
    const ClpLibrary library;
    const auto write = library.find<decltype(&SMP_Frame_SetOptions_Req)>("SMP_Frame_SetOptions_Req");
    const Record& wanted = changed.as<Record>();
    return write != nullptr && wanted.hasOptions && write(&wanted.options) == 0
               ? success
               : fail(request.broker, "The daemon refuses the settings");
}

constexpr ClassDefinition<Record> definition{.name = "CIM_CLPSettingData",
                                             .superclass = "CIM_SettingData",
                                             .source = "the daemon smashclpd through libsmclpdpkt.so",
                                             .keys = g_CLPSettingDataKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate,
                                             .modify = modify};

} // namespace
} // namespace ph::clp_setting_data

PH_EXPORT_CLASS_FAMILY(CLPSettingData, CLPSettingDataRecord, ph::clp_setting_data::definition)

int PH_Fill_CLPSettingData(const CLPOptions* options, CLPSettingDataRecord* record) {
    ph::copyText(record->ElementName, "SM CLP Settings");
    ph::clp::setOptions(*record, options);
    return 0;
}
