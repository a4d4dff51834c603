#include "check_platform/rows.h"

namespace phctl::check {

std::span<const Group> allGroups() {
    static const Group groups[] = {
        {"libphsupport.so", supportRows()},
        {"libsmashdb.so", databaseRows()},
        {"libsmashdb.so", hardwareRows()},
        {"libsmashdb.so", settingRows()},
        {"libCIMAPIHooks.so", sessionRows()},
        {"libCIMAPIHooks.so", systemRows()},
        {"libCIMAPIHooks.so", firmwareRows()},
        {"libCIMAPIHooks.so", sensorRows()},
        {"libCIMAPIHooks.so", logRows()},
        {"libCIMAPIHooks.so", userRows()},
        {"libCIMAPIHooks.so", networkRows()},
        {"libCIMAPIHooks.so", dnsRows()},
        {"libCIMAPIHooks.so", alertRows()},
        {"libCIMTRZHooks.so", mailRows()},
        {"libCIMOEMHooks.so", nameRows()},
        {"libsmtp.so", mailingRows()},
        {"/usr/local/lib/libEventLogDes.so", eventTextRows()},
        {"/usr/local/lib/libinterop_provider.so", postingRows()},
        {"libsmclpdpkt.so", clpRows()},
    };
    return groups;
}

} // namespace phctl::check
