/* CIM hooks: the host's power. For the common rules see cim_hooks.h.
 *
 * Each function is one Chassis Control request (IPMI 2.0, 28.3; network function 00h, command 02h) with the
 * control value given. It succeeds when the BMC has accepted the request: what follows, such as an operating
 * system that shuts itself down, may take a while longer. */
#ifndef PLATFORM_CIM_CHASSIS_H
#define PLATFORM_CIM_CHASSIS_H

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

int CIM_PowerUp(IPMI20_SESSION_T* session, int timeout);  /* 1h */
int CIM_PowerOff(IPMI20_SESSION_T* session, int timeout); /* 0h: at once, whatever the host is doing */
int CIM_SoftOff(IPMI20_SESSION_T* session, int timeout);  /* 5h: the operating system is asked to shut down */
int CIM_PowerCycle(IPMI20_SESSION_T* session, int timeout);    /* 2h: off for a second at least, then on */
int CIM_HardReset(IPMI20_SESSION_T* session, int timeout);     /* 3h */
int CIM_DiagnosticInt(IPMI20_SESSION_T* session, int timeout); /* 4h: non-maskable interrupt of the host */

#ifdef __cplusplus
}
#endif

#endif
