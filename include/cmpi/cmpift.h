/* CMPI: function tables of the objects, the broker and the providers. Each version appended members to the
 * tables of the one before (CMPI_VERSION).
 *
 * A table says in ftVersion which version it follows; members that a version does not have must not be read.
 */
#ifndef CMPIFT_H
#define CMPIFT_H

#include "cmpidt.h"
#include "cmpios.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Since 2.1, implementations may keep handles and tables in constant memory. */
#if CMPI_VERSION >= CMPIVersion210
#define CMPI_CONST const
#else
#define CMPI_CONST
#endif

/* An object: what it is made of is its implementation's, what it can do is in its table. */
struct _CMPIArgs {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPIArgsFT* ft;
};
struct _CMPIArray {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPIArrayFT* ft;
};
struct _CMPIContext {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPIContextFT* ft;
};
struct _CMPIDateTime {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPIDateTimeFT* ft;
};
struct _CMPIEnumeration {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPIEnumerationFT* ft;
};
struct _CMPIInstance {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPIInstanceFT* ft;
};
struct _CMPIObjectPath {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPIObjectPathFT* ft;
};
struct _CMPIPredicate {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPIPredicateFT* ft;
};
struct _CMPIResult {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPIResultFT* ft;
};
struct _CMPISelectCond {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPISelectCondFT* ft;
};
struct _CMPISelectExp {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPISelectExpFT* ft;
};
struct _CMPIString {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPIStringFT* ft;
};
struct _CMPISubCond {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPISubCondFT* ft;
};

/* What a provider library hands to the object manager. */
struct _CMPIAssociationMI {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPIAssociationMIFT* ft;
};
struct _CMPIIndicationMI {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPIIndicationMIFT* ft;
};
struct _CMPIInstanceMI {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPIInstanceMIFT* ft;
};
struct _CMPIMethodMI {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPIMethodMIFT* ft;
};

/* The object manager, as a provider sees it. */
struct _CMPIBroker {
    CMPI_CONST void* hdl;
    CMPI_CONST CMPIBrokerFT* bft;
    CMPI_CONST CMPIBrokerEncFT* eft;
    CMPI_CONST CMPIBrokerExtFT* xft;
    CMPI_CONST CMPIBrokerMemFT* mft;
};

/* Method arguments. */
struct _CMPIArgsFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIArgs*);
    CMPIArgs* (*clone)(const CMPIArgs*, CMPIStatus*);
    CMPIStatus (*addArg)(const CMPIArgs*, const char*, const CMPIValue*, const CMPIType);
    CMPIData (*getArg)(const CMPIArgs*, const char*, CMPIStatus*);
    CMPIData (*getArgAt)(const CMPIArgs*, CMPICount, CMPIString**, CMPIStatus*);
    CMPICount (*getArgCount)(const CMPIArgs*, CMPIStatus*);
};

/* Arrays. */
struct _CMPIArrayFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIArray*);
    CMPIArray* (*clone)(const CMPIArray*, CMPIStatus*);
    CMPICount (*getSize)(const CMPIArray*, CMPIStatus*);
    CMPIType (*getSimpleType)(const CMPIArray*, CMPIStatus*);
    CMPIData (*getElementAt)(const CMPIArray*, CMPICount, CMPIStatus*);
    CMPIStatus (*setElementAt)(const CMPIArray*, CMPICount, const CMPIValue*, CMPIType);
};

/* Association provider. */
struct _CMPIAssociationMIFT {
    CMPIVersion ftVersion;
    int miVersion;
    const char* miName;
    CMPIStatus (*cleanup)(CMPIAssociationMI*, const CMPIContext*, CMPIBoolean);
    CMPIStatus (*associators)(CMPIAssociationMI*, const CMPIContext*, const CMPIResult*,
                              const CMPIObjectPath*, const char*, const char*, const char*, const char*,
                              const char**);
    CMPIStatus (*associatorNames)(CMPIAssociationMI*, const CMPIContext*, const CMPIResult*,
                                  const CMPIObjectPath*, const char*, const char*, const char*, const char*);
    CMPIStatus (*references)(CMPIAssociationMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                             const char*, const char*, const char**);
    CMPIStatus (*referenceNames)(CMPIAssociationMI*, const CMPIContext*, const CMPIResult*,
                                 const CMPIObjectPath*, const char*, const char*);
#if CMPI_VERSION >= CMPIVersion210
    CMPIStatus (*associatorsFiltered)(CMPIAssociationMI*, const CMPIContext*, const CMPIResult*,
                                      const CMPIObjectPath*, const char*, const char*, const char*,
                                      const char*, const char**, const char*, const char*, CMPIBoolean);
    CMPIStatus (*referencesFiltered)(CMPIAssociationMI*, const CMPIContext*, const CMPIResult*,
                                     const CMPIObjectPath*, const char*, const char*, const char**,
                                     const char*, const char*, CMPIBoolean);
#endif
};

