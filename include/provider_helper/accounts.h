/* Accounts: the BMC's IPMI users as CIM_Account, and the service that creates them.
 *
 * Slots are user IDs, from 1 to PH_Get_Max_Users_Count. Slot 1 is the anonymous user and always listed, as
 * "anonymous"; another slot without a name is free. Slots 1 and 2 are the default users and stay. Lengths of
 * names and passwords count bytes. Nothing here logs a password or puts one into a message, and
 * PH_Clean_Account wipes the record's. */
#ifndef PROVIDER_HELPER_ACCOUNTS_H
#define PROVIDER_HELPER_ACCOUNTS_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- User slots ---------------------------------------------------------------------------------------- */

typedef struct {
    char userName[256];
    uint8_t slot;
    uint8_t isEnabled;
    uint8_t access; /* CIM_GetUserAccess on the channel that carries the request; 0xFF unknown */
} PHUserEntry;

/* In this mode, each used slot is asked for its access too, and left out when it has none. */
#define PH_USERS_WITH_ACCESS 2

/* Returns the number of slots, -1 on failure. */
PH_EXPORT int PH_Get_Max_Users_Count(IPMI20_SESSION_T* session);
/* Reads the used slots into a heap array that the caller frees. A slot whose name cannot be read is left
 * out; the result is -1 when none can. */
PH_EXPORT int PH_Get_All_Users(int mode, PHUserEntry** users, int* count);
/* Finds the first user of this name. Slot 1, listed as "anonymous" all the same, is found by the name that
 * it holds, and by "anonymous" when it holds none. The result is -1 when there is none. */
PH_EXPORT int PH_Get_User(int mode, const char* name, PHUserEntry* user);
/* Appends ": Available slots - " and " %d" for each free slot to a message of PH_ACCOUNT_MESSAGE_SIZE bytes. */
#define PH_ACCOUNT_MESSAGE_SIZE 256
PH_EXPORT int PH_Get_Empty_Slots(IPMI20_SESSION_T* session, char* message);

/* ---- CIM_Account --------------------------------------------------------------------------------------- */

/* Text lists end with NULL; the texts are heap strings of the record. */
typedef struct {
    char SystemCreationClassName[256]; /* key; "CIM_SPComputerSystem" */
    char SystemName[256];              /* key */
    char CreationClassName[256];       /* key */
    char Name[256];                    /* key; "IPMI User-%d" with the slot */
    char UserID[256];
    char* UserPassword[2]; /* of a request only: the BMC gives none */
    char* OrganizationName[2];
    char ElementName[256];
    uint16_t RequestedState; /* 12 not applicable */
    uint16_t EnabledState;   /* 2 enabled and may send IPMI messages, 3 disabled */
    char OtherEnabledState[256];
    uint32_t passwordExpiryDays; /* 99999: never */
    char* Descriptions[2];
    uint8_t slot;      /* in a request with bit 7 for a password of 17 to 20 bytes, the 20-byte form */
    uint8_t privilege; /* limit: 1 callback, 2 user, 3 operator, 4 administrator, 5 OEM, 15 no access */
    uint16_t UserPasswordEncryptionAlgorithm; /* 1 other */
    char OtherUserPasswordEncryptionAlgorithm[256];
    uint32_t UserPasswordEncoding; /* 2 ascii */
} AccountRecord;

/* Clients may modify UserID and UserPassword, delete accounts beyond the default ones, and call
 * RequestStateChange with 2 (enabled) or 3 (disabled). That method is done when it returns: its value is 0
 * and there is no job. */
PH_DECLARE_CLASS_FAMILY(Account, AccountRecord);
PH_EXPORT int PH_Fill_Account(const PHUserEntry* user, AccountRecord* record);
PH_EXPORT extern const char* const g_AccountKeyList[4];

/* The end of a password's life in seconds since 1970 UTC: the next midnight and so many days. */
PH_EXPORT uint64_t PH_GetPasswordExpiry(uint32_t days);

