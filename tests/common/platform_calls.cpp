#include "platform_calls.h"

#include <platform/cim_hooks.h>
#include <platform/smash_db.h>

#include <dlfcn.h>
#include <map>

PlatformCalls platformCalls;

namespace {

std::map<const IPMI20_SESSION_T*, IPMI20_SESSION_T> sessions; // open ones, by where the library keeps them

bool fails(const char* name) {
    platformCalls.made.emplace_back(name);
    if (platformCalls.made.size() != platformCalls.failing)
        return false;
    return platformCalls.hasFailed = true;
}

template <class Function>
Function* real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

template <class Function, class... Arguments>
int open(const char* name, int failure, int& count, Arguments... arguments) {
    if (fails(name))
        return failure;
    const int result = real<Function>(name)(arguments...);
    count += result == 0;
    return result;
}

template <class Function, class Handle>
int close(const char* name, int failure, int& count, Handle handle) {
    const bool failing = fails(name);
    const int result = real<Function>(name)(handle);
    count -= result == 0;
    return failing ? failure : result;
}

} // namespace

int PlatformCalls::closeSessions() {
    const auto left = std::move(sessions);
    sessions.clear();
    for (auto [place, session] : left)
        openSessions -= real<decltype(CIM_Close_Session)>("CIM_Close_Session")(&session) == 0;
    return static_cast<int>(left.size());
}

