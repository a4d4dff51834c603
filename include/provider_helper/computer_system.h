/* The managed host, the service processor, and what switches their power. */
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

/* The service processor is described as the host is. Its OtherIdentifyingInfo is "<manufacturer ID>-<product
 * ID>", both decimal (Get Device ID). RequestedState is 11 (reset) while "/conf/spcs_reqstatechange_reboot"
 * is there, else 12: the file is left by a restart that a client asked for and stays until firmware resets
 * "/conf", because the last state asked for does not change with time, and to read it must not change it. */
PH_DECLARE_CLASS_FAMILY(SPComputerSystem, HostComputerSystemRecord);
PH_EXPORT int PH_Fill_SPComputerSystem(const DeviceRecord* device, HostComputerSystemRecord* record);
PH_EXPORT extern const char* const g_SPComputerSystemKeyList[2];

/* ---- RequestStateChange -------------------------------------------------------------------------------- */

/* Method RequestStateChange of the system that `ref` names: in-argument "RequestedState" (uint16, or a number
 * as string), out-argument "Job". The method's value, a uint32, is returned in every case: 0, or 2 when the
 * job exists and failed. Returns -1 then, and for a request that is refused before there is a job: 1 "Create
 * CMPIObjectPath failed.", 4 "RequestedState Parameter is Invalid", 1 "Unable to create the job.". */
PH_EXPORT int PH_HostRequestStateChange(const CMPIBroker* broker, const CMPIResult* result,
                                        const CMPIObjectPath* ref, const CMPIArgs* in, CMPIArgs* out,
                                        CMPIString** keyValues, CMPIStatus* status);
PH_EXPORT int PH_SPRequestStateChange(const CMPIBroker* broker, const CMPIResult* result,
                                      const CMPIObjectPath* ref, const CMPIArgs* in, CMPIArgs* out,
                                      CMPIString** keyValues, CMPIStatus* status);

/* The key values of these name the system, of which there is one: they are not looked at.
 *
 * Switches the host: 2 on, 3 soft off, 11 power cycle. Any other state changes nothing and returns 7. */
PH_EXPORT int SetHostPowerState(CMPIString** keyValues, uint16_t requestedState);
/* Stores a state as the host's RequestedState. */
PH_EXPORT int RequestStateChangeforHost(CMPIString** keyValues, uint16_t requestedState);
/* Restarts the controller: stores state 11 in its device record, leaves the file that says so, runs "reboot".
 * Returns what became of the last; a restart that failed leaves no file. */
PH_EXPORT int RequstStateChangeforSP(CMPIString** keyValues);

/* ---- Power management ---------------------------------------------------------------------------------- */

/* CIM_PowerManagementService: one service for each managed system, hosted by the service processor. */
typedef struct {
    char SystemCreationClassName[256]; /* key */
    char CreationClassName[256];       /* key */
    char SystemName[256];              /* key */
    char Name[256];                    /* key; "SP Power Management Service" restarts the controller */
    char ElementName[128];
    int OperationalStatus[4];
    uint16_t HealthState;
    uint16_t EnabledState;
    uint16_t RequestedState;
    bool Started;
} PowerManagementServiceRecord;

PH_DECLARE_CLASS_FAMILY(PowerManagementService, PowerManagementServiceRecord);
PH_EXPORT int PH_Fill_PowerManagementService(const PowerServiceRow* row,
                                             PowerManagementServiceRecord* record);
PH_EXPORT extern const char* const g_PowerManagementServiceKeyList[4];

/* Method RequestPowerStateChange of the service that `ref` names: in-arguments "PowerState" (uint16) and
 * "ManagedElement" (reference to the system that the service manages), out-argument "Job". The method's
 * value, here a sint32, is returned in every case: 0, or 2 when the job exists and failed. Returns -1 then,
 * and for a request that is refused before there is a job, whose status says why: 1 "Create CMPIObjectPath
 * failed.", 4 "Invalid or Empty Input", 4 "CMPI_RC_ERR_INVALID_PARAMETER", 4 "ManagedElement Param is
 * Missing", 13 "PowerState Parameter is mismatched", 1 "Key Property Missing", 1 "Unable to create the job.".
 * A managed element of the wrong class fails the job, with 13 "ManagedElement Param is Missing or incorrect".
 *
 * The state of a change that was carried out is written to "/conf/PowerState.ini". */
PH_EXPORT int PH_RequestPowerStateChange(const CMPIBroker* broker, const CMPIResult* result,
                                         const CMPIObjectPath* ref, const CMPIArgs* in, CMPIArgs* out,
                                         CMPIString** keyValues, CMPIStatus* status);
/* Brings the host to a DMTF PowerState: 1 and 2 on, 5 soft off and on, 6 off, 8 soft off, 9 power cycle, 10
 * hard reset, 11 diagnostic interrupt. Any other state is refused. The session of a refused 3, 4 or 7 (sleep
 * states and hibernation) stays open, on purpose. */
PH_EXPORT int PH_SetPowerState(CMPIString** keyValues, uint16_t powerState);
/* The DMTF PowerState of the host: 2 on, 8 soft off. -1 when the BMC does not tell. */
PH_EXPORT int PH_GetHostPowerState(uint16_t* powerState);

/* CIM_PowerManagementCapabilities. Lists end with a negative number; see PowerCapabilitiesRow for their
 * values. */
typedef struct {
    char InstanceID[256]; /* key */
    char ElementName[128];
    int PowerChangeCapabilities[16];
    int PowerStatesSupported[16];
    int RequestedPowerStatesSupported[16];
} PowerManagementCapabilitiesRecord;

PH_DECLARE_CLASS_FAMILY(PowerManagementCapabilities, PowerManagementCapabilitiesRecord);
PH_EXPORT int PH_Fill_PowerManagementCapabilities(const PowerCapabilitiesRow* row,
                                                  PowerManagementCapabilitiesRecord* record);
PH_EXPORT extern const char* const g_PowerManagementCapabilitiesKeyList[1];

/* CIM_ConcreteCollection: what a system has of a kind, each kind one fixed instance (the collections of DSP1006). */
typedef struct {
    char InstanceID[64];  /* key; "ConcreteCollection:Host Sensors" */
    char ElementName[32]; /* "Capabilities", "Consoles", "Logs", "Sensors" or "Settings" */
    char Description[96];
} ConcreteCollectionRecord;

PH_DECLARE_CLASS_FAMILY(ConcreteCollection, ConcreteCollectionRecord);
PH_EXPORT extern const char* const g_ConcreteCollectionKeyList[1];

/* CIM_EnabledLogicalElementCapabilities: which states clients may ask the elements of a class for with
 * RequestStateChange, a fixed instance for each such class that has no capabilities of its own. */
typedef struct {
    char InstanceID[64]; /* key; "EnabledLogicalElementCapabilities:Host" */
    char ElementName[64];
    bool ElementNameEditSupported;       /* false: names are given */
    const int* RequestedStatesSupported; /* constants that end with a negative number: 2 enabled, 3 disabled,
                                            4 shut down, 11 reset */
} EnabledLogicalElementCapabilitiesRecord;

PH_DECLARE_CLASS_FAMILY(EnabledLogicalElementCapabilities, EnabledLogicalElementCapabilitiesRecord);
PH_EXPORT extern const char* const g_EnabledLogicalElementCapabilitiesKeyList[1];

#ifdef __cplusplus
}
#endif

#endif
