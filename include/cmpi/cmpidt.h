/* CMPI: data types, codes and flags (DMTF and The Open Group C206).
 *
 * CMPI_VERSION chooses the version that a provider is written for: 100, 200 or 210, without it 210. */
#ifndef CMPIDT_H
#define CMPIDT_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define CMPIVersion100 100
#define CMPIVersion200 200
#define CMPIVersion210 210
#ifndef CMPI_VERSION
#define CMPI_VERSION CMPIVersion210
#endif
#define CMPICurrentVersion CMPI_VERSION

typedef struct _CMPIArgs CMPIArgs;
typedef struct _CMPIArray CMPIArray;
typedef struct _CMPIContext CMPIContext;
typedef struct _CMPIDateTime CMPIDateTime;
typedef struct _CMPIEnumeration CMPIEnumeration;
typedef struct _CMPIInstance CMPIInstance;
typedef struct _CMPIObjectPath CMPIObjectPath;
typedef struct _CMPIPredicate CMPIPredicate;
typedef struct _CMPIResult CMPIResult;
typedef struct _CMPISelectCond CMPISelectCond;
typedef struct _CMPISelectExp CMPISelectExp;
typedef struct _CMPIString CMPIString;
typedef struct _CMPISubCond CMPISubCond;
typedef struct _CMPIAssociationMI CMPIAssociationMI;
typedef struct _CMPIIndicationMI CMPIIndicationMI;
typedef struct _CMPIInstanceMI CMPIInstanceMI;
typedef struct _CMPIMethodMI CMPIMethodMI;
typedef struct _CMPIBroker CMPIBroker;
typedef struct _CMPIArgsFT CMPIArgsFT;
typedef struct _CMPIArrayFT CMPIArrayFT;
typedef struct _CMPIAssociationMIFT CMPIAssociationMIFT;
typedef struct _CMPIBrokerEncFT CMPIBrokerEncFT;
typedef struct _CMPIBrokerExtFT CMPIBrokerExtFT;
typedef struct _CMPIBrokerFT CMPIBrokerFT;
typedef struct _CMPIBrokerMemFT CMPIBrokerMemFT;
typedef struct _CMPIContextFT CMPIContextFT;
typedef struct _CMPIDateTimeFT CMPIDateTimeFT;
typedef struct _CMPIEnumerationFT CMPIEnumerationFT;
typedef struct _CMPIIndicationMIFT CMPIIndicationMIFT;
typedef struct _CMPIInstanceFT CMPIInstanceFT;
typedef struct _CMPIInstanceMIFT CMPIInstanceMIFT;
typedef struct _CMPIMethodMIFT CMPIMethodMIFT;
typedef struct _CMPIObjectPathFT CMPIObjectPathFT;
typedef struct _CMPIResultFT CMPIResultFT;
typedef struct _CMPISelectExpFT CMPISelectExpFT;
typedef struct _CMPIStringFT CMPIStringFT;
typedef struct _CMPIPredicateFT CMPIPredicateFT;
typedef struct _CMPISelectCondFT CMPISelectCondFT;
typedef struct _CMPISubCondFT CMPISubCondFT;
typedef struct _CMPIStatus CMPIStatus;
typedef struct _CMPIData CMPIData;
typedef struct _CMPIValuePtr CMPIValuePtr;
typedef union _CMPIValue CMPIValue;

/* Objects of which only pointers are passed around here. */
typedef struct _CMPIError CMPIError;
typedef struct _CMPIPropertyList CMPIPropertyList;
typedef struct _CMPIEnumerationFilter CMPIEnumerationFilter;
typedef struct _CMPIGcStat CMPIGcStat;
typedef void* CMPIMsgFileHandle;
typedef const void* CMPICodepageID;

typedef unsigned char CMPIBoolean;
typedef unsigned short CMPIChar16;
typedef unsigned char CMPIUint8;
typedef unsigned short CMPIUint16;
typedef unsigned int CMPIUint32;
typedef unsigned long long CMPIUint64;
typedef signed char CMPISint8;
typedef short CMPISint16;
typedef int CMPISint32;
typedef long long CMPISint64;
typedef float CMPIReal32;
typedef double CMPIReal64;

typedef unsigned int CMPICount;
typedef int CMPIVersion;
typedef unsigned int CMPIFlags;
typedef unsigned short CMPIType;
typedef unsigned short CMPIValueState;

/* The address and length of memory (CMPI_ptr). */
struct _CMPIValuePtr {
    void* ptr;
    CMPICount length;
};

union _CMPIValue {
    CMPIUint64 uint64;
    CMPIUint32 uint32;
    CMPIUint16 uint16;
    CMPIUint8 uint8;
    CMPISint64 sint64;
    CMPISint32 sint32;
    CMPISint16 sint16;
    CMPISint8 sint8;
    CMPIReal64 real64;
    CMPIReal32 real32;
    CMPIBoolean boolean;
    CMPIChar16 char16;
    CMPIInstance* inst;
    CMPIObjectPath* ref;
    CMPIArgs* args;
    CMPISelectExp* filter;
    CMPIEnumeration* Enum;
    CMPIArray* array;
    CMPIString* string;
    char* chars;
    CMPIDateTime* dateTime;
    CMPIValuePtr dataPtr;
};

