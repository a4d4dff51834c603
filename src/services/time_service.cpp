// CIM_TimeService: the clock of the BMC's event log.
#include "provider_helper/services.h"
#include "RecordLogProfile/log_time.h"
#include "services/clock_time.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/processor_service.h"
#include "Utility/requests/request_status.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/cmpi_ptr.h"

#include <cstring>

constexpr const char* const g_TimeServiceKeyList[4] = {"SystemCreationClassName", "CreationClassName",
                                                       "SystemName", "Name"};

namespace ph::time_service {
namespace {

using Record = TimeServiceRecord;

constexpr const char* className = "CIM_TimeService";
constexpr const char* serviceName = "Time Service";

constexpr Property properties[] = {
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, SystemName),
    PH_KEY(Record, Name),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY(Record, HealthState),
    PH_PROPERTY(Record, OperationalStatus),
    PH_PROPERTY(Record, Started),
};

int enumerate(RecordArray<Record>& services, Detail detail) {
    return appendService(services, detail, className, serviceName);
}

// ---- ManageTime

constexpr Refusal notTold{CMPI_RC_ERR_FAILED, "The BMC does not tell the time"};
constexpr Refusal neverSet{CMPI_RC_ERR_FAILED, "The BMC's clock was not set"};
constexpr Refusal notSet{CMPI_RC_ERR_FAILED, "The BMC did not set its clock"};
constexpr Refusal wrongRequest{CMPI_RC_ERR_INVALID_PARAMETER, "GetRequest Parameter is Invalid"};
constexpr Refusal wrongElement{CMPI_RC_ERR_INVALID_PARAMETER, "ManagedElement Parameter is Invalid"};
constexpr Refusal wrongTime{CMPI_RC_ERR_INVALID_PARAMETER, "TimeData Parameter is Invalid"};

constexpr const char* timeParameter = "TimeData";

bool isThisProcessor(const CMPIObjectPath* element) {
    char systemName[256] = "";
    const char* given = element != nullptr ? keyText(element, "Name") : nullptr;
    return given != nullptr && PH_GetSPSystemName(systemName) == 0 && std::strcmp(given, systemName) == 0;
}

bool isClockTime(std::int64_t seconds) {
    return seconds > CIM_SEL_TIME_FIRST_SET && seconds < CIM_SEL_TIME_NONE;
}

bool returnTime(const Request& request, const char* text) {
    const CmpiPtr<CMPIDateTime> time(CMNewDateTimeFromChars(request.broker, text, nullptr));
    CMPIValue value{};
    value.dateTime = time.get();
    return time != nullptr && CMAddArg(request.out, timeParameter, &value, CMPI_dateTime).rc == CMPI_RC_OK;
}

MethodAnswer readClock(MethodCall& call) {
    IpmiSession session;
    std::uint32_t seconds = 0;
    std::int16_t offset = CIM_SEL_UTC_OFFSET_NONE;
    if (!session.open() || CIM_GetSELTime(session.get(), &seconds, hookTimeout) != 0 ||
        CIM_GetSELTimeUTCOffset(session.get(), &offset, hookTimeout) != 0)
        return call.refuse(notTold);
    if (!isClockTime(seconds))
        return call.refuse(neverSet);
    char text[clockTextSize] = "";
    if (offset == CIM_SEL_UTC_OFFSET_NONE)
        LogTime().write(seconds, text);
    else
        writeClockTime({seconds, offset}, text);
    return returnTime(call.request, text) ? MethodAnswer(methodDone) : call.refuse(notTold);
}

// Returns nothing where TimeData is no point in time.
std::optional<ClockTime> givenTime(const CMPIArgs* in) {
    const auto time = argument(in, timeParameter);
    if (!time || time->type != CMPI_dateTime || time->value.dateTime == nullptr)
        return std::nullopt;
    const CmpiPtr<CMPIString> text(CMGetStringFormat(time->value.dateTime, nullptr));
    const char* characters = textOf(text.get());
    return characters != nullptr ? parseClockTime(characters) : std::nullopt;
}

bool setSeconds(IpmiSession& session, std::int64_t seconds) {
    return isClockTime(seconds) &&
           CIM_SetSELTime(session.get(), static_cast<std::uint32_t>(seconds), hookTimeout) == 0;
}

// Sets the offset first, because an offset can be put back, but a clock that has moved on cannot.
bool setClock(IpmiSession& session, ClockTime time) {
    std::int16_t former = CIM_SEL_UTC_OFFSET_NONE;
    if (CIM_GetSELTimeUTCOffset(session.get(), &former, hookTimeout) != 0)
        return false;
    if (former == time.offset)
        return setSeconds(session, time.seconds);
    if (CIM_SetSELTimeUTCOffset(session.get(), static_cast<std::int16_t>(time.offset), hookTimeout) != 0)
        return former == CIM_SEL_UTC_OFFSET_NONE && // a BMC without offsets
               setSeconds(session, LogTime().at(time.utcSeconds()));
    if (setSeconds(session, time.seconds))
        return true;
    (void)CIM_SetSELTimeUTCOffset(session.get(), former, hookTimeout);
    return false;
}

MethodAnswer manageTime(MethodCall& call) {
    const CMPIArgs* const in = call.request.in;
    const auto getRequest = argument(in, "GetRequest");
    CMPIBoolean reads = 0;
    if (!getRequest || GetBoolValue(*getRequest, &reads) != 0)
        return call.refuse(wrongRequest);
    if (!isThisProcessor(referenceArgument(in, "ManagedElement", processorClass)))
        return call.refuse(wrongElement);
    if (reads != 0)
        return readClock(call);
    const auto time = givenTime(in);
    if (!time || !isClockTime(time->seconds))
        return call.refuse(wrongTime);
    IpmiSession session;
    return session.open() && setClock(session, *time) ? MethodAnswer(methodDone) : call.refuse(notSet);
}

constexpr Parameter manageTimeParameters[] = {
    {"GetRequest", CMPI_boolean},
    {timeParameter, CMPI_dateTime, Direction::InOut},
    {"ManagedElement", CMPI_ref, Direction::In, "CIM_ManagedElement"},
};
constexpr Method methods[] = {
    {.name = "ManageTime", .parameters = manageTimeParameters, .carryOut = manageTime}};

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_Service",
    .source = "one fixed instance; Get and Set SEL Time, Get and Set SEL Time UTC Offset",
    .keys = g_TimeServiceKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.isLookedUp = true, .missing = {CMPI_RC_ERR_NOT_FOUND, "No such service"}}};

} // namespace
} // namespace ph::time_service

PH_EXPORT_CLASS_FAMILY(TimeService, TimeServiceRecord, ph::time_service::definition)

int PH_Fill_TimeService(TimeServiceRecord* record) {
    ph::fillService(*record, ph::time_service::serviceName);
    return 0;
}
