// CIM_SoftwareInstallationServiceCapabilities: what firmware the BMC takes, and from where.
#include "firmware/installation.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_SoftwareInstallationServiceCapabilitiesKeyList[1] = {"InstanceID"};

namespace {

using Record = SoftwareInstallationServiceCapabilitiesRecord;

bool installs(const Record& record) {
    return record.SupportedAsynchronousActions[0] != ph::InstallAction::None;
}

constexpr ph::Property properties[] = {
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

int enumerate(ph::RecordArray<Record>& all, ph::Detail detail) {
    Record* capabilities = all.append();
    if (capabilities == nullptr)
        return -1;
    ph::copyText(capabilities->InstanceID, "SoftwareInstallationServiceCapabilities");
    if (detail == ph::Detail::Names)
        return 0;
    CIM_FirmwareUpdate update{};
    if (!ph::firmware::readUpdate(update))
        return -1;
    ph::copyText(capabilities->ElementName, "Software Installation Service Capabilities");
    if (update.isSupported != 0)
        ph::setList(capabilities->SupportedAsynchronousActions,
                    {ph::InstallAction::FromSoftwareIdentity, ph::InstallAction::FromUri});
    else
        ph::setList(capabilities->SupportedAsynchronousActions, {ph::InstallAction::None});
    ph::setList(capabilities->SupportedSynchronousActions, {ph::InstallAction::None});
    ph::setList(capabilities->SupportedExtendedResourceTypes, {ph::ExtendedResourceType::NotApplicable});
    ph::setList(capabilities->SupportedInstallOptions,
                {ph::InstallOption::Install, ph::InstallOption::Update});
    ph::setList(capabilities->SupportedURISchemes, {ph::UriScheme::File, ph::UriScheme::Http});
    capabilities->SupportedTargetTypes[0] = strdup("BMC firmware");
    return capabilities->SupportedTargetTypes[0] != nullptr ? 0 : -1;
}

constexpr ph::ClassDefinition<Record> definition{
    .name = "CIM_SoftwareInstallationServiceCapabilities",
    .superclass = "CIM_Capabilities",
    .source = "one fixed instance; the platform's functions for firmware",
    .keys = g_SoftwareInstallationServiceCapabilitiesKeyList,
    .properties = properties,
    .enumerate = enumerate};

} // namespace

PH_EXPORT_CLASS_FAMILY(SoftwareInstallationServiceCapabilities, Record, definition)
