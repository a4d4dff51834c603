#include "failing_platform.h"

#include "platform/cim_hooks.h"
#include "platform/smash_db.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

FailingPlatform platform;

namespace {

template <class Function, class... Arguments>
int forward(const char* name, Function* /*replaced*/, Arguments... arguments) {
    if (platform.failing.count(name) != 0)
        return -1;
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name))(arguments...);
}

} // namespace

#define FORWARD(function, ...) return forward(#function, &function, __VA_ARGS__)

extern "C" {

unsigned int sleep(unsigned int) {
    return 0;
}

int CIM_Create_IPMI20_Session(IPMI20_SESSION_T* session, const char* address, uint16_t port, const char* user,
                              const char* password, int interfaceType, int cipherSuite, int workaroundFlags,
                              int retransmission, int privilegeLevel, int timeout) {
    const int result = forward("CIM_Create_IPMI20_Session", &CIM_Create_IPMI20_Session, session, address,
                               port, user, password, interfaceType, cipherSuite, workaroundFlags,
                               retransmission, privilegeLevel, timeout);
    platform.openSessions += result == 0;
    return result;
}
int CIM_Close_Session(IPMI20_SESSION_T* session) {
    --platform.openSessions;
    FORWARD(CIM_Close_Session, session);
}
int CIM_GetMaxPossibleSELEntries(IPMI20_SESSION_T* session, uint16_t* count, int timeout) {
    EXPECT_EQ(timeout, 30);
    FORWARD(CIM_GetMaxPossibleSELEntries, session, count, timeout);
}
int CIM_GetNumOfSELEntries(IPMI20_SESSION_T* session, uint16_t* count, int timeout) {
    EXPECT_EQ(timeout, 30);
    FORWARD(CIM_GetNumOfSELEntries, session, count, timeout);
}
int CIM_GetSELRecords(IPMI20_SESSION_T* session, CIM_SELEntry* entries, uint16_t* count, int timeout) {
    EXPECT_EQ(timeout, 30);
    FORWARD(CIM_GetSELRecords, session, entries, count, timeout);
}
int CIM_GetSELEntry(IPMI20_SESSION_T* session, const CIM_SELEntryRequest* request, CIM_SELEntryAnswer* answer,
                    int timeout) {
    EXPECT_EQ(timeout, 30);
    FORWARD(CIM_GetSELEntry, session, request, answer, timeout);
}
int CIM_GetSELPolicy(IPMI20_SESSION_T* session, uint8_t* policy, int timeout) {
    EXPECT_EQ(timeout, 30);
    FORWARD(CIM_GetSELPolicy, session, policy, timeout);
}
int CIM_ClearSEL(IPMI20_SESSION_T* session, int timeout) {
    EXPECT_EQ(timeout, 30);
    FORWARD(CIM_ClearSEL, session, timeout);
}
int OEM_GetSPSystemName(char* name) {
    FORWARD(OEM_GetSPSystemName, name);
}
int db_set_concretejob(SMASH_DB_HANDLE handle, const ConcreteJobRow* job, char* instanceId) {
    FORWARD(db_set_concretejob, handle, job, instanceId);
}
int db_modify_concretejob(SMASH_DB_HANDLE handle, const char* instanceId, const char* jobStatus,
                          const char* operationalStatus, int percentComplete, int jobState) {
    FORWARD(db_modify_concretejob, handle, instanceId, jobStatus, operationalStatus, percentComplete,
            jobState);
}
int db_set_error_info(SMASH_DB_HANDLE handle, const JobErrorRow* error) {
    FORWARD(db_set_error_info, handle, error);
}
}
