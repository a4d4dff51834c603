// CIM_Error: why a job failed.
#include "provider_helper/jobs.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <algorithm>

namespace ph::job_error {
namespace {

using Record = ErrorRecord;

struct Message {
    std::uint16_t errorType;
    const char* id;
    const char* text;
};
// What clients look up by these IDs stays as it is.
constexpr Message messages[] = {
    {ErrorType::Communications, "JOB0002", "The job has failed: what it needs could not be fetched."},
    {ErrorType::Software, "JOB0003",
     "The job has failed: it was given what is not valid, or was interrupted."},
    {ErrorType::Hardware, "JOB0004", "The job has failed: the BMC did not do what it was asked for."},
};
constexpr Message otherFailure{ErrorType::Unknown, "JOB0001", "The job has failed."};

const Message& messageOf(const Record& record) {
    const auto* const found = std::ranges::find(messages, record.ErrorType, &Message::errorType);
    return found != std::end(messages) ? *found : otherFailure;
}

const char* owningEntity(const Record&) {
    return "TRZ"; // as of alerts
}
const char* messageId(const Record& record) {
    return messageOf(record).id;
}
const char* messageText(const Record& record) {
    return messageOf(record).text;
}

constexpr Property properties[] = {
    PH_PROPERTY(Record, ErrorSource),          PH_PROPERTY(Record, ErrorType),
    PH_PROPERTY(Record, PerceivedSeverity),    PH_PROPERTY(Record, ProbableCause),
    PH_PROPERTY(Record, ErrorSourceFormat),    PH_PROPERTY(Record, CIMStatusCode),
    PH_COMPUTED("OwningEntity", owningEntity), PH_COMPUTED("MessageID", messageId),
    PH_COMPUTED("Message", messageText),
};

constexpr ClassDefinition<Record> definition{.name = "CIM_Error",
                                             .superclass = nullptr,
                                             .source =
                                                 "table job_error of the temporary database; the CLP daemon",
                                             .keys = {},
                                             .properties = properties};

} // namespace
} // namespace ph::job_error

int PH_Fill_Error_Data(const JobErrorRow* row, ErrorRecord* record) {
    if (row == nullptr || record == nullptr)
        return -1;
    ph::copyText(record->ErrorSource, row->errorSource);
    record->ErrorType = static_cast<uint16_t>(row->errorType);
    record->PerceivedSeverity = static_cast<uint16_t>(row->perceivedSeverity);
    record->ProbableCause = static_cast<uint16_t>(row->probableCause);
    record->ErrorSourceFormat = static_cast<uint16_t>(row->errorSourceFormat);
    record->CIMStatusCode = static_cast<uint32_t>(row->cimStatusCode);
    return 0;
}

PH_EXPORT_EMBEDDED_CLASS_FAMILY(Error, ErrorRecord, ph::job_error::definition)
