// CIM_Error: why a job failed.
#include "provider_helper/jobs.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/record_fields.h"

namespace {

using Record = ErrorRecord;
using ph::Property;

constexpr Property properties[] = {
    PH_PROPERTY(Record, ErrorSource),       PH_PROPERTY(Record, ErrorType),
    PH_PROPERTY(Record, PerceivedSeverity), PH_PROPERTY(Record, ProbableCause),
    PH_PROPERTY(Record, ErrorSourceFormat), PH_PROPERTY(Record, CIMStatusCode),
};

constexpr ph::ClassDefinition<Record> definition{
    .name = "CIM_Error",
    .superclass = nullptr,
    .source = "table job_error of the temporary database; the CLP daemon",
    .keys = {},
    .properties = properties};

} // namespace

int PH_Fill_Error_Data(const JobErrorRow* row, Record* record) {
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

PH_EXPORT_EMBEDDED_CLASS_FAMILY(Error, Record, definition)
