// A database function whose memory runs out fails; no exception leaves it.
#include "database_fixture.h"
#include "memory_faults.h"

#include <cstring>
#include <functional>

namespace {

template <class Row>
Row named(const char* name) {
    Row row{};
    std::strcpy(reinterpret_cast<char*>(&row), name);
    return row;
}

template <class Row>
int getAll(int (*get)(SMASH_DB_HANDLE, Row**, int*), SMASH_DB_HANDLE handle) {
    Row* rows = nullptr;
    int count = 0;
    const int result = get(handle, &rows, &count);
    std::free(rows);
    return result;
}

template <class Row, class Key>
int getOne(int (*get)(SMASH_DB_HANDLE, Key, Row**), SMASH_DB_HANDLE handle, std::type_identity_t<Key> key) {
    Row* row = nullptr;
    const int result = get(handle, key, &row);
    std::free(row);
    return result;
}

int reopen(int (*open)(SMASH_DB_HANDLE*)) {
    SMASH_DB_HANDLE handle = nullptr;
    const int result = open(&handle);
    if (handle != nullptr)
        db_close(handle);
    return result;
}

TEST_F(DatabaseFixture, reportsMemoryThatRunsOut) {
    const Handle temporary = openDatabase(tmp_db_init);
    SMASH_DB_HANDLE database = handle.get();
    SMASH_DB_HANDLE jobs = temporary.get();
    const ConcreteJobRow job{};
    char jobId[64] = "";
    JobErrorRow error{};
    DeviceRecord device{};
    device.type = SMASH_DEVICE_SP;
    const IPMISessionInfo session{};
    const StaticIPRow staticIp{};
    auto destination = named<CimxmlDestinationRow>("row");
    auto filter = named<CimxmlFilterRow>("row");
    std::int32_t messageId = 0;

    const auto addJob = [&] { EXPECT_EQ(db_set_concretejob(jobs, &job, jobId), 0); };
    struct {
        const char* name;
        std::function<int()> call;
        std::function<void()> prepare = [] {};
    } const functions[] = {
        {"db_init", [] { return reopen(db_init); }},
        {"smash_db_init", [] { return reopen(smash_db_init); }},
        {"tmp_db_init", [] { return reopen(tmp_db_init); }},
        {"db_set_concretejob", [&] { return db_set_concretejob(jobs, &job, jobId); }},
        {"db_modify_concretejob",
         [&] { return db_modify_concretejob(jobs, jobId, "Completed", "17,2", 100, 7); }, addJob},
        {"db_get_all_concretejob", [&] { return getAll(db_get_all_concretejob, jobs); }},
        {"db_get_concretejob", [&] { return getOne(db_get_concretejob, jobs, jobId); }},
        {"db_set_error_info",
         [&] {
             std::memcpy(error.errorSource, jobId, sizeof jobId);
             return db_set_error_info(jobs, &error);
         }},
        {"db_get_error_info", [&] { return getOne(db_get_error_info, jobs, jobId); }},
        {"db_get_clp_error_info", [&] { return getOne(db_get_clp_error_info, jobs, jobId); }},
        {"db_delete_concretejob", [&] { return db_delete_concretejob(jobs, jobId); }, addJob},
        {"db_set_device", [&] { return db_set_device(database, &device); }},
        {"db_get_device_bytype", [&] { return getOne(db_get_device_bytype, database, SMASH_DEVICE_SP); }},
        {"db_set_ipmi_session_info", [&] { return db_set_ipmi_session_info(database, &session); }},
        {"db_get_ipmi_session_info",
         [&] {
             IPMISessionInfo* row = nullptr;
             const int result = db_get_ipmi_session_info(database, &row);
             std::free(row);
             return result;
         }},
        {"db_get_all_full_sdrs", [&] { return getAll(db_get_all_full_sdrs, database); }},
        {"db_get_all_compact_sdrs", [&] { return getAll(db_get_all_compact_sdrs, database); }},
        {"db_get_all_entity_devices", [&] { return getAll(db_get_all_entity_devices, database); }},
        {"db_get_all_entity_associations", [&] { return getAll(db_get_all_entity_associations, database); }},
        {"db_get_all_power_mgt_service", [&] { return getAll(db_get_all_power_mgt_service, database); }},
        {"db_get_all_power_mgt_capabilities",
         [&] { return getAll(db_get_all_power_mgt_capabilities, database); }},
        {"db_set_static_ip_assignment_settingdata",
         [&] { return db_set_static_ip_assignment_settingdata(database, &staticIp); }},
        {"db_get_all_static_ip_assignment_settingdata",
         [&] { return getAll(db_get_all_static_ip_assignment_settingdata, database); }},
        {"db_delete_static_ip", [&] { return db_delete_static_ip(database); }},
        {"db_set_listener_destination", [&] { return db_set_listener_destination(database, &destination); }},
        {"db_get_listener_destination", [&] { return db_get_listener_destination(database, &destination); }},
        {"db_delete_listener_destination", [&] { return db_delete_listener_destination(database, "row"); },
         [&] { db_set_listener_destination(database, &destination); }},
        {"db_set_indication_filter_cimxml",
         [&] { return db_set_indication_filter_cimxml(database, &filter); }},
        {"db_get_MessageID", [&] { return db_get_MessageID(database, "text", &messageId); }},
    };
    for (const auto& function : functions) {
        SCOPED_TRACE(function.name);
        unsigned failures = 0;
        for (unsigned nth = 1;; ++nth) {
            function.prepare();
            int result = 0;
            const MemoryFault fault(nth);
            ASSERT_NO_THROW(result = function.call()) << "allocation " << nth;
            failures += result != 0;
            if (!fault.hasStruck()) {
                EXPECT_EQ(result, 0) << db_last_error();
                break;
            }
        }
        EXPECT_GT(failures, 0U);
    }
}

} // namespace