/* Broker: making objects. */
struct _CMPIBrokerEncFT {
    CMPIVersion ftVersion;
    CMPIInstance* (*newInstance)(const CMPIBroker*, const CMPIObjectPath*, CMPIStatus*);
    CMPIObjectPath* (*newObjectPath)(const CMPIBroker*, const char*, const char*, CMPIStatus*);
    CMPIArgs* (*newArgs)(const CMPIBroker*, CMPIStatus*);
    CMPIString* (*newString)(const CMPIBroker*, const char*, CMPIStatus*);
    CMPIArray* (*newArray)(const CMPIBroker*, CMPICount, CMPIType, CMPIStatus*);
    CMPIDateTime* (*newDateTime)(const CMPIBroker*, CMPIStatus*);
    CMPIDateTime* (*newDateTimeFromBinary)(const CMPIBroker*, CMPIUint64, CMPIBoolean, CMPIStatus*);
    CMPIDateTime* (*newDateTimeFromChars)(const CMPIBroker*, const char*, CMPIStatus*);
    CMPISelectExp* (*newSelectExp)(const CMPIBroker*, const char*, const char*, CMPIArray**, CMPIStatus*);
    CMPIBoolean (*classPathIsA)(const CMPIBroker*, const CMPIObjectPath*, const char*, CMPIStatus*);
    CMPIString* (*toString)(const CMPIBroker*, const void*, CMPIStatus*);
    CMPIBoolean (*isOfType)(const CMPIBroker*, const void*, const char*, CMPIStatus*);
    CMPIString* (*getType)(const CMPIBroker*, const void*, CMPIStatus*);
    CMPIString* (*getMessage)(const CMPIBroker*, const char*, const char*, CMPIStatus*, CMPICount, ...);
    CMPIStatus (*logMessage)(const CMPIBroker*, CMPISeverity, const char*, const char*, const CMPIString*);
    CMPIStatus (*trace)(const CMPIBroker*, CMPILevel, const char*, const char*, const CMPIString*);
#if CMPI_VERSION >= CMPIVersion200
    CMPIError* (*newCMPIError)(const CMPIBroker*, const char*, const char*, const char*,
                               const CMPIErrorSeverity, const CMPIErrorProbableCause, const CMPIrc,
                               CMPIStatus*);
    CMPIStatus (*openMessageFile)(const CMPIBroker*, const char*, CMPIMsgFileHandle*);
    CMPIStatus (*closeMessageFile)(const CMPIBroker*, const CMPIMsgFileHandle);
    CMPIString* (*getMessage2)(const CMPIBroker*, const char*, const CMPIMsgFileHandle, const char*,
                               CMPIStatus*, CMPICount, ...);
#endif
#if CMPI_VERSION >= CMPIVersion210
    CMPIPropertyList* (*newPropertyList)(const CMPIBroker*, const char**, CMPIStatus*);
    CMPIString* (*newStringCP)(const CMPIBroker*, const char*, const CMPICodepageID, CMPIStatus*);
    CMPIEnumerationFilter* (*newEnumerationFilter)(const CMPIBroker*, const char*, const char*, CMPIStatus*);
#endif
};

/* Broker: operating system services. */
struct _CMPIBrokerExtFT {
    CMPIVersion ftVersion;
    char* (*resolveFileName)(const char*);
    void* (*newThread)(CMPIThreadFunc, void*, int);
    int (*joinThread)(void*, void**);
    int (*exitThread)(void*);
    int (*cancelThread)(void*);
    int (*threadSleep)(CMPIUint32);
    int (*threadOnce)(int*, CMPIThreadOnceFunc);
    int (*createThreadKey)(unsigned int*, CMPIThreadKeyCleanupFunc);
    int (*destroyThreadKey)(unsigned int);
    void* (*getThreadSpecific)(unsigned int);
    int (*setThreadSpecific)(unsigned int, void*);
    void* (*newMutex)(int);
    void (*destroyMutex)(void*);
    void (*lockMutex)(void*);
    void (*unlockMutex)(void*);
    void* (*newCondition)(int);
    void (*destroyCondition)(void*);
    int (*condWait)(void*, void*);
    int (*timedCondWait)(void*, void*, struct timespec*);
    int (*signalCondition)(void*);
#if CMPI_VERSION >= CMPIVersion210
    int (*destroyMutex2)(void*);
    int (*lockMutex2)(void*);
    int (*unlockMutex2)(void*);
    int (*destroyCondition2)(void*);
#endif
};

