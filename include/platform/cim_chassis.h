/* CIM hooks: the host's power. For the common rules see cim_hooks.h. */
#ifndef PLATFORM_CIM_CHASSIS_H
#define PLATFORM_CIM_CHASSIS_H

#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Each of these is one Chassis Control request (IPMI 2.0, 28.3; network function 00h, command 02h) with the
 * control value given. It succeeds when the BMC has accepted the request: what follows, such as an operating
 * system that shuts itself down, may take a while longer. */
int CIM_PowerUp(IPMI20_SESSION_T* session, int timeout);  /* 1h */
int CIM_PowerOff(IPMI20_SESSION_T* session, int timeout); /* 0h: at once, whatever the host is doing */
int CIM_SoftOff(IPMI20_SESSION_T* session, int timeout);  /* 5h: the operating system is asked to shut down */
int CIM_PowerCycle(IPMI20_SESSION_T* session, int timeout);    /* 2h: off for a second at least, then on */
int CIM_HardReset(IPMI20_SESSION_T* session, int timeout);     /* 3h */
int CIM_DiagnosticInt(IPMI20_SESSION_T* session, int timeout); /* 4h: non-maskable interrupt of the host */

/* Answer of Get Chassis Status (IPMI 2.0, 28.2; 00h, 01h); 3 bytes. Its optional last byte is left out. */
typedef struct {
    uint8_t power;     /* bit 0 power is on, 1 overload, 2 interlock, 3 power fault, 4 power control fault */
    uint8_t lastEvent; /* why the power last changed; bit 4: it was switched on by a command */
    uint8_t state;     /* bit 0 intrusion, 1 front panel lockout, 2 drive fault, 3 fan fault */
} CIM_ChassisStatus;
int CIM_GetChassisStatus(IPMI20_SESSION_T* session, CIM_ChassisStatus* status, int timeout);

#define CIM_ACPI_UNKNOWN 0x2A

/* ACPI states of the system and of the BMC's own device: Get ACPI Power State (20.7; 06h, 07h). System: 0 S0
 * working, 1 to 4 S1 to S4, 5 S5 soft off, 6 S4 or S5, 7 G3 mechanical off, 8 sleeping in S1, S2 or S3, 9 G1
 * sleeping, 0Ah S5 by override, 20h legacy on, 21h legacy off, 2Ah unknown. Device: 0 to 3 D0 to D3, 2Ah
 * unknown. Of a BMC that has not got the command both are unknown. */
int CIM_GetACPIPowerState(IPMI20_SESSION_T* session, uint8_t* system, uint8_t* device, int timeout);

#ifdef __cplusplus
}
#endif

#endif
