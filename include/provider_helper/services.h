/* Protocol services: the BMC's network services as CIM_ProtocolService. The command-line protocol (CLP)
 * service is a daemon of this system, smashclpd, that is started and stopped here; the others are switched by
 * the BMC (CIM_SetServiceConf). */
#ifndef PROVIDER_HELPER_SERVICES_H
#define PROVIDER_HELPER_SERVICES_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Integer lists end with a negative number. */
typedef struct {
    char SystemCreationClassName[256]; /* key; "CIM_SPComputerSystem" */
    char SystemName[256];              /* key */
    char CreationClassName[256];       /* key */
    char Name[256];                    /* key; "SSHProtocolService", … */
    char ElementName[256];
    char OtherProtocol[256]; /* "ssh", "telnet", "clp", "http", "https", "web", "kvm", "cd-media", "fd-media",
                                "hd-media" */
    uint16_t Protocol;       /* 1 other, 2 SSH, 3 Telnet, 4 CLP */
    uint16_t MaxConnections; /* as the BMC has it, 1 for CLP */
    uint16_t RequestedState; /* 12 not applicable */
    uint16_t EnabledState;   /* 2 enabled, 3 not known to be */
    uint16_t HealthState;    /* 5 OK, 0 unknown: it is not enabled */
    int OperationalStatus[2]; /* 2 OK, 10 stopped, 0 unknown: the BMC does not tell */
} ProtocolServiceRecord;

PH_DECLARE_CLASS_FAMILY(ProtocolService, ProtocolServiceRecord);
/* Fills the fields that follow from the record's Name. A service whose state the BMC does not tell is not
 * enabled. Returns -1 for a Name that no service has. The CLP service needs no session. */
PH_EXPORT int PH_Fill_ProtocolService(IPMI20_SESSION_T* session, ProtocolServiceRecord* record);
PH_EXPORT extern const char* const g_ProtocolServiceKeyList[4];

/* ---- Changing the state -------------------------------------------------------------------------------- */

/* Method RequestStateChange: in-argument "RequestedState" (2 enabled, 3 disabled, 11 reset), out-argument
 * "Job", method value 0 or 2. What is wrong before the job exists has the value 0 and a status: 1 "Create
 * CMPIObjectPath failed.", 4 "Input Parameter is empty" (no in-arguments), "RequestedState Parameter is
 * Invalid" (missing), "RequestedState parameter value is invalid" (no uint16). From then on the job tells,
 * and the status has 4 "Invalid Parameter value" for another state, else 1 and what PH_RequestStateChange_DB
 * says, or that the job could not be ended. */
PH_EXPORT int PH_ProtocolServiceRequestStateChange(const CMPIBroker* broker, const CMPIResult* result,
                                                   const CMPIObjectPath* ref, const CMPIArgs* in,
                                                   CMPIArgs* out, CMPIString** keyValues, CMPIStatus* status);

#define PH_SERVICE_MESSAGE_SIZE 256 /* bytes of a failure's text, which is written on failure only */

/* This is another name of PH_Set_ProtocolService_EnabledState. */
PH_EXPORT int PH_RequestStateChange_DB(uint16_t requestedState, const char* serviceName, char* message);
/* "CLPProtocolService" is the CLP daemon, another name that is none of a service the web service. A state
 * other than 2, 3 and 11 changes nothing and is no failure. Resetting an enabled service disables it for 3
 * seconds. */
PH_EXPORT int PH_Set_ProtocolService_EnabledState(const char* serviceName, uint16_t requestedState,
                                                  char* message);

/* Starts (2), stops (3) or restarts (11) the CLP daemon. Starting one that runs and stopping one that does
 * not are failures; a restart never fails. The daemon is asked to stop with a hang-up signal, and restarted
 * with a termination signal; clients are ended before. */
PH_EXPORT int PH_ChangeState_CLPProtocolService(uint16_t requestedState, char* message);
/* Return 0 when it runs, -1 when not or when the processes cannot be listed: the daemon, and a client on a
 * terminal. */
PH_EXPORT int PH_IsSmashclpdRunning(void);
PH_EXPORT int PH_IsSmashclpRunning(void);

#ifdef __cplusplus
}
#endif

#endif
