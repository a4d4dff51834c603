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

namespace {

using Record = SoftwareInstallationServiceRecord;
using ph::MethodAnswer;
using ph::MethodCall;

constexpr const char* className = "CIM_SoftwareInstallationService";

int enumerate(ph::RecordArray<Record>& services, ph::Detail detail) {
    return ph::appendService(services, detail, className, "Software Installation Service");
}

// ---- What the methods have in common

constexpr MethodAnswer result(std::uint32_t value) {
    return static_cast<ph::MethodValue>(value);
}

bool areOptionsKnown(const CMPIArgs* in) {
    const auto options = ph::argument(in, "InstallOptions");
    if (!options)
        return true;
    if (options->type != CMPI_uint16A || options->value.array == nullptr)
        return false;
    const CMPICount count = CMGetArrayCount(options->value.array, nullptr);
    for (CMPICount i = 0; i < count; ++i) {
        const CMPIData option = CMGetArrayElementAt(options->value.array, i, nullptr);
        if ((option.state & CMPI_nullValue) != 0 || (option.value.uint16 != ph::InstallOption::Install &&
                                                     option.value.uint16 != ph::InstallOption::Update))
            return false;
    }
    return true;
}

// Returns why the target is refused, and methodDone for the service processor, which is also meant where none is
// given.
std::uint32_t checkTarget(const CMPIArgs* in) {
    if (!ph::argument(in, "Target"))
        return ph::methodDone;
    const CMPIObjectPath* const target = ph::referenceArgument(in, "Target", ph::processorClass);
    if (target == nullptr)
        return ph::InstallResult::UnsupportedTargetType;
    char systemName[256] = "";
    const char* const name = ph::keyText(target, "Name");
    return name != nullptr && PH_GetSPSystemName(systemName) == 0 && std::strcmp(name, systemName) == 0
               ? std::uint32_t{ph::methodDone}
               : ph::InstallResult::NotApplicableToTarget;
}

MethodAnswer install(MethodCall& call, const char* jobName, const char* uri) {
    CIM_FirmwareUpdate update{};
    if (!areOptionsKnown(call.request.in))
        return result(ph::methodNotSupported);
    if (const std::uint32_t refusal = checkTarget(call.request.in); refusal != ph::methodDone)
        return result(refusal);
    if (!ph::firmware::readUpdate(update))
        return call.refuse(CMPI_RC_ERR_FAILED, "The BMC does not answer");
    if (update.isSupported == 0)
        return result(ph::methodNotSupported);
    if (!ph::firmware::knowsScheme(uri))
        return result(ph::InstallResult::NoPathToImage);
    ph::firmware::Turn turn;
    if (!turn || update.state == CIM_FIRMWARE_ACTIVATING)
        return result(ph::InstallResult::TargetInUse);
    return call.start(jobName, [&](const char* job) {
        return ph::firmware::begin(std::move(turn), uri, job, update.largestImage);
    });
}

// ---- InstallFromSoftwareIdentity, CheckSoftwareIdentity

// Finds the kept image that "Source" refers to. Returns why it cannot be installed, or methodDone.
std::uint32_t findSource(const CMPIArgs* in, CIM_StoredFirmware& image) {
    if (ph::argument(in, "Collection"))
        return ph::InstallResult::CannotAddToCollection;
    const CMPIObjectPath* const source = ph::referenceArgument(in, "Source", "CIM_SoftwareIdentity");
    const char* const wanted = source != nullptr ? ph::keyText(source, "InstanceID") : nullptr;
    CIM_StoredFirmware images[CIM_MAX_STORED_FIRMWARE] = {};
    std::uint8_t count = 0;
    ph::IpmiSession session;
    if (wanted == nullptr || !session.open() ||
        CIM_GetStoredFirmware(session.get(), images, &count, ph::hookTimeout) != 0)
        return ph::InstallResult::NoPathToImage;
    for (int i = 0; i < std::min<int>(count, CIM_MAX_STORED_FIRMWARE); ++i) {
        char id[64];
        ph::writeStoredId(images[i], id);
        if (std::strcmp(id, wanted) == 0) {
            image = images[i];
            return ph::methodDone;
        }
    }
    return ph::InstallResult::NoPathToImage;
}

MethodAnswer installFromIdentity(MethodCall& call) {
    CIM_StoredFirmware image{};
    const std::uint32_t refusal = findSource(call.request.in, image);
    return refusal == ph::methodDone ? install(call, "InstallFromSoftwareIdentity", image.uri)
                                     : result(refusal);
}

// The BMC starts the new firmware by itself.
MethodAnswer checkIdentity(MethodCall& call) {
    CIM_StoredFirmware image{};
    if (const std::uint32_t refusal = findSource(call.request.in, image); refusal != ph::methodDone)
        return result(refusal);
    if (const std::uint32_t refusal = checkTarget(call.request.in); refusal != ph::methodDone)
        return result(refusal);
    constexpr int characteristics[] = {ph::InstallCharacteristics::TargetAutomaticReset, -1};
    const ph::CmpiPtr<CMPIArray> array(PH_Dup_uint16_Array(call.request.broker, characteristics));
    CMPIValue value{};
    value.array = array.get();
    return array != nullptr &&
                   CMAddArg(call.request.out, "InstallCharacteristics", &value, CMPI_uint16A).rc == CMPI_RC_OK
               ? ph::methodDone
               : ph::methodFailed;
}

// ---- InstallFromURI

constexpr ph::Parameter installFromUriParameters[] = {
    {"Job", CMPI_ref, ph::Direction::Out, "CIM_ConcreteJob"},
    {"URI", CMPI_string},
    {"Target", CMPI_ref, ph::Direction::In, "CIM_ManagedElement"},
    {"InstallOptions", CMPI_uint16A},
    {"InstallOptionsValues", CMPI_stringA},
};

constexpr ph::Parameter installParameters[] = {
    {"Job", CMPI_ref, ph::Direction::Out, "CIM_ConcreteJob"},
    {"InstallOptions", CMPI_uint16A},
    {"InstallOptionsValues", CMPI_stringA},
    {"Source", CMPI_ref, ph::Direction::In, "CIM_SoftwareIdentity"},
    {"Target", CMPI_ref, ph::Direction::In, "CIM_ManagedElement"},
    {"Collection", CMPI_ref, ph::Direction::In, "CIM_Collection"},
};
constexpr ph::Parameter checkParameters[] = {
    {"Source", CMPI_ref, ph::Direction::In, "CIM_SoftwareIdentity"},
    {"Target", CMPI_ref, ph::Direction::In, "CIM_ManagedElement"},
    {"Collection", CMPI_ref, ph::Direction::In, "CIM_Collection"},
    {"InstallCharacteristics", CMPI_uint16A, ph::Direction::Out},
};

constexpr ph::Method methods[] = {
    {.name = "CheckSoftwareIdentity", .parameters = checkParameters, .carryOut = checkIdentity},
    {.name = "InstallFromSoftwareIdentity",
     .parameters = installParameters,
     .carryOut = installFromIdentity,
     .job = ph::JobReport{}},
    {.name = "InstallFromURI",
     .parameters = installFromUriParameters,
     .carryOut = ph::firmware::installFromUri,
     .job = ph::JobReport{}},
};

constexpr ph::ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_Service",
    .source = "one fixed instance; the platform's functions for firmware",
    .keys = g_SoftwareInstallationServiceKeyList,
    .properties = ph::serviceProperties<Record>,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.isLookedUp = true, .missing = {CMPI_RC_ERR_NOT_FOUND, "No such service"}}};

} // namespace

PH_EXPORT_CLASS_FAMILY(SoftwareInstallationService, Record, definition)

ph::MethodAnswer ph::firmware::installFromUri(MethodCall& call) {
    const auto argument = ph::argument(call.request.in, "URI");
    const char* const uri = argument ? textOf(*argument) : nullptr;
    if (uri == nullptr || *uri == '\0' || std::strlen(uri) > longestUri)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "URI Parameter is Invalid");
    return install(call, "InstallFromURI", uri);
}
