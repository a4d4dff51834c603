// CIM_SoftwareInstallationService: installs the BMC's firmware.
#include "firmware/installation.h"
#include "firmware/stored_firmware.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/processor_service.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/cmpi_ptr.h"

#include <algorithm>
#include <cstring>

constexpr const char* const g_SoftwareInstallationServiceKeyList[4] = {
    "SystemCreationClassName", "CreationClassName", "SystemName", "Name"};

namespace ph::software_installation_service {
namespace {

using Record = SoftwareInstallationServiceRecord;

constexpr const char* className = "CIM_SoftwareInstallationService";

int enumerate(RecordArray<Record>& services, Detail detail) {
    return appendService(services, detail, className, "Software Installation Service");
}

// ---- What the methods have in common

constexpr MethodAnswer result(std::uint32_t value) {
    return static_cast<MethodValue>(value);
}

bool areOptionsKnown(const CMPIArgs* in) {
    const auto options = argument(in, "InstallOptions");
    if (!options)
        return true;
    if (options->type != CMPI_uint16A || options->value.array == nullptr)
        return false;
    const CMPICount count = CMGetArrayCount(options->value.array, nullptr);
    for (CMPICount i = 0; i < count; ++i) {
        const CMPIData option = CMGetArrayElementAt(options->value.array, i, nullptr);
        if ((option.state & CMPI_nullValue) != 0 ||
            (option.value.uint16 != InstallOption::Install && option.value.uint16 != InstallOption::Update))
            return false;
    }
    return true;
}

// Returns why the target is refused, and methodDone for the service processor, which is also meant where none is
// given.
std::uint32_t checkTarget(const CMPIArgs* in) {
    if (!argument(in, "Target"))
        return methodDone;
    const CMPIObjectPath* const target = referenceArgument(in, "Target", processorClass);
    if (target == nullptr)
        return InstallResult::UnsupportedTargetType;
    char systemName[256] = "";
    const char* const name = keyText(target, "Name");
    return name != nullptr && PH_GetSPSystemName(systemName) == 0 && std::strcmp(name, systemName) == 0
               ? std::uint32_t{methodDone}
               : InstallResult::NotApplicableToTarget;
}

MethodAnswer install(MethodCall& call, const char* jobName, const char* uri) {
    CIM_FirmwareUpdate update{};
    if (!areOptionsKnown(call.request.in))
        return result(methodNotSupported);
    if (const std::uint32_t refusal = checkTarget(call.request.in); refusal != methodDone)
        return result(refusal);
    if (!firmware::readUpdate(update))
        return call.refuse(CMPI_RC_ERR_FAILED, "The BMC does not answer");
    if (update.isSupported == 0)
        return result(methodNotSupported);
    if (!firmware::knowsScheme(uri))
        return result(InstallResult::NoPathToImage);
    firmware::Turn turn;
    if (!turn || update.state == CIM_FIRMWARE_ACTIVATING)
        return result(InstallResult::TargetInUse);
    return call.start(jobName, [&](const char* job) {
        return firmware::begin(std::move(turn), uri, job, update.largestImage);
    });
}

// ---- InstallFromSoftwareIdentity, CheckSoftwareIdentity

// Finds the kept image that "Source" refers to. Returns why it cannot be installed, or methodDone.
std::uint32_t findSource(const CMPIArgs* in, CIM_StoredFirmware& image) {
    if (argument(in, "Collection"))
        return InstallResult::CannotAddToCollection;
    const CMPIObjectPath* const source = referenceArgument(in, "Source", "CIM_SoftwareIdentity");
    const char* const wanted = source != nullptr ? keyText(source, "InstanceID") : nullptr;
    CIM_StoredFirmware images[CIM_MAX_STORED_FIRMWARE] = {};
    std::uint8_t count = 0;
    IpmiSession session;
    if (wanted == nullptr || !session.open() ||
        CIM_GetStoredFirmware(session.get(), images, &count, hookTimeout) != 0)
        return InstallResult::NoPathToImage;
    for (int i = 0; i < std::min<int>(count, CIM_MAX_STORED_FIRMWARE); ++i) {
        char id[64];
        writeStoredId(images[i], id);
        if (std::strcmp(id, wanted) == 0) {
            image = images[i];
            return methodDone;
        }
    }
    return InstallResult::NoPathToImage;
}

MethodAnswer installFromIdentity(MethodCall& call) {
    CIM_StoredFirmware image{};
    const std::uint32_t refusal = findSource(call.request.in, image);
    return refusal == methodDone ? install(call, "InstallFromSoftwareIdentity", image.uri) : result(refusal);
}

// The BMC starts the new firmware by itself.
MethodAnswer checkIdentity(MethodCall& call) {
    CIM_StoredFirmware image{};
    if (const std::uint32_t refusal = findSource(call.request.in, image); refusal != methodDone)
        return result(refusal);
    if (const std::uint32_t refusal = checkTarget(call.request.in); refusal != methodDone)
        return result(refusal);
    constexpr int characteristics[] = {InstallCharacteristics::TargetAutomaticReset, -1};
    const CmpiPtr<CMPIArray> array(PH_Dup_uint16_Array(call.request.broker, characteristics));
    CMPIValue value{};
    value.array = array.get();
    return array != nullptr &&
                   CMAddArg(call.request.out, "InstallCharacteristics", &value, CMPI_uint16A).rc == CMPI_RC_OK
               ? methodDone
               : methodFailed;
}

// ---- InstallFromURI

constexpr Parameter installFromUriParameters[] = {
    {"Job", CMPI_ref, Direction::Out, "CIM_ConcreteJob"},
    {"URI", CMPI_string},
    {"Target", CMPI_ref, Direction::In, "CIM_ManagedElement"},
    {"InstallOptions", CMPI_uint16A},
    {"InstallOptionsValues", CMPI_stringA},
};

constexpr Parameter installParameters[] = {
    {"Job", CMPI_ref, Direction::Out, "CIM_ConcreteJob"},
    {"InstallOptions", CMPI_uint16A},
    {"InstallOptionsValues", CMPI_stringA},
    {"Source", CMPI_ref, Direction::In, "CIM_SoftwareIdentity"},
    {"Target", CMPI_ref, Direction::In, "CIM_ManagedElement"},
    {"Collection", CMPI_ref, Direction::In, "CIM_Collection"},
};
constexpr Parameter checkParameters[] = {
    {"Source", CMPI_ref, Direction::In, "CIM_SoftwareIdentity"},
    {"Target", CMPI_ref, Direction::In, "CIM_ManagedElement"},
    {"Collection", CMPI_ref, Direction::In, "CIM_Collection"},
    {"InstallCharacteristics", CMPI_uint16A, Direction::Out},
};

constexpr Method methods[] = {
    {.name = "CheckSoftwareIdentity", .parameters = checkParameters, .carryOut = checkIdentity},
    {.name = "InstallFromSoftwareIdentity",
     .parameters = installParameters,
     .carryOut = installFromIdentity,
     .job = JobReport{}},
    {.name = "InstallFromURI",
     .parameters = installFromUriParameters,
     .carryOut = firmware::installFromUri,
     .job = JobReport{}},
};

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_Service",
    .source = "one fixed instance; the platform's functions for firmware",
    .keys = g_SoftwareInstallationServiceKeyList,
    .properties = serviceProperties<Record>,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.isLookedUp = true, .missing = {CMPI_RC_ERR_NOT_FOUND, "No such service"}}};

} // namespace
} // namespace ph::software_installation_service

PH_EXPORT_CLASS_FAMILY(SoftwareInstallationService, SoftwareInstallationServiceRecord,
                       ph::software_installation_service::definition)

ph::MethodAnswer ph::firmware::installFromUri(MethodCall& call) {
    const auto argument = ph::argument(call.request.in, "URI");
    const char* const uri = argument ? textOf(*argument) : nullptr;
    if (uri == nullptr || *uri == '\0' || std::strlen(uri) > longestUri)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "URI Parameter is Invalid");
    return ph::software_installation_service::install(call, "InstallFromURI", uri);
}
