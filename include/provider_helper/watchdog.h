/* The watchdog of the host. */
#ifndef PROVIDER_HELPER_WATCHDOG_H
#define PROVIDER_HELPER_WATCHDOG_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* CIM_Watchdog: the BMC's watchdog timer (IPMI 2.0, 27). There is none on a BMC without the commands.
 *
 * RequestStateChange starts (2), stops (3) and restarts it (11); KeepAlive restarts it, and fails for a timer
 * that is stopped. All leave its settings as they are, as they may be those of the host's software. Clients may
 * modify TimeoutInterval, ActionOnExpiration and MonitoredEntity; a timer that runs goes on, from the start. */
typedef struct {
    char SystemCreationClassName[256]; /* key */
    char CreationClassName[256];       /* key */
    char SystemName[256];              /* key */
    char DeviceID[256];                /* key */
    char ElementName[128];
    int OperationalStatus[4];
    uint16_t HealthState;
    uint16_t EnabledState; /* 2 while it runs, else 3 */
    uint16_t RequestedState;
    uint16_t MonitoredEntity;               /* by the timer use */
    const char* MonitoredEntityDescription; /* a constant; NULL but for an OEM's use */
    uint32_t TimeoutInterval; /* microseconds; 0, not published: none, or one that does not fit */
    uint32_t TimerResolution; /* microseconds */
    uint16_t ActionOnExpiration;
    uint16_t MonitoredEntityOnLastExpiration; /* 0 unknown; published only of a timer that ran out */
    bool hasExpired;                          /* not published */
} WatchdogRecord;

PH_DECLARE_CLASS_FAMILY(Watchdog, WatchdogRecord);
PH_EXPORT int PH_Fill_Watchdog(const CIM_WatchdogTimer* timer, WatchdogRecord* record);
PH_EXPORT extern const char* const g_WatchdogKeyList[4];

#ifdef __cplusplus
}
#endif

#endif
