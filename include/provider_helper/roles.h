/* Identities and roles: what the BMC's IPMI users may do, as DSP1034 and DSP1039 show it.
 *
 * IPMI gives a user a privilege limit on each channel (Get and Set User Access, IPMI 2.0 22.26 and 22.27). Each
 * level that a limit may have is a role with one privilege, and a user's identity is a member of the roles that it
 * has on the BMC's LAN channels. Where the BMC does not tell which channels are LANs, it is the channel that carries
 * the request (CIM_USER_PRESENT_CHANNEL). */
#ifndef PROVIDER_HELPER_ROLES_H
#define PROVIDER_HELPER_ROLES_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* CIM_Identity: one for each CIM_Account. */
typedef struct {
    char InstanceID[256];        /* key; "Identity:IPMI User-%d" with the slot */
    char ElementName[256];       /* the user's name */
    char Description[512];       /* "operator on channel 1, user on channel 8"; "no access" */
    bool CurrentlyAuthenticated; /* the user has an open session (Get Session Info, 22.20) */
    bool knowsSessions;          /* the BMC tells; if it does not, CurrentlyAuthenticated is left out */
    uint8_t slot;
} IdentityRecord;

PH_DECLARE_CLASS_FAMILY(Identity, IdentityRecord);
PH_EXPORT extern const char* const g_IdentityKeyList[1];

/* CIM_Role: one for each privilege level. Integer lists end with a negative number. */
typedef struct {
    char CreationClassName[256]; /* key */
    char Name[64];               /* key; "callback", "user", "operator", "administrator", "OEM" */
    char CommonName[64];         /* as Name */
    char ElementName[64];
    int RoleCharacteristics[2]; /* 2 static: nobody changes or deletes it */
    uint8_t level;              /* 1 callback, 2 user, 3 operator, 4 administrator, 5 OEM */
} RoleRecord;

PH_DECLARE_CLASS_FAMILY(Role, RoleRecord);
PH_EXPORT extern const char* const g_RoleKeyList[2];

/* CIM_Privilege: one for each role, which has the same ElementName. */
typedef struct {
    char InstanceID[256]; /* key; "Privilege:" and the role's Name */
    char ElementName[64];
    bool PrivilegeGranted;
    const int*
        Activities; /* constants that end with a negative number: 1 other, 2 create, 3 delete, 4 detect,
                              5 read, 6 write, 7 execute */
    bool RepresentsAuthorizationRights;
} PrivilegeRecord;

PH_DECLARE_CLASS_FAMILY(Privilege, PrivilegeRecord);
PH_EXPORT extern const char* const g_PrivilegeKeyList[1];

/* CIM_RoleBasedAuthorizationService: one fixed instance.
 *
 * AssignRoles(Identity, Roles) sets the user's privilege limit on its channels: those where it has access or may send
 * IPMI messages, or the first one for a user that has neither. There is one role at most; without a role (an empty
 * array) the user has no access. The last administrator of a channel keeps its role. A request that fails on one
 * channel is undone on the others.
 *
 * ShowRoles(Subject, Target) returns the roles of an identity, those that are limited to a system, or what is both,
 * each with its privilege at the same place of the other array. ShowAccess(Subject, Target) returns who has access to
 * the service processor, with the highest of the privileges that an identity has; a disabled user has none.
 *
 * CreateRole, ModifyRole and DeleteRole return 1, not supported. */
typedef struct {
    char SystemCreationClassName[256]; /* key; "CIM_SPComputerSystem" */
    char SystemName[256];              /* key */
    char CreationClassName[256];       /* key */
    char Name[256];                    /* key */
    char ElementName[64];
    uint16_t EnabledState;   /* 5 not applicable: it cannot be switched */
    uint16_t RequestedState; /* 12 not applicable */
} RoleBasedAuthorizationServiceRecord;

PH_DECLARE_CLASS_FAMILY(RoleBasedAuthorizationService, RoleBasedAuthorizationServiceRecord);
PH_EXPORT extern const char* const g_RoleBasedAuthorizationServiceKeyList[4];

/* CIM_RoleBasedManagementCapabilities: one fixed instance. Integer lists end with a negative number. */
typedef struct {
    char InstanceID[256]; /* key */
    char ElementName[64];
    bool SharedPrivilegeSupported;  /* a privilege may be that of many users */
    const int* ActivitiesSupported; /* as PrivilegeRecord's */
    int SupportedMethods[4];        /* 1 ShowAccess, 6 AssignRoles, 7 ShowRoles */
} RoleBasedManagementCapabilitiesRecord;

PH_DECLARE_CLASS_FAMILY(RoleBasedManagementCapabilities, RoleBasedManagementCapabilitiesRecord);
PH_EXPORT extern const char* const g_RoleBasedManagementCapabilitiesKeyList[1];

#ifdef __cplusplus
}
#endif

#endif
