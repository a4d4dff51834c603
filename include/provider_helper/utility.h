/* Provider frame: property values, class families, back-end access.
 *
 * Results: integer functions return 0 for success and -1 for failure, functions that return objects return
 * NULL on failure, unless their comment says otherwise. CMPI objects belong to the broker. */
#ifndef PROVIDER_HELPER_UTILITY_H
#define PROVIDER_HELPER_UTILITY_H

#include <cmpidt.h>
#include <cmpift.h>
#include <stdbool.h>
#include <stdint.h>

#include "platform/cim_hooks.h"
#include "platform/smash_db.h"
#include "platform/support.h"
#include "provider_helper/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Property lists ------------------------------------------------------------------------------------ */

/* Returns 1 when `name` is to be set on an instance: `list` is NULL (no filter) or one of its entries
 * equals `name`, whatever the case. Returns 0 otherwise, and for a NULL name. `list` ends with NULL. */
PH_EXPORT int ExistsInList(const char** list, const char* name);

/* A row of a default or modifiable list, 80 bytes on every machine. `value` holds the first eight bytes of a
 * CMPIValue: enough for every type but CMPI_ptr. */
typedef struct {
    char name[64];
    CMPIType type;
    CMPIValueState state;
    uint64_t value;
} PHPropertyRow;

/* The properties that a request may change, with their default values, or is to change, with the new ones. */
typedef struct {
    PHPropertyRow rows[64];
    int count;
} PHPropertyList;

/* Copies `name` to row `index` of a table with rows of 80 characters, at most 64 of them: a longer name is
 * only terminated by what the row holds behind them. Does not change a list's count. */
PH_EXPORT void AddTo_DefaultList(void* table, const char* name, int index);

/* Bytes of the text that names refused properties. */
#define PH_REFUSED_NAMES_SIZE 1024

/* Sorts a modify request into `modifiable` and `refusedNames` (joined with ", "; cut where it is full).
 * Without a property list every property that differs from `current` is taken, and refused names do not
 * make the function fail: the caller fails the request when the text is not empty. With a list, the first
 * name that is not in `defaults` ends it with -1. Values that refer to CMPI objects stay those of
 * `modified`. */
PH_EXPORT int getModifiableProperties(const CMPIInstance* modified, const CMPIInstance* current,
                                      const char** properties, const PHPropertyList* defaults,
                                      PHPropertyList* modifiable, char* refusedNames);

/* Splits a text at its commas into a heap array of heap strings, both freed by the caller. Leading blanks
 * and tabs of a field go; empty fields count, and leave as many NULL slots at the array's end. Only the
 * first 255 characters are looked at. NULL or empty text: count 0, `list` untouched. Returns -1 when an
 * allocation fails. */
PH_EXPORT int PH_GetArrayCount(const char* text, char*** list, int* count);

/* ---- Array building ------------------------------------------------------------------------------------ */

/* These return NULL for a NULL list, a negative count, or a broker failure. The array belongs to the broker.
 *
 * The first four copy `count` entries, or, when `count` is 0, those before the sentinel (all bits set), of
 * which there must be one at least. A sentinel before `count` leaves the elements from there on unset. */
PH_EXPORT CMPIArray* PH_DupArray_uint8(const CMPIBroker* broker, const uint8_t* list, int count);
PH_EXPORT CMPIArray* PH_DupArray_uint16(const CMPIBroker* broker, const uint16_t* list, int count);
PH_EXPORT CMPIArray* PH_DupArray_uint64(const CMPIBroker* broker, const uint64_t* list, int count);
PH_EXPORT CMPIArray* PH_DupArray_sint32(const CMPIBroker* broker, const int32_t* list, int count);

/* Makes a uint16 array of the entries before the first negative one, each cut to 16 bits. */
PH_EXPORT CMPIArray* PH_Dup_uint16_Array(const CMPIBroker* broker, const int* list);
/* Makes a uint16 array of `count` entries. */
PH_EXPORT CMPIArray* Dup_uint16_Array(const CMPIBroker* broker, int count, const uint16_t* list);
/* Makes a string array of the texts at table + i * stride. */
PH_EXPORT CMPIArray* Dup_const_string_Array(const CMPIBroker* broker, int count, const void* table,
                                            int stride);
/* Does the same; the array has as many elements as the table has 32-bit words before the first zero word.
 * None gives NULL. */