/* Broker: requests to the object manager. */
struct _CMPIBrokerFT {
    unsigned int brokerCapabilities;
    CMPIVersion brokerVersion;
    const char* brokerName;
    CMPIContext* (*prepareAttachThread)(const CMPIBroker*, const CMPIContext*);
    CMPIStatus (*attachThread)(const CMPIBroker*, const CMPIContext*);
    CMPIStatus (*detachThread)(const CMPIBroker*, const CMPIContext*);
    CMPIStatus (*deliverIndication)(const CMPIBroker*, const CMPIContext*, const char*, const CMPIInstance*);
    CMPIEnumeration* (*enumerateInstanceNames)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                               CMPIStatus*);
    CMPIInstance* (*getInstance)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char**,
                                 CMPIStatus*);
    CMPIObjectPath* (*createInstance)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                      const CMPIInstance*, CMPIStatus*);
    CMPIStatus (*modifyInstance)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                 const CMPIInstance*, const char**);
    CMPIStatus (*deleteInstance)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*);
    CMPIEnumeration* (*execQuery)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                                  const char*, CMPIStatus*);
    CMPIEnumeration* (*enumerateInstances)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                           const char**, CMPIStatus*);
    CMPIEnumeration* (*associators)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                                    const char*, const char*, const char*, const char**, CMPIStatus*);
    CMPIEnumeration* (*associatorNames)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                        const char*, const char*, const char*, const char*, CMPIStatus*);
    CMPIEnumeration* (*references)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                                   const char*, const char**, CMPIStatus*);
    CMPIEnumeration* (*referenceNames)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                       const char*, const char*, CMPIStatus*);
    CMPIData (*invokeMethod)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                             const CMPIArgs*, CMPIArgs*, CMPIStatus*);
    CMPIStatus (*setProperty)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                              const CMPIValue*, CMPIType);
    CMPIData (*getProperty)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*, const char*,
                            CMPIStatus*);
#if CMPI_VERSION >= CMPIVersion210
    CMPIEnumeration* (*enumerateInstancesFiltered)(const CMPIBroker*, const CMPIContext*,
                                                   const CMPIObjectPath*, const char**, const char*,
                                                   const char*, CMPIStatus*);
    CMPIEnumeration* (*associatorsFiltered)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                            const char*, const char*, const char*, const char*, const char**,
                                            const char*, const char*, CMPIStatus*);
    CMPIEnumeration* (*referencesFiltered)(const CMPIBroker*, const CMPIContext*, const CMPIObjectPath*,
                                           const char*, const char*, const char**, const char*, const char*,
                                           CMPIStatus*);
#endif
};

/* Broker: memory. */
struct _CMPIBrokerMemFT {
    CMPIVersion ftVersion;
    CMPIGcStat* (*mark)(const CMPIBroker*, CMPIStatus*);
    CMPIStatus (*release)(const CMPIBroker*, const CMPIGcStat*);
    void* (*cmpiMalloc)(const CMPIBroker*, size_t);
    void* (*cmpiCalloc)(const CMPIBroker*, size_t, size_t);
    void* (*cmpiRealloc)(const CMPIBroker*, void*, size_t);
    char* (*cmpiStrDup)(const CMPIBroker*, const char*);
    void (*cmpiFree)(const CMPIBroker*, void*);
    void (*freeInstance)(const CMPIBroker*, CMPIInstance*);
    void (*freeObjectPath)(const CMPIBroker*, CMPIObjectPath*);
    void (*freeArgs)(const CMPIBroker*, CMPIArgs*);
    void (*freeString)(const CMPIBroker*, CMPIString*);
    void (*freeArray)(const CMPIBroker*, CMPIArray*);
    void (*freeDateTime)(const CMPIBroker*, CMPIDateTime*);
    void (*freeSelectExp)(const CMPIBroker*, CMPISelectExp*);
    void (*freeChars)(const CMPIBroker*, char*);
};

/* Request context. */
struct _CMPIContextFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIContext*);
    CMPIContext* (*clone)(const CMPIContext*, CMPIStatus*);
    CMPIData (*getEntry)(const CMPIContext*, const char*, CMPIStatus*);
    CMPIData (*getEntryAt)(const CMPIContext*, CMPICount, CMPIString**, CMPIStatus*);
    CMPICount (*getEntryCount)(const CMPIContext*, CMPIStatus*);
    CMPIStatus (*addEntry)(const CMPIContext*, const char*, const CMPIValue*, const CMPIType);
};