/* Enables (2) or disables (3) the account that `ref` names; PH_IM_Account's RequestStateChange. Failures have
 * rc 1: "Invalid Parameter value" for other states, "Invalid input Object Path\n", "Given instance does not
 * exit\n", "Unable to create IPMI session\n", "Unable to change state\n". Enabling also lets the user send
 * IPMI messages, without which the account would stay disabled. */
PH_EXPORT CMPIStatus PH_RequestStateChange(const CMPIBroker* broker, const CMPIObjectPath* ref,
                                           uint16_t requestedState);

/* Puts the UserID and UserPassword of a modify request into the record. -1 for a value of the wrong type, an
 * empty or too long UserID (255 bytes), or a password list without a text. */
PH_EXPORT int PH_Fill_Account_Struct_for_MI(const PHPropertyList* modifiable, AccountRecord* record);

/* ---- CIM_AccountManagementService ---------------------------------------------------------------------- */

typedef struct {
    char SystemCreationClassName[256]; /* key; "CIM_SPComputerSystem" */
    char SystemName[256];              /* key */
    char CreationClassName[256];       /* key */
    char Name[256];                    /* key */
    char ElementName[256];
    uint16_t EnabledState;   /* 5 not applicable: it cannot be switched */
    uint16_t RequestedState; /* 12 not applicable */
} AccountManagementServiceRecord;

PH_DECLARE_CLASS_FAMILY(AccountManagementService, AccountManagementServiceRecord);
PH_EXPORT int PH_Fill_AccountManagementService(AccountManagementServiceRecord* record);
PH_EXPORT extern const char* const g_AccountManagementServiceKeyList[4];

/* Method CreateAccount: in-arguments "AccountTemplate" (embedded CIM_Account with Name, UserID and
 * UserPassword) and "System" (reference to a CIM_SPComputerSystem), out-argument "Account" (reference). The
 * method's value is 0; failures are in the status. Name says which slot becomes the account. */
PH_EXPORT CMPIStatus PH_Create_Account(const CMPIBroker* broker, const CMPIContext* context,
                                       const CMPIResult* result, const CMPIObjectPath* ref,
                                       const CMPIArgs* in, CMPIArgs* out);
/* Name, UserID and UserPassword of a template; -1 when one is missing or not allowed, as in
 * PH_Fill_Account_Struct_for_MI. */
PH_EXPORT int PH_Fill_Account_Struct_from_CMPI_Inst(const CMPIInstance* instance, AccountRecord* record);
/* Creates and enables the user that the record's Name, UserID and UserPassword describe, with privilege limit
 * "user" on channel 1, and sets the record's slot. On failure the slot is free as before, as far as the BMC
 * allows, and `message` (PH_ACCOUNT_MESSAGE_SIZE bytes) says why. */
PH_EXPORT int create_account(AccountRecord* record, char* message);

/* ---- CIM_AccountManagementCapabilities ----------------------------------------------------------------- */

/* Integer lists end with a negative number. */
typedef struct {
    char InstanceID[256]; /* key */
    char ElementName[256];
    bool ElementNameEditSupported;
    uint16_t MaximumAccountsSupported;                /* slots */
    int OperationsSupported[4];                       /* 2 create, 3 modify, 4 delete */
    int SupportedUserPasswordEncryptionAlgorithms[2]; /* 0: clients give passwords as they are */
} AccountManagementCapabilitiesRecord;

PH_DECLARE_CLASS_FAMILY(AccountManagementCapabilities, AccountManagementCapabilitiesRecord);
/* Returns -1 when the BMC does not tell its number of slots. */
PH_EXPORT int PH_Fill_AccountManagementCapabilities(IPMI20_SESSION_T* session,
                                                    AccountManagementCapabilitiesRecord* record);
PH_EXPORT extern const char* const g_AccountManagementCapabilitiesKeyList[1];

#ifdef __cplusplus
}
#endif

#endif