PH_EXPORT CMPIArray* PH_Dup_const_string_Array(const CMPIBroker* broker, const void* table, int stride);
/* Makes a string array of `count` texts. */
PH_EXPORT CMPIArray* Dup_variable_string_Array(const CMPIBroker* broker, int count, char* const* texts);
/* Makes a string array of the texts before the NULL. None gives NULL. */
PH_EXPORT CMPIArray* PH_Dup_variable_string_Array(const CMPIBroker* broker, char* const* texts);

/* ---- Values of a request ------------------------------------------------------------------------------- */

/* Returns 1 for the text of an integer, else 0: decimal digits, or hexadecimal ones after 0x, with a sign
 * in front if and only if `signedFlag` is 1. A text without digits counts too. */
PH_EXPORT int IsValidIntValue(const char* text, int signedFlag);
/* Reads the number that a string stands for: decimal, hexadecimal after 0x, octal after a leading 0, and 0
 * for a NULL string. A value of another type, or another text, fails. */
PH_EXPORT int ParseToUnsignedInt(CMPIData data, uint64_t* result);
PH_EXPORT int ParseToSignedInt(CMPIData data, int64_t* result);

/* Takes a value of the native type as it is, or a string: decimal, 0x hexadecimal, or octal after a
 * leading 0. Signed getters need a sign in a string. The 64-bit getters accept 32 bits from a string. A
 * NULL string is 0. The result is left alone on failure. */
PH_EXPORT int GetUINT8Value(CMPIData data, uint8_t* result);
PH_EXPORT int GetUINT16Value(CMPIData data, uint16_t* result);
PH_EXPORT int GetUINT32Value(CMPIData data, uint32_t* result);
PH_EXPORT int GetUINT64Value(CMPIData data, uint64_t* result);
PH_EXPORT int GetSINT8Value(CMPIData data, int8_t* result);
PH_EXPORT int GetSINT16Value(CMPIData data, int16_t* result);
PH_EXPORT int GetSINT32Value(CMPIData data, int32_t* result);
PH_EXPORT int GetSINT64Value(CMPIData data, int64_t* result);
/* Reads a boolean, or the strings "true" and "false" in any case. A NULL string is false. */
PH_EXPORT int GetBoolValue(CMPIData data, CMPIBoolean* result);
/* Returns the string itself, NULL for one without text. Another type sets NULL and fails. */
PH_EXPORT int GetStringValue(CMPIData data, CMPIString** result);

/* Converts the elements of an array value into a heap buffer that the caller frees. A NULL array is a
 * success that touches nothing. An element that cannot be taken fails and sets the buffer to NULL. */
PH_EXPORT int GetUINT16AValue(CMPIData data, uint16_t** buffer, CMPICount* count);
/* The buffer holds eight bytes for each string, more than its pointers need. */
PH_EXPORT int GetStringAValue(CMPIData data, CMPIString*** buffer, CMPICount* count);

/* Checks the keys of `ref` against `keyNames` and stores each string key in `keyValues` at its name's index.
 * Integer keys are accepted and stored nowhere. On failure `status` says which check failed:
 * 1 "Key Property Missing", 13 "Invalid Data Type", 12 "No Such Key Property", 4 "Key Value Missing",
 * 4 "Invalid Key Value" (a quote in the text). */
PH_EXPORT int CheckForValidObjectPath(const CMPIBroker* broker, const CMPIObjectPath* ref,
                                      const char* const* keyNames, CMPIString** keyValues, int keyCount,
                                      CMPIStatus* status);

/* ---- Class families ------------------------------------------------------------------------------------ */

/* The functions of one class, named after it without "CIM_". `Record` is the class's plain data record.
 *
 *   PH_Enum_All_X      appends all records to `*records` (heap, `*count` of them; start with NULL and 0). With
 *                      `namesOnly` only the keys are filled. On failure nothing is appended.
 *   PH_Get_X           hands out the record with these key values (in key-list order), as an array of one. On
 *                      -1 a record may have been handed out: clean it either way.
 *   PH_Clean_X         frees the records with their texts, and sets the pointer to NULL. A count below 1 frees
 *                      the array alone.
 *   PH_MakePath_X      makes the object path of a record in the namespace of `ref`. Failure: 1 "Make
 *                      ObjectPath failed."
 *   PH_MakeInst_X      makes an instance with the keys and those properties that `properties` names (NULL:
 *                      all). The two integers tell the caller: 0,0 enumeration, 0,1 instance array, 0,2
 *                      get-instance. Failure: 1 "Make instance failed."
 *   PH_X_GetInstArray  makes an array of all instances.
 *   PH_EI_X            answer the CMPI requests EnumInstances, EnumInstanceNames and GetInstance. Results go
 *   PH_EIN_X           to `result`, which the caller closes (CMReturnDone). Failures: 1 "Failed to Enumerate
 *   PH_GI_X            Instance", "Failed to Enumerate Instance Names", "Failed to Get Instance".
 *   PH_MI_X            modify, create and delete an instance, and invoke a method. A class that does not offer
 *   PH_CI_X            one answers 7: "SetInstance not supported", "CreateInstance not supported",
 *   PH_DI_X            "DeleteInstance not supported", "Invoke Method not supported". Methods of the two
 *   PH_IM_X            computer systems, where they succeed, and of Ethernet ports close `result` themselves.
 *
 * Beside them a class has PH_Fill_X, which fills the non-key fields of a record from its back-end rows. */