#define FORWARD(name, failure, parameters, arguments)                                                        \
    int name parameters {                                                                                    \
        return fails(#name) ? failure : real<decltype(name)>(#name) arguments;                               \
    }
#define FORWARD_POWER(name) FORWARD(name, -1, (IPMI20_SESSION_T * session, int timeout), (session, timeout))
#define FORWARD_ALL(name, Row)                                                                               \
    FORWARD(name, 1, (SMASH_DB_HANDLE handle, Row * *rows, int* count), (handle, rows, count))
#define FORWARD_ONE(name, Row)                                                                               \
    FORWARD(name, 1, (SMASH_DB_HANDLE handle, const char* key, Row** row), (handle, key, row))

extern "C" {

unsigned int sleep(unsigned int) {
    ++platformCalls.pauses;
    return 0;
}

int db_init(SMASH_DB_HANDLE* handle) {
    return open<decltype(db_init)>(__func__, 1, platformCalls.openHandles, handle);
}
int tmp_db_init(SMASH_DB_HANDLE* handle) {
    return open<decltype(tmp_db_init)>(__func__, 1, platformCalls.openHandles, handle);
}
int db_close(SMASH_DB_HANDLE handle) {
    return close<decltype(db_close)>(__func__, 1, platformCalls.openHandles, handle);
}

int CIM_Create_IPMI20_Session(IPMI20_SESSION_T* session, const char* address, uint16_t port,
                              const char* userName, const char* password, int interfaceType, int cipherSuite,
                              int workaroundFlags, int retransmission, int privilegeLevel, int timeout) {
    const int result = open<decltype(CIM_Create_IPMI20_Session)>(
        __func__, -1, platformCalls.openSessions, session, address, port, userName, password, interfaceType,
        cipherSuite, workaroundFlags, retransmission, privilegeLevel, timeout);
    if (result == 0)
        sessions[session] = *session;
    return result;
}
// One that was never opened may be closed too.
int CIM_Close_Session(IPMI20_SESSION_T* session) {
    int closed = 0;
    const int result = close<decltype(CIM_Close_Session)>(__func__, -1, closed, session);
    platformCalls.openSessions -= static_cast<int>(sessions.erase(session));
    return result;
}

FORWARD_POWER(CIM_PowerUp)
FORWARD_POWER(CIM_PowerOff)
FORWARD_POWER(CIM_SoftOff)
FORWARD_POWER(CIM_PowerCycle)
FORWARD_POWER(CIM_HardReset)
FORWARD_POWER(CIM_DiagnosticInt)

FORWARD(CIM_GetPEFTable, -1, (IPMI20_SESSION_T * session, CIM_PEFEntry* table, uint8_t* count, int timeout),
        (session, table, count, timeout))
FORWARD(CIM_GetPEFEntry, -1, (IPMI20_SESSION_T * session, uint8_t number, CIM_PEFEntry* entry, int timeout),
        (session, number, entry, timeout))
FORWARD(CIM_SetPEFEntry, -1,
        (IPMI20_SESSION_T * session, uint8_t number, const CIM_PEFEntry* entry, int timeout),
        (session, number, entry, timeout))

FORWARD(CIM_GetLANCount, -1, (IPMI20_SESSION_T * session, uint8_t* count, uint8_t* indices, int timeout),
        (session, count, indices, timeout))
FORWARD(CIM_GetChannelNum, -1, (IPMI20_SESSION_T * session, uint8_t index, uint8_t* channel, int timeout),
        (session, index, channel, timeout))
FORWARD(CIM_GetLANDestinationType_AddrTable, -1,
        (IPMI20_SESSION_T * session, CIM_LANDestinationType* types, CIM_LANDestinationAddress* addresses,
         uint8_t* count, uint8_t channel, int timeout),
        (session, types, addresses, count, channel, timeout))
FORWARD(CIM_SetLANDestinationType, -1,
        (IPMI20_SESSION_T * session, uint8_t channel, uint8_t selector, uint8_t type, int timeout),
        (session, channel, selector, type, timeout))
FORWARD(CIM_SetLANDestinationAddress, -1,
        (IPMI20_SESSION_T * session, uint8_t channel, uint8_t selector, uint8_t format,
         const uint8_t* address, int timeout),
        (session, channel, selector, format, address, timeout))
FORWARD(CIM_GetLANDestinationV6Address, -1,
        (IPMI20_SESSION_T * session, uint8_t channel, uint8_t selector, CIM_LANDestinationV6Address* address,
         int timeout),
        (session, channel, selector, address, timeout))
FORWARD(CIM_SetLANDestinationV6Address, -1,
        (IPMI20_SESSION_T * session, uint8_t channel, uint8_t selector, uint8_t format,
         const uint8_t* address, int timeout),
        (session, channel, selector, format, address, timeout))
FORWARD(CIM_TRZGetEmailDest, -1,
        (IPMI20_SESSION_T * session, uint8_t selector, uint8_t* user, char* subject, char* message,
         uint8_t channel, int timeout),
        (session, selector, user, subject, message, channel, timeout))
FORWARD(CIM_TRZSetEmailDest, -1,
        (IPMI20_SESSION_T * session, uint8_t selector, uint8_t user, const char* subject, const char* message,
         uint8_t channel, int timeout),
        (session, selector, user, subject, message, channel, timeout))

FORWARD(db_get_ipmi_session_info, 1, (SMASH_DB_HANDLE handle, IPMISessionInfo** info), (handle, info))
FORWARD(db_get_device_bytype, 1, (SMASH_DB_HANDLE handle, int type, DeviceRecord** device),
        (handle, type, device))
FORWARD(db_set_device, 1, (SMASH_DB_HANDLE handle, const DeviceRecord* device), (handle, device))
FORWARD(db_get_fru_by_entity_id, 1, (SMASH_DB_HANDLE handle, int entityId, FruRecord** fru),
        (handle, entityId, fru))
FORWARD_ALL(db_get_all_power_mgt_service, PowerServiceRow)
FORWARD_ONE(db_get_power_mgt_service, PowerServiceRow)
FORWARD_ALL(db_get_all_power_mgt_capabilities, PowerCapabilitiesRow)
FORWARD_ONE(db_get_power_mgt_capabilities, PowerCapabilitiesRow)

FORWARD(db_set_concretejob, 1, (SMASH_DB_HANDLE handle, const ConcreteJobRow* job, char* instanceId),
        (handle, job, instanceId))
FORWARD(db_modify_concretejob, 1,
        (SMASH_DB_HANDLE handle, const char* instanceId, const char* jobStatus, const char* operationalStatus,
         int percentComplete, int jobState),
        (handle, instanceId, jobStatus, operationalStatus, percentComplete, jobState))
FORWARD_ALL(db_get_all_concretejob, StoredJobRow)
FORWARD_ONE(db_get_concretejob, StoredJobRow)
FORWARD(db_delete_concretejob, 1, (SMASH_DB_HANDLE handle, const char* instanceId), (handle, instanceId))
FORWARD(db_set_error_info, 1, (SMASH_DB_HANDLE handle, const JobErrorRow* error), (handle, error))
FORWARD_ONE(db_get_error_info, JobErrorRow)
FORWARD_ONE(db_get_clp_error_info, JobErrorRow)

FORWARD_ALL(db_get_all_listener_destination, CimxmlDestinationRow)
FORWARD(db_get_listener_destination, 1, (SMASH_DB_HANDLE handle, CimxmlDestinationRow* row), (handle, row))
FORWARD(db_set_listener_destination, 1, (SMASH_DB_HANDLE handle, const CimxmlDestinationRow* row),
        (handle, row))
FORWARD(db_delete_listener_destination, 1, (SMASH_DB_HANDLE handle, const char* name), (handle, name))
FORWARD_ALL(db_get_all_indication_filter_cimxml, CimxmlFilterRow)
FORWARD(db_get_indication_filter_cimxml, 1, (SMASH_DB_HANDLE handle, CimxmlFilterRow* row), (handle, row))
FORWARD(db_set_indication_filter_cimxml, 1, (SMASH_DB_HANDLE handle, const CimxmlFilterRow* row),
        (handle, row))
FORWARD(db_delete_indication_filter_cimxml, 1, (SMASH_DB_HANDLE handle, const char* name), (handle, name))

} // extern "C"