/* Points in time and intervals. */
struct _CMPIDateTimeFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIDateTime*);
    CMPIDateTime* (*clone)(const CMPIDateTime*, CMPIStatus*);
    CMPIUint64 (*getBinaryFormat)(const CMPIDateTime*, CMPIStatus*);
    CMPIString* (*getStringFormat)(const CMPIDateTime*, CMPIStatus*);
    CMPIBoolean (*isInterval)(const CMPIDateTime*, CMPIStatus*);
};

/* Enumerations. */
struct _CMPIEnumerationFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIEnumeration*);
    CMPIEnumeration* (*clone)(const CMPIEnumeration*, CMPIStatus*);
    CMPIData (*getNext)(const CMPIEnumeration*, CMPIStatus*);
    CMPIBoolean (*hasNext)(const CMPIEnumeration*, CMPIStatus*);
    CMPIArray* (*toArray)(const CMPIEnumeration*, CMPIStatus*);
};

/* Indication provider. */
struct _CMPIIndicationMIFT {
    CMPIVersion ftVersion;
    int miVersion;
    const char* miName;
    CMPIStatus (*cleanup)(CMPIIndicationMI*, const CMPIContext*, CMPIBoolean);
    CMPIStatus (*authorizeFilter)(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*, const char*,
                                  const CMPIObjectPath*, const char*);
#if CMPI_VERSION >= CMPIVersion200
    CMPIStatus (*mustPoll)(CMPIIndicationMI*, const CMPIContext*, const CMPIResult*, const CMPISelectExp*,
                           const char*, const CMPIObjectPath*);
#else
    CMPIStatus (*mustPoll)(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*, const char*,
                           const CMPIObjectPath*);
#endif
    CMPIStatus (*activateFilter)(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*, const char*,
                                 const CMPIObjectPath*, CMPIBoolean);
    CMPIStatus (*deActivateFilter)(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*, const char*,
                                   const CMPIObjectPath*, CMPIBoolean);
    CMPIStatus (*enableIndications)(CMPIIndicationMI*, const CMPIContext*);
    CMPIStatus (*disableIndications)(CMPIIndicationMI*, const CMPIContext*);
#if CMPI_VERSION >= CMPIVersion210
    CMPIStatus (*authorizeFilterCollection)(CMPIIndicationMI*, const CMPIContext*, const CMPIInstance*);
    CMPIStatus (*activateFilterCollection)(CMPIIndicationMI*, const CMPIContext*, const CMPIInstance*,
                                           CMPIBoolean);
    CMPIStatus (*deActivateFilterCollection)(CMPIIndicationMI*, const CMPIContext*, const CMPIInstance*,
                                             CMPIBoolean);
#endif
};

/* Instances. */
struct _CMPIInstanceFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIInstance*);
    CMPIInstance* (*clone)(const CMPIInstance*, CMPIStatus*);
    CMPIData (*getProperty)(const CMPIInstance*, const char*, CMPIStatus*);
    CMPIData (*getPropertyAt)(const CMPIInstance*, CMPICount, CMPIString**, CMPIStatus*);
    CMPICount (*getPropertyCount)(const CMPIInstance*, CMPIStatus*);
    CMPIStatus (*setProperty)(const CMPIInstance*, const char*, const CMPIValue*, CMPIType);
    CMPIObjectPath* (*getObjectPath)(const CMPIInstance*, CMPIStatus*);
    CMPIStatus (*setPropertyFilter)(const CMPIInstance*, const char**, const char**);
    CMPIStatus (*setObjectPath)(const CMPIInstance*, const CMPIObjectPath*);
#if CMPI_VERSION >= CMPIVersion200
    CMPIStatus (*setPropertyWithOrigin)(const CMPIInstance*, const char*, const CMPIValue*, const CMPIType,
                                        const char*);
#endif
};

/* Instance provider. */
struct _CMPIInstanceMIFT {
    CMPIVersion ftVersion;
    int miVersion;
    const char* miName;
    CMPIStatus (*cleanup)(CMPIInstanceMI*, const CMPIContext*, CMPIBoolean);
    CMPIStatus (*enumerateInstanceNames)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                         const CMPIObjectPath*);
    CMPIStatus (*enumerateInstances)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                     const CMPIObjectPath*, const char**);
    CMPIStatus (*getInstance)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                              const char**);
    CMPIStatus (*createInstance)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                 const CMPIObjectPath*, const CMPIInstance*);
    CMPIStatus (*modifyInstance)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                 const CMPIObjectPath*, const CMPIInstance*, const char**);
    CMPIStatus (*deleteInstance)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                 const CMPIObjectPath*);
    CMPIStatus (*execQuery)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                            const char*, const char*);
