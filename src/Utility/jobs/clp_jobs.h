// Jobs of the command-line protocol daemon, which a BMC may not have.
#pragma once

#include "provider_helper/jobs.h"
#include "Utility/engine/class_family.h"

namespace ph::clp {

bool isJob(const char* instanceId);
int appendAll(RecordArray<ConcreteJobRecord>& jobs, Detail detail);
int append(RecordArray<ConcreteJobRecord>& jobs, const char* instanceId);

} // namespace ph::clp

namespace ph {

// Makes a job's record from its row; defined in the class's file.
int appendJob(RecordArray<ConcreteJobRecord>& jobs, const StoredJobRow& row, Detail detail);

extern const ClassFamily family_ConcreteJob;

} // namespace ph
