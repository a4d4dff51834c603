/* Services of the BMC: its network services with their ports, and its clock. */
#ifndef PROVIDER_HELPER_SERVICES_H
#define PROVIDER_HELPER_SERVICES_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The BMC's network services as CIM_ProtocolService. The command-line protocol (CLP) service is a daemon of
 * this system, smashclpd, that is started and stopped here; the others are switched by the BMC
 * (CIM_SetServiceConf). Integer lists end with a negative number. */
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

/* ---- CIM_TCPProtocolEndpoint --------------------------------------------------------------------------- */

/* A TCP port of a network service: one for each of the two ports of its record, without encryption and with
 * it, where the BMC tells of one (CIM_GetServiceConf). */
typedef struct {
    char SystemCreationClassName[256]; /* key; "CIM_SPComputerSystem" */
    char SystemName[256];              /* key */
    char CreationClassName[256];       /* key */
    char Name[256];                    /* key; "TCPProtocolEndpoint-ssh-encrypted", "…-web-clear" */
    char NameFormat[64];
    char ElementName[64]; /* "ssh, encrypted": the name that the BMC has for the service */
    uint32_t PortNumber;
    uint16_t ProtocolIFType; /* 4111 TCP */
    uint16_t EnabledState;   /* 2 enabled, 3 disabled: nobody listens there now */
    uint16_t RequestedState; /* 12 not applicable */
} TCPProtocolEndpointRecord;

PH_DECLARE_CLASS_FAMILY(TCPProtocolEndpoint, TCPProtocolEndpointRecord);
/* Fills all but the keys from a service's record; `encrypted` chooses between its ports. Returns 0. */
PH_EXPORT int PH_Fill_TCPProtocolEndpoint(const CIM_ServiceConf* conf, int encrypted,
                                          TCPProtocolEndpointRecord* record);
PH_EXPORT extern const char* const g_TCPProtocolEndpointKeyList[4];

/* ---- CIM_TimeService ----------------------------------------------------------------------------------- */

/* The clock that the BMC stamps the records of its event log with. */
typedef struct {
    char SystemCreationClassName[256]; /* key; "CIM_SPComputerSystem" */
    char SystemName[256];              /* key */
    char CreationClassName[256];       /* key */
    char Name[256];                    /* key; "Time Service" */
    char ElementName[64];
    uint16_t EnabledState;    /* 2 enabled */
    uint16_t RequestedState;  /* 12 not applicable */
    uint16_t HealthState;     /* 5 OK */
    int OperationalStatus[2]; /* 2 OK; ends with a negative number */
    bool Started;             /* true */
} TimeServiceRecord;

/* Method ManageTime reads or sets the clock, in one IPMI session. In-arguments: "GetRequest" (boolean; a
 * string "true" or "false"), "ManagedElement", a reference to the service processor; "TimeData", a datetime
 * with its offset from UTC, is read into or taken from. Setting also sets the offset, where the BMC keeps
 * one; where it has none, times are those of this system's time zone, as in the event log. A change that
 * fails leaves clock and offset as they were. The method's value is 0, or it is refused with a status:
 *   4 "GetRequest Parameter is Invalid"
 *   4 "ManagedElement Parameter is Invalid" (not the service processor)
 *   4 "TimeData Parameter is Invalid" (no point in time, or one that the clock cannot have: before 1987
 *     or after 2106-02-07)
 *   1 "The BMC does not tell the time", "The BMC's clock was not set", "The BMC did not set its clock" */
PH_DECLARE_CLASS_FAMILY(TimeService, TimeServiceRecord);
PH_EXPORT int PH_Fill_TimeService(TimeServiceRecord* record);
PH_EXPORT extern const char* const g_TimeServiceKeyList[4];

#ifdef __cplusplus
}
#endif

#endif
