/* CIM hooks: installing the BMC's firmware. For the common rules see cim_hooks.h.
 *
 * An image is a file of the platform's own format. The library has it fetched and checked before anything of it goes to
 * the BMC, hands it over piece by piece, lets the BMC start it, and asks how far that is. Until it is started,
 * whatever goes wrong leaves the firmware that runs as it is. One that is interrupted is given up by the next
 * one. The library has at most one under way. */
#ifndef PLATFORM_CIM_FIRMWARE_H
#define PLATFORM_CIM_FIRMWARE_H

#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { /* state of an update */
       CIM_FIRMWARE_IDLE = 0,
       CIM_FIRMWARE_RECEIVING = 1,
       CIM_FIRMWARE_ACTIVATING = 2, /* the BMC starts it, and may not answer for a while */
       CIM_FIRMWARE_FAILED = 3      /* the last one could not be started: the former firmware runs */
};

typedef struct {
    uint8_t isSupported;   /* 0: the BMC takes no firmware, and the others are 0 */
    uint8_t state;         /* see above */
    uint8_t percent;       /* how far the activation is, 0 where that is not known */
    uint32_t largestImage; /* bytes */
} CIM_FirmwareUpdate;

/* Reads what the BMC takes, and what it is doing. A BMC that takes no firmware is a success. (OEM command 70h;
 * device availability of Get Device ID, IPMI 2.0 20.1.) */
int CIM_GetFirmwareUpdate(IPMI20_SESSION_T* session, CIM_FirmwareUpdate* update, int timeout);

/* Writes what a URI names, "file:///…" or "http://…", to the file at an absolute path, whose former contents
 * go. A file of a file URI is a regular one below PH_SYSROOT; the path is taken as it is. More than `largest`
 * bytes, a source that ends before it is whole, and one that sends nothing for 20 seconds are failures. No
 * session is needed; the library passes 1800 seconds. */
int CIM_FetchFirmware(const char* uri, const char* path, uint32_t largest, int timeout);

typedef struct {
    uint32_t size;    /* bytes of the file */
    char version[64]; /* as CIM_SoftwareIdentity.VersionString will have it */
} CIM_FirmwareImage;

/* Reads the image at an absolute path whole, and fails for one that is damaged, by its size and digest, that
 * is no image, or that is not for this BMC. Nothing of it goes to the BMC. */
int CIM_CheckFirmware(IPMI20_SESSION_T* session, const char* path, CIM_FirmwareImage* image, int timeout);

#define CIM_MAX_STORED_FIRMWARE 16
typedef struct {
    char name[40];    /* no other has it; ASCII */
    char uri[256];    /* for CIM_FetchFirmware */
    char version[64]; /* as above */
} CIM_StoredFirmware;

/* Lists the images for this BMC that the platform keeps for installation, in an order that stays. `stored` has
 * room for CIM_MAX_STORED_FIRMWARE. Whether they are whole is found out when one is installed. */
int CIM_GetStoredFirmware(IPMI20_SESSION_T* session, CIM_StoredFirmware* stored, uint8_t* count, int timeout);

/* Makes the BMC ready for an image of so many bytes, and gives it a number (OEM command 71h). */
int CIM_BeginFirmwareUpdate(IPMI20_SESSION_T* session, uint32_t size, uint8_t* transfer, int timeout);
/* Hands over `count` bytes of the image, in order: `offset` is how many were handed over before (72h). The
 * library has 16384 in each call, and less in the last. */
int CIM_WriteFirmware(IPMI20_SESSION_T* session, uint8_t transfer, const char* path, uint32_t offset,
                      uint32_t count, int timeout);
/* Lets the BMC check what it has and start it (73h). Returns when it has begun to, and fails where the BMC
 * refuses the image. */
int CIM_FinishFirmwareUpdate(IPMI20_SESSION_T* session, uint8_t transfer, int timeout);
/* Gives an image up that is not finished (74h). */
int CIM_CancelFirmwareUpdate(IPMI20_SESSION_T* session, uint8_t transfer, int timeout);

#ifdef __cplusplus
}
#endif

#endif
