/* CIM hooks: the watchdog timer. For the common rules see cim_hooks.h. */
#ifndef PLATFORM_CIM_WATCHDOG_H
#define PLATFORM_CIM_WATCHDOG_H

#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { /* timer use */
       CIM_WATCHDOG_BIOS_FRB2 = 1,
       CIM_WATCHDOG_BIOS_POST = 2,
       CIM_WATCHDOG_OS_LOAD = 3,
       CIM_WATCHDOG_OS = 4, /* or its system management software */
       CIM_WATCHDOG_OEM = 5
};
enum { /* action at the end */
       CIM_WATCHDOG_NO_ACTION = 0,
       CIM_WATCHDOG_HARD_RESET = 1,
       CIM_WATCHDOG_POWER_DOWN = 2,
       CIM_WATCHDOG_POWER_CYCLE = 3
};
enum { /* interrupt before the end */
       CIM_WATCHDOG_NO_INTERRUPT = 0,
       CIM_WATCHDOG_SMI = 1,
       CIM_WATCHDOG_NMI = 2,
       CIM_WATCHDOG_MESSAGING_INTERRUPT = 3
};

typedef struct {
    uint8_t isSupported; /* 0: the BMC has no watchdog timer, and the others are 0 */
    uint8_t isRunning;
    uint8_t doesNotLog;       /* 1: no event is logged at the end */
    uint8_t use;              /* see above; 0 and 6 to 7 are reserved */
    uint8_t action;           /* see above; 4 to 7 are reserved */
    uint8_t interrupt;        /* see above; 4 to 7 are reserved */
    uint8_t interruptSeconds; /* before the end */
    uint8_t expired;          /* bit n: a timer with use n ran out; read only */
    uint16_t interval;        /* from start to end, in 100 milliseconds */
    uint16_t remaining;       /* the same, until the end; read only; 0 of a BMC that does not tell */
} CIM_WatchdogTimer;

/* Reads the timer (Get Watchdog Timer, IPMI 2.0 27.7; network function 06h, command 25h). A BMC without the
 * command has none, which is a success. */
int CIM_GetWatchdogTimer(IPMI20_SESSION_T* session, CIM_WatchdogTimer* timer, int timeout);

/* Writes all that is not read only (Set Watchdog Timer, 27.6; command 24h). With `isRunning` 1 a timer that
 * runs goes on, from the interval written; with 0 it stops. A timer that is stopped is not started. */
int CIM_SetWatchdogTimer(IPMI20_SESSION_T* session, const CIM_WatchdogTimer* timer, int timeout);

/* Starts the timer, or starts it again, from its interval (Reset Watchdog Timer, 27.5; command 22h). Fails for
 * a timer that was never set. */
int CIM_ResetWatchdogTimer(IPMI20_SESSION_T* session, int timeout);

#ifdef __cplusplus
}
#endif

#endif
