/* CIM hooks: what the host boots from. For the common rules see cim_hooks.h.
 *
 * The functions are Get and Set System Boot Options (IPMI 2.0, 28.12 and 28.13; network function 00h, commands
 * 09h and 08h). A BMC has one set of boot flags: they hold for the next boot or for all, never for both. */
#ifndef PLATFORM_CIM_BOOT_H
#define PLATFORM_CIM_BOOT_H

#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Boot device selectors (parameter 5, byte 2, bits 5:2). 0 is none: the order of the system firmware holds. */
enum {
    CIM_BOOT_NO_OVERRIDE = 0,
    CIM_BOOT_NETWORK = 1,
    CIM_BOOT_DISK = 2,
    CIM_BOOT_DISK_SAFE_MODE = 3,
    CIM_BOOT_DIAGNOSTIC_PARTITION = 4,
    CIM_BOOT_CD = 5,
    CIM_BOOT_FIRMWARE_SETUP = 6,
    CIM_BOOT_REMOTE_FLOPPY = 7,
    CIM_BOOT_REMOTE_CD = 8,
    CIM_BOOT_REMOTE_MEDIA = 9,
    CIM_BOOT_REMOTE_DISK = 11,
    CIM_BOOT_FLOPPY = 15 /* or other removable media */
};

/* The boot flags (parameter 5), as far as the library knows them. */
typedef struct {
    uint8_t isSupported;  /* 0: the BMC has no boot flags, and the others are 0 */
    uint8_t isValid;      /* 1: the flags hold */
    uint8_t isPersistent; /* 1: for every boot from now on, 0: for the next one only */
    uint8_t device;       /* boot device selector */
} CIM_BootFlags;

/* Reads the boot flags. A BMC without the command or the parameter has none, which is a success. */
int CIM_GetBootFlags(IPMI20_SESSION_T* session, CIM_BootFlags* flags, int timeout);

/* Writes the boot flags; `isSupported` is not looked at. What else the flags say is kept if they held, and is
 * cleared if they did not; the kind of boot (legacy or EFI) is kept in any case.
 *
 * Parameter 0 tells others of the change while it is made; the call fails when somebody else's change is
 * under way. Flags that the BMC refuses change nothing. Flags that hold shall hold until the host boots, so
 * the BMC is told not to clear them after 60 seconds, on a soft reset or by the power button (parameter 3),
 * and that nobody has handled them yet (parameter 4), if it has these parameters. */
int CIM_SetBootFlags(IPMI20_SESSION_T* session, const CIM_BootFlags* flags, int timeout);

#ifdef __cplusplus
}
#endif

#endif