#if CMPI_VERSION >= CMPIVersion210
    CMPIStatus (*enumerateInstancesFiltered)(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*,
                                             const CMPIObjectPath*, const char**, const char*, const char*,
                                             CMPIStatus*);
#endif
};

/* Method provider. */
struct _CMPIMethodMIFT {
    CMPIVersion ftVersion;
    int miVersion;
    const char* miName;
    CMPIStatus (*cleanup)(CMPIMethodMI*, const CMPIContext*, CMPIBoolean);
    CMPIStatus (*invokeMethod)(CMPIMethodMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                               const char*, const CMPIArgs*, CMPIArgs*);
};

/* Object paths. */
struct _CMPIObjectPathFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIObjectPath*);
    CMPIObjectPath* (*clone)(const CMPIObjectPath*, CMPIStatus*);
    CMPIStatus (*setNameSpace)(const CMPIObjectPath*, const char*);
    CMPIString* (*getNameSpace)(const CMPIObjectPath*, CMPIStatus*);
    CMPIStatus (*setHostname)(const CMPIObjectPath*, const char*);
    CMPIString* (*getHostname)(const CMPIObjectPath*, CMPIStatus*);
    CMPIStatus (*setClassName)(const CMPIObjectPath*, const char*);
    CMPIString* (*getClassName)(const CMPIObjectPath*, CMPIStatus*);
    CMPIStatus (*addKey)(const CMPIObjectPath*, const char*, const CMPIValue*, const CMPIType);
    CMPIData (*getKey)(const CMPIObjectPath*, const char*, CMPIStatus*);
    CMPIData (*getKeyAt)(const CMPIObjectPath*, CMPICount, CMPIString**, CMPIStatus*);
    CMPICount (*getKeyCount)(const CMPIObjectPath*, CMPIStatus*);
    CMPIStatus (*setNameSpaceFromObjectPath)(const CMPIObjectPath*, const CMPIObjectPath*);
    CMPIStatus (*setHostAndNameSpaceFromObjectPath)(const CMPIObjectPath*, const CMPIObjectPath*);
    CMPIData (*getClassQualifier)(const CMPIObjectPath*, const char*, CMPIStatus*);
    CMPIData (*getPropertyQualifier)(const CMPIObjectPath*, const char*, const char*, CMPIStatus*);
    CMPIData (*getMethodQualifier)(const CMPIObjectPath*, const char*, const char*, CMPIStatus*);
    CMPIData (*getParameterQualifier)(const CMPIObjectPath*, const char*, const char*, const char*,
                                      CMPIStatus*);
    CMPIString* (*toString)(const CMPIObjectPath*, CMPIStatus*);
};

/* Results of a request. */
struct _CMPIResultFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIResult*);
    CMPIResult* (*clone)(const CMPIResult*, CMPIStatus*);
    CMPIStatus (*returnData)(const CMPIResult*, const CMPIValue*, const CMPIType);
    CMPIStatus (*returnInstance)(const CMPIResult*, const CMPIInstance*);
    CMPIStatus (*returnObjectPath)(const CMPIResult*, const CMPIObjectPath*);
    CMPIStatus (*returnDone)(const CMPIResult*);
#if CMPI_VERSION >= CMPIVersion200
    CMPIStatus (*returnError)(const CMPIResult*, const CMPIError*);
#endif
};

/* Select expressions. */
struct _CMPISelectExpFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPISelectExp*);
    CMPISelectExp* (*clone)(const CMPISelectExp*, CMPIStatus*);
    CMPIBoolean (*evaluate)(const CMPISelectExp*, const CMPIInstance*, CMPIStatus*);
    CMPIString* (*getString)(const CMPISelectExp*, CMPIStatus*);
    CMPISelectCond* (*getDOC)(const CMPISelectExp*, CMPIStatus*);
    CMPISelectCond* (*getCOD)(const CMPISelectExp*, CMPIStatus*);
    CMPIBoolean (*evaluateUsingAccessor)(const CMPISelectExp*, CMPIAccessor*, void*, CMPIStatus*);
};

/* Strings. */
struct _CMPIStringFT {
    CMPIVersion ftVersion;
    CMPIStatus (*release)(CMPIString*);
    CMPIString* (*clone)(const CMPIString*, CMPIStatus*);
    const char* (*getCharPtr)(const CMPIString*, CMPIStatus*);
#if CMPI_VERSION >= CMPIVersion210
    char* (*newCharsCP)(const CMPIString*, const CMPICodepageID, CMPIStatus*);
#endif
};

#ifdef __cplusplus
}
#endif

#endif
