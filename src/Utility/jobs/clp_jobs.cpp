#include "Utility/jobs/clp_jobs.h"

#include "Utility/back-ends/back_ends.h"
#include "Utility/back-ends/clp_library.h"
#include "Utility/engine/guard.h"

#include <cstring>

namespace ph::clp {

bool isJob(const char* instanceId) {
    return instanceId != nullptr && std::strstr(instanceId, "clp-job") != nullptr;
}

// Without a daemon that answers there are no such jobs; the others are served all the same.
int appendAll(RecordArray<ConcreteJobRecord>& jobs, Detail detail) {
    const ClpLibrary library;
    const auto request = library.find<decltype(&SMP_Frame_Jobs_Req)>("SMP_Frame_Jobs_Req");
    StoredJobRow* rows = nullptr;
    int count = 0;
    if (request == nullptr || request(&rows, &count) != 0)
        return 0;
    const HeapPtr<StoredJobRow> owner(rows);
    for (int i = 0; i < count; ++i)
        if (appendJob(jobs, rows[i], detail) != 0)
            return -1;
    return 0;
}

int append(RecordArray<ConcreteJobRecord>& jobs, const char* instanceId) {
    const ClpLibrary library;
    const auto request = library.find<decltype(&SMP_Frame_Job_Req)>("SMP_Frame_Job_Req");
    StoredJobRow row{};
    return request != nullptr && request(instanceId, &row) == 0 ? appendJob(jobs, row, Detail::All) : -1;
}

} // namespace ph::clp

int PH_Enum_All_CLP_Jobs(ConcreteJobRecord** records, int* count, int namesOnly) {
    ph::RecordStore store(*records, *count, sizeof(ConcreteJobRecord), ph::family_ConcreteJob.properties);
    const int result = ph::guarded(-1, [&] {
        ph::RecordArray<ConcreteJobRecord> jobs(store);
        return ph::clp::appendAll(jobs, namesOnly != 0 ? ph::Detail::Names : ph::Detail::All);
    });
    if (result == 0)
        store.commit();
    *count = store.committed();
    *records = static_cast<ConcreteJobRecord*>(store.release());
    return result;
}

int PH_Delete_CLPJob(const char* instanceId) {
    if (instanceId == nullptr)
        return -1;
    const ph::ClpLibrary library;
    const auto request = library.find<decltype(&SMP_Frame_DeleteJob_Req)>("SMP_Frame_DeleteJob_Req");
    return request != nullptr && request(instanceId) == 0 ? 0 : -1;
}