#define PH_DECLARE_CLASS_FAMILY(X, Record)                                                                   \
    PH_DECLARE_CLASS_RECORDS(X, Record);                                                                     \
    PH_DECLARE_EMBEDDED_CLASS_FAMILY(X, Record)

/* The part that a class has whose instances are only reached through others, as CIM_Error. Its EIN, EI and GI
 * answer 7: "Enumerate Instance Names not supported", "Enumerate Instances  not supported", "Get Instance not
 * supported". */
#define PH_DECLARE_EMBEDDED_CLASS_FAMILY(X, Record)                                                          \
    PH_EXPORT CMPIObjectPath* PH_MakePath_##X(const CMPIBroker* broker, const CMPIContext* context,          \
                                              const CMPIObjectPath* ref, const Record* record,               \
                                              CMPIStatus* status);                                           \
    PH_EXPORT CMPIInstance* PH_MakeInst_##X(const CMPIBroker* broker, const CMPIContext* context,            \
                                            const CMPIObjectPath* ref, const char** properties,              \
                                            const Record* record, int callerKind, int callerDetail,          \
                                            CMPIStatus* status);                                             \
    PH_EXPORT void PH_EI_##X(const CMPIBroker* broker, const CMPIContext* context,                           \
                             const CMPIObjectPath* ref, const char** properties, const CMPIResult* result,   \
                             CMPIStatus* status);                                                            \
    PH_EXPORT void PH_EIN_##X(const CMPIBroker* broker, const CMPIContext* context,                          \
                              const CMPIObjectPath* ref, const CMPIResult* result, CMPIStatus* status);      \
    PH_EXPORT void PH_GI_##X(const CMPIBroker* broker, const CMPIContext* context,                           \
                             const CMPIObjectPath* ref, const char** properties, const CMPIResult* result,   \
                             CMPIStatus* status);                                                            \
    PH_EXPORT CMPIStatus PH_MI_##X(const CMPIBroker* broker, const CMPIContext* context,                     \
                                   const CMPIResult* result, const CMPIObjectPath* ref,                      \
                                   const CMPIInstance* instance, const char** properties);                   \
    PH_EXPORT CMPIStatus PH_CI_##X(const CMPIBroker* broker, const CMPIContext* context,                     \
                                   const CMPIResult* result, const CMPIObjectPath* ref,                      \
                                   const CMPIInstance* instance);                                            \
    PH_EXPORT CMPIStatus PH_DI_##X(const CMPIBroker* broker, const CMPIContext* context,                     \
                                   const CMPIResult* result, const CMPIObjectPath* ref);                     \
    PH_EXPORT CMPIStatus PH_IM_##X(const CMPIBroker* broker, const CMPIContext* context,                     \
                                   const CMPIResult* result, const CMPIObjectPath* ref, const char* method,  \
                                   const CMPIArgs* in, CMPIArgs* out)

#define PH_DECLARE_CLASS_RECORDS(X, Record)                                                                  \
    PH_EXPORT int PH_Enum_All_##X(Record** records, int* count, int namesOnly);                              \
    PH_EXPORT int PH_Get_##X(Record** record, CMPIString** keyValues);                                       \
    PH_EXPORT void PH_Clean_##X(Record** records, int count);                                                \
    PH_EXPORT CMPIArray* PH_##X##_GetInstArray(const CMPIObjectPath* ref, const CMPIBroker* broker,          \
                                               const CMPIContext* context, const char** properties)

