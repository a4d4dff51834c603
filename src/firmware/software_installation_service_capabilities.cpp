// CIM_SoftwareInstallationServiceCapabilities: what firmware the BMC takes, and from where.
#include "firmware/installation.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_SoftwareInstallationServiceCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::software_installation_service_capabilities {
namespace {

using Record = SoftwareInstallationServiceCapabilitiesRecord;

bool installs(const Record& record) {
    return record.SupportedAsynchronousActions[0] != InstallAction::None;
}

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, SupportedAsynchronousActions),
    PH_PROPERTY(Record, SupportedSynchronousActions),
    PH_PROPERTY(Record, SupportedTargetTypes),
    PH_PROPERTY(Record, SupportedExtendedResourceTypes),
    PH_PROPERTY(Record, CanAddToCollection),
    PH_PROPERTY_IF(Record, SupportedInstallOptions, installs),
    PH_PROPERTY_IF(Record, SupportedURISchemes, installs),
};

int enumerate(RecordArray<Record>& all, Detail detail) {
    Record* capabilities = all.append();
    if (capabilities == nullptr)
        return -1;
    copyText(capabilities->InstanceID, "SoftwareInstallationServiceCapabilities");
    if (detail == Detail::Names)
        return 0;
    CIM_FirmwareUpdate update{};
    if (!firmware::readUpdate(update))
        return -1;
    copyText(capabilities->ElementName, "Software Installation Service Capabilities");
    if (update.isSupported != 0)
        setList(capabilities->SupportedAsynchronousActions,
                {InstallAction::FromSoftwareIdentity, InstallAction::FromUri});
    else
        setList(capabilities->SupportedAsynchronousActions, {InstallAction::None});
    setList(capabilities->SupportedSynchronousActions, {InstallAction::None});
    setList(capabilities->SupportedExtendedResourceTypes, {ExtendedResourceType::NotApplicable});
    setList(capabilities->SupportedInstallOptions, {InstallOption::Install, InstallOption::Update});
    setList(capabilities->SupportedURISchemes, {UriScheme::File, UriScheme::Http});
    capabilities->SupportedTargetTypes[0] = strdup("BMC firmware");
    return capabilities->SupportedTargetTypes[0] != nullptr ? 0 : -1;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_SoftwareInstallationServiceCapabilities",
                                             .superclass = "CIM_Capabilities",
                                             .source =
                                                 "one fixed instance; the platform's functions for firmware",
                                             .keys = g_SoftwareInstallationServiceCapabilitiesKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::software_installation_service_capabilities

PH_EXPORT_CLASS_FAMILY(SoftwareInstallationServiceCapabilities, SoftwareInstallationServiceCapabilitiesRecord,
                       ph::software_installation_service_capabilities::definition)
