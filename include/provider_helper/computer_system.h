/* The managed host and the service processor. */
#ifndef PROVIDER_HELPER_COMPUTER_SYSTEM_H
#define PROVIDER_HELPER_COMPUTER_SYSTEM_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A computer system. Integer lists end with a negative number, text lists with NULL; the texts are heap
 * strings of the record. */
typedef struct {
    int Dedicated[4];            /* 0 not dedicated, 28 management controller */
    char Name[256];              /* key */
    char CreationClassName[256]; /* key */
    char* OtherIdentifyingInfo[4];
    char* IdentifyingDescriptions[4];
    uint16_t EnabledState;   /* 2 enabled */
    uint16_t RequestedState; /* last state asked for; 12 not applicable */
    int OperationalStatus[4];
    uint16_t HealthState; /* 5 OK */
    char ElementName[128];
    char PrimaryOwnerContact[256]; /* published for a management controller only */
} HostComputerSystemRecord;

PH_DECLARE_CLASS_FAMILY(HostComputerSystem, HostComputerSystemRecord);
/* `fru` is the system board's (entity 7). Returns -1 when an allocation fails. */
PH_EXPORT int PH_Fill_HostComputerSystem(const DeviceRecord* device, HostComputerSystemRecord* record,
                                         const FruRecord* fru);
PH_EXPORT extern const char* const g_HostComputerSystemKeyList[2];

#ifdef __cplusplus
}
#endif

#endif