struct _CMPIData {
    CMPIType type;
    CMPIValueState state;
    CMPIValue value;
};

/* ---- Type codes: simple types, a bit group for each kind, and the array flag --------------------------- */

#define CMPI_null 0

#define CMPI_SIMPLE (2 + 1)
#define CMPI_boolean (2 + 0)
#define CMPI_char16 (2 + 1)

#define CMPI_REAL ((2) << 2)
#define CMPI_real32 ((2 + 0) << 2)
#define CMPI_real64 ((2 + 1) << 2)

#define CMPI_UINT ((8) << 4)
#define CMPI_uint8 ((8 + 0) << 4)
#define CMPI_uint16 ((8 + 1) << 4)
#define CMPI_uint32 ((8 + 2) << 4)
#define CMPI_uint64 ((8 + 3) << 4)
#define CMPI_SINT ((8 + 4) << 4)
#define CMPI_sint8 ((8 + 4) << 4)
#define CMPI_sint16 ((8 + 5) << 4)
#define CMPI_sint32 ((8 + 6) << 4)
#define CMPI_sint64 ((8 + 7) << 4)
#define CMPI_INTEGER (CMPI_UINT | CMPI_SINT)

#define CMPI_ENC ((16) << 8)
#define CMPI_instance ((16 + 0) << 8)
#define CMPI_ref ((16 + 1) << 8)
#define CMPI_args ((16 + 2) << 8)
#define CMPI_class ((16 + 3) << 8)
#define CMPI_filter ((16 + 4) << 8)
#define CMPI_enumeration ((16 + 5) << 8)
#define CMPI_string ((16 + 6) << 8)
#define CMPI_chars ((16 + 7) << 8)
#define CMPI_dateTime ((16 + 8) << 8)
#define CMPI_ptr ((16 + 9) << 8)
#define CMPI_charsptr ((16 + 10) << 8)

#define CMPI_ARRAY ((1) << 13)
#define CMPI_SIMPLEA (CMPI_ARRAY | CMPI_SIMPLE)
#define CMPI_booleanA (CMPI_ARRAY | CMPI_boolean)
#define CMPI_char16A (CMPI_ARRAY | CMPI_char16)
#define CMPI_real32A (CMPI_ARRAY | CMPI_real32)
#define CMPI_real64A (CMPI_ARRAY | CMPI_real64)
#define CMPI_uint8A (CMPI_ARRAY | CMPI_uint8)
#define CMPI_uint16A (CMPI_ARRAY | CMPI_uint16)
#define CMPI_uint32A (CMPI_ARRAY | CMPI_uint32)
#define CMPI_uint64A (CMPI_ARRAY | CMPI_uint64)
#define CMPI_sint8A (CMPI_ARRAY | CMPI_sint8)
#define CMPI_sint16A (CMPI_ARRAY | CMPI_sint16)
#define CMPI_sint32A (CMPI_ARRAY | CMPI_sint32)
#define CMPI_sint64A (CMPI_ARRAY | CMPI_sint64)
#define CMPI_instanceA (CMPI_ARRAY | CMPI_instance)
#define CMPI_refA (CMPI_ARRAY | CMPI_ref)
#define CMPI_stringA (CMPI_ARRAY | CMPI_string)
#define CMPI_charsA (CMPI_ARRAY | CMPI_chars)
#define CMPI_dateTimeA (CMPI_ARRAY | CMPI_dateTime)
#define CMPI_ptrA (CMPI_ARRAY | CMPI_ptr)
#define CMPI_charsptrA (CMPI_ARRAY | CMPI_charsptr)

/* Types of textual key values before a class gives their real type. */
#define CMPI_keyInteger (CMPI_sint64)
#define CMPI_keyString (CMPI_string)
#define CMPI_keyBoolean (CMPI_boolean)
#define CMPI_keyRef (CMPI_ref)

/* ---- Value states -------------------------------------------------------------------------------------- */

#define CMPI_goodValue (0)
#define CMPI_nullValue (1 << 8)
#define CMPI_keyValue (2 << 8)
#define CMPI_notFound (4 << 8)
#define CMPI_badValue (0x80 << 8)

/* ---- Return codes -------------------------------------------------------------------------------------- */

