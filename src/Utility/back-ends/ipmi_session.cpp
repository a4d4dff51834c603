#include "Utility/back-ends/back_ends.h"
#include "Utility/back-ends/debug_log.h"
#include "Utility/back-ends/shared_file.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace ph {
namespace {

constexpr int attempts = 6;
constexpr unsigned int pauseSeconds = 5;
constexpr int administrator = 4; // IPMI privilege level

// The settings of the session; their password does not outlive them.
struct FreeSessionInfo {
    void operator()(IPMISessionInfo* info) const {
        explicit_bzero(info->password, sizeof(info->password));
        std::free(info);
    }
};
using SessionInfo = std::unique_ptr<IPMISessionInfo, FreeSessionInfo>;

SessionInfo readSessionInfo(SMASH_DB_HANDLE handle) {
    return SessionInfo(record(db_get_ipmi_session_info, handle).release());
}

int setting(const char* text) {
    return static_cast<int>(std::strtol(text, nullptr, 0));
}

// The IPMI service may still be starting: every failure, the last one too, is followed by a pause.
template <class Open>
int openWithRetries(Open open) {
    for (int i = 0; i < attempts; ++i) {
        if (open() == 0) {
            debugPrint("\nIPMI Connection established \n");
            return 0;
        }
        sleep(pauseSeconds);
    }
    return -1;
}

struct RequestOrigin {
    char user[256];
    uint8_t address[4];
};

// "/tmp/current_req" holds the requesting user and a dotted IPv4 address.
bool readCurrentRequest(RequestOrigin& origin) {
    const FilePtr file = readShared("/tmp/current_req");
    char address[64] = "";
    if (file == nullptr || std::fscanf(file.get(), "%255s %63s", origin.user, address) < 1)
        return false;
    if (PH_ConvertStrToIP(address, origin.address) == 0)
        return true;
    debugPrint("\nFailed in PH_ConvertStrToIP\n");
    return false;
}

} // namespace
} // namespace ph

int CreateIPMISession(IPMI20_SESSION_T* session) {
    *session = {};
    ph::SessionInfo info;
    {
        ph::Database database;
        if (!database.open()) {
            ph::debugPrint("\nUnable to create handle to for DB Access\n");
            return -1;
        }
        info = ph::readSessionInfo(database.get());
    }
    if (info == nullptr) {
        ph::debugPrint("\nUnable to get IPMI Session Info\n");
        return 1;
    }
    const int privilegeLevel = ph::setting(info->privilegeLevel);
    return ph::openWithRetries([&] {
        return CIM_Create_IPMI20_Session(
            session, info->address, info->port, info->userName, info->password,
            ph::setting(info->interfaceType), ph::setting(info->cipherSuite),
            ph::setting(info->workaroundFlags), ph::setting(info->retransmission),
            privilegeLevel != 0 ? privilegeLevel : ph::administrator, ph::hookTimeout);
    });
}

int CreateIPMISession_Ext(IPMI20_SESSION_T* session) {
    *session = {};
    SMASH_DB_HANDLE handle = nullptr;
    if (PH_CreateDBHandle(&handle) != 0) {
        ph::debugPrint("\nUnable to create handle to for DB Access\n");
        return -1;
    }
    const ph::SessionInfo info = ph::readSessionInfo(handle);
    if (PH_CloseDBHandle(handle) != 0)
        ph::debugPrint("\nCreateIPMISession_Ext - Failed in PH_CloseDBHandle\n");
    if (info == nullptr) {
        ph::debugPrint("\nUnable to get IPMI Session Info\n");
        return -1;
    }
    ph::RequestOrigin origin{};
    if (!ph::readCurrentRequest(origin))
        return -1;
    return ph::openWithRetries([&] {
        return CIM_Create_IPMI20_Session_Ext(session, origin.user, origin.address,
                                             ph::setting(info->interfaceType), ph::administrator, 0,
                                             ph::hookTimeout);
    });
}

int CloseIPMISession(IPMI20_SESSION_T* session) {
    if (session == nullptr)
        return -1;
    CIM_Close_Session(session); // closed for the caller, whatever became of it on the way
    return 0;
}