/* All instances of the class that `ref` names, found by that name: an OEM library's function first
 * (PH_OEM_<class>_GetInstArray in /usr/local/lib/libOEMProviderHelper.so), then this library's, then the
 * class that the object manager gives for a prefix of its own (/usr/local/lib/libqom.so). The caller owns the
 * array. */
PH_EXPORT CMPIArray* PH_GetInstArray(const CMPIObjectPath* ref, const CMPIBroker* broker,
                                     const CMPIContext* context, const char** properties);

/* Fills g_fp and g_corefeatures. Called once when a provider is loaded; the arguments are the provider's and
 * not looked at. Returns 0. */
PH_EXPORT int PH_Init(const CMPIBroker* broker, const CMPIContext* context, const char* providerName,
                      CMPIStatus* status);

PH_EXPORT extern PlatformFunctions g_fp;
PH_EXPORT extern CoreFeatures g_corefeatures;

/* ---- Back ends ----------------------------------------------------------------------------------------- */

/* Opens the local IPMI session with the settings of the SMASH database: six attempts, five seconds apart.
 * 0 open; -1 no database or no session; 1 no settings in the database, which callers take for success: calls
 * on such a session fail. */
PH_EXPORT int CreateIPMISession(IPMI20_SESSION_T* session);
/* Opens a session on behalf of the user and address in "/tmp/current_req", a file of this process's user or
 * of root's. */
PH_EXPORT int CreateIPMISession_Ext(IPMI20_SESSION_T* session);
/* Returns -1 for NULL, else 0: the session is closed even when the BMC does not answer. */
PH_EXPORT int CloseIPMISession(IPMI20_SESSION_T* session);

PH_EXPORT int PH_CreateDBHandle(SMASH_DB_HANDLE* handle);
PH_EXPORT int PH_CreateTmpDBHandle(SMASH_DB_HANDLE* handle);
PH_EXPORT int PH_CreateSmashDBHandle(SMASH_DB_HANDLE* handle);
PH_EXPORT int PH_CloseDBHandle(SMASH_DB_HANDLE handle);

/* Write the system names as the vendor gives them, or "Unknown.IPMI BMC DeviceID.<id>" and "IPMI
 * Controller <id>" after the device record. `name` holds 256 characters. */
PH_EXPORT int PH_GetHostSystemName(char* name);
PH_EXPORT int PH_GetSPSystemName(char* name);

/* Returns wall-clock seconds, with all bits set when the clock cannot be read. */
PH_EXPORT unsigned int PH_GetTimeInSeconds(void);

/* Reads the first two colon-separated fields as decimal numbers; leading and repeated colons are skipped.
 * `first` may be NULL. */
PH_EXPORT int ParseDeviceId(const char* deviceId, int* first, int* second);

/* Converts "1.2.3.4" to 4 bytes; each number is cut to 8 bits. Returns -1 for fewer than four numbers. */
PH_EXPORT int PH_ConvertStrToIP(const char* text, uint8_t* address);
/* Converts "00:1A:..." to 6 bytes. Returns -1 for fewer than six fields. */
PH_EXPORT int ConvertStrToMAC(const char* text, uint8_t* mac);
/* Converts 12 hexadecimal digits to 6 bytes; a NULL or shorter text leaves them unchanged. */
PH_EXPORT void GetMACAddress(const char* text, uint8_t* mac);
/* Converts 6 bytes to "00:1A:..."; `text` holds 18 characters. Returns the text's length. */
PH_EXPORT int ConvertMACNumToMACFormatStr(const uint8_t* mac, char* text);
/* Separator ":": 6 bytes as 12 hexadecimal digits, without separators; ".": 4 bytes as dotted decimal
 * numbers; any other writes nothing. `text` holds 16 characters. */
PH_EXPORT void ConvertIPorMACnumToStr(const uint8_t* bytes, int length, char* text, const char* separator);
/* Checks an IPv4 address strictly, and says on standard output what is wrong. */
PH_EXPORT int IsValidIP(const char* text);

/* Finds the CIM PhysicalPackage PackageType of an IPMI entity ID, 0 where none fits, and its name (64
 * characters), which is left alone where there is none. Returns 0. */
PH_EXPORT int PH_GetPackageTypeAndName(int entityId, int* packageType, char* name);

/* Returns the authenticated user of the request, as the context entry "CMPIPrincipal" names it. The text
 * belongs to the context. */
PH_EXPORT int GetUserForAuthentication(const void* unused, const CMPIContext* context, const char** user);

#ifdef __cplusplus
}
#endif

#endif