typedef enum _CMPIrc {
    CMPI_RC_OK = 0,
    CMPI_RC_ERR_FAILED = 1,
    CMPI_RC_ERR_ACCESS_DENIED = 2,
    CMPI_RC_ERR_INVALID_NAMESPACE = 3,
    CMPI_RC_ERR_INVALID_PARAMETER = 4,
    CMPI_RC_ERR_INVALID_CLASS = 5,
    CMPI_RC_ERR_NOT_FOUND = 6,
    CMPI_RC_ERR_NOT_SUPPORTED = 7,
    CMPI_RC_ERR_CLASS_HAS_CHILDREN = 8,
    CMPI_RC_ERR_CLASS_HAS_INSTANCES = 9,
    CMPI_RC_ERR_INVALID_SUPERCLASS = 10,
    CMPI_RC_ERR_ALREADY_EXISTS = 11,
    CMPI_RC_ERR_NO_SUCH_PROPERTY = 12,
    CMPI_RC_ERR_TYPE_MISMATCH = 13,
    CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED = 14,
    CMPI_RC_ERR_INVALID_QUERY = 15,
    CMPI_RC_ERR_METHOD_NOT_AVAILABLE = 16,
    CMPI_RC_ERR_METHOD_NOT_FOUND = 17,
    CMPI_RC_ERR_NAMESPACE_NOT_EMPTY = 20,
    CMPI_RC_ERR_INVALID_ENUMERATION_CONTEXT = 21,
    CMPI_RC_ERR_INVALID_OPERATION_TIMEOUT = 22,
    CMPI_RC_ERR_PULL_HAS_BEEN_ABANDONED = 23,
    CMPI_RC_ERR_PULL_CANNOT_BE_ABANDONED = 24,
    CMPI_RC_ERR_FILTERED_ENUMERATION_NOT_SUPPORTED = 25,
    CMPI_RC_ERR_CONTINUATION_ON_ERROR_NOT_SUPPORTED = 26,
    CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED = 27,
    CMPI_RC_ERR_SERVER_IS_SHUTTING_DOWN = 28,
    CMPI_RC_DO_NOT_UNLOAD = 50,
    CMPI_RC_NEVER_UNLOAD = 51,
    CMPI_RC_ERR_INVALID_HANDLE = 60,
    CMPI_RC_ERR_INVALID_DATA_TYPE = 61,
    CMPI_RC_ERROR_SYSTEM = 100,
    CMPI_RC_ERROR = 200
} CMPIrc;

struct _CMPIStatus {
    CMPIrc rc;
    CMPIString* msg; /* NULL: the code says it all */
};

/* ---- Flags and capabilities ---------------------------------------------------------------------------- */

/* Context entries. */
#define CMPIInvocationFlags "CMPIInvocationFlags"
#define CMPIInitNameSpace "CMPIInitNameSpace"
#define CMPIPrincipal "CMPIPrincipal"
#define CMPIRole "CMPIRole"
#define CMPIAcceptLanguage "CMPIAcceptLanguage"
#define CMPIContentLanguage "CMPIContentLanguage"

/* Bits of the entry CMPIInvocationFlags. */
#define CMPI_FLAG_LocalOnly 1
#define CMPI_FLAG_DeepInheritance 2
#define CMPI_FLAG_IncludeQualifiers 4
#define CMPI_FLAG_IncludeClassOrigin 8

/* Bits of brokerCapabilities. */
#define CMPI_MB_BasicRead 0x00000001
#define CMPI_MB_BasicWrite 0x00000003
#define CMPI_MB_InstanceManipulation 0x00000007
#define CMPI_MB_AssociationTraversal 0x00000009
#define CMPI_MB_QueryExecution 0x00000011
#define CMPI_MB_QueryNormalization 0x00000030
#define CMPI_MB_BasicQualifierSupport 0x00000040
#define CMPI_MB_Indications 0x00000087
#define CMPI_MB_OSEncapsulationSupport 0x00000100

typedef enum _CMPILevel { CMPI_LEV_INFO = 1, CMPI_LEV_WARNING = 2, CMPI_LEV_VERBOSE = 3 } CMPILevel;

typedef enum _CMPISeverity {
    CMPI_DEV_DEBUG = 1,
    CMPI_SEV_INFO = 2,
    CMPI_SEV_WARNING = 3,
    CMPI_SEV_ERROR = 4
} CMPISeverity;

/* PerceivedSeverity and ProbableCause of CIM_Error: the numbers are the class's. */
typedef enum _CMPIErrorSeverity {
    ErrorSeverityUnknown = 0,
    ErrorSeverityLow = 2,
    ErrorSeverityMedium = 3,
    ErrorSeverityHigh = 4,
    ErrorSeverityFatal = 5
} CMPIErrorSeverity;
typedef unsigned int CMPIErrorProbableCause;

/* ---- Functions that pass through the broker ------------------------------------------------------------ */

#ifndef CMPI_THREAD_RETURN
#define CMPI_THREAD_RETURN void*
#endif
typedef void* (*CMPIThreadFunc)(void* parameter);
typedef void (*CMPIThreadOnceFunc)(void);
typedef void (*CMPIThreadKeyCleanupFunc)(void* key);
typedef CMPIData CMPIAccessor(const char* name, void* parameter);

#ifdef __cplusplus
}
#endif

#endif
