/* CMPI: shorthand for the calls through the function tables, and the entry points of provider libraries. */
#ifndef CMPIMACS_H
#define CMPIMACS_H

#include "cmpidt.h"
#include "cmpift.h"

/* ---- Status -------------------------------------------------------------------------------------------- */

#define CMReturn(code)                                                                                       \
    do {                                                                                                     \
        CMPIStatus cmpiStatus_ = {(code), NULL};                                                             \
        return cmpiStatus_;                                                                                  \
    } while (0)
#define CMReturnWithString(code, string)                                                                     \
    do {                                                                                                     \
        CMPIStatus cmpiStatus_ = {(code), (string)};                                                         \
        return cmpiStatus_;                                                                                  \
    } while (0)
#define CMReturnWithChars(broker, code, chars)                                                               \
    do {                                                                                                     \
        CMPIStatus cmpiStatus_ = {(code), CMNewString((broker), (chars), NULL)};                             \
        return cmpiStatus_;                                                                                  \
    } while (0)
#define CMSetStatus(status, code)                                                                            \
    do {                                                                                                     \
        (status)->rc = (code);                                                                               \
        (status)->msg = NULL;                                                                                \
    } while (0)
#define CMSetStatusWithString(status, code, string)                                                          \
    do {                                                                                                     \
        (status)->rc = (code);                                                                               \
        (status)->msg = (string);                                                                            \
    } while (0)
#define CMSetStatusWithChars(broker, status, code, chars)                                                    \
    do {                                                                                                     \
        (status)->rc = (code);                                                                               \
        (status)->msg = CMNewString((broker), (chars), NULL);                                                \
    } while (0)
#define CMIsNullObject(object) ((object) == NULL || (object)->hdl == NULL)
#define CMIsNullValue(data) (((data).state & CMPI_nullValue) != 0)
#define CMIsKeyValue(data) (((data).state & CMPI_keyValue) != 0)
#define CMIsArray(data) (((data).type & CMPI_ARRAY) != 0)
#define CMClone(object, status) ((object)->ft->clone((object), (status)))
#define CMRelease(object) ((object)->ft->release((object)))

/* ---- Making objects ------------------------------------------------------------------------------------ */

#define CMNewInstance(broker, path, status) ((broker)->eft->newInstance((broker), (path), (status)))
#define CMNewObjectPath(broker, nameSpace, className, status)                                                \
    ((broker)->eft->newObjectPath((broker), (nameSpace), (className), (status)))
#define CMNewArgs(broker, status) ((broker)->eft->newArgs((broker), (status)))
#define CMNewString(broker, chars, status) ((broker)->eft->newString((broker), (chars), (status)))
#define CMNewArray(broker, size, type, status) ((broker)->eft->newArray((broker), (size), (type), (status)))
#define CMNewDateTime(broker, status) ((broker)->eft->newDateTime((broker), (status)))
#define CMNewDateTimeFromBinary(broker, microseconds, interval, status)                                      \
    ((broker)->eft->newDateTimeFromBinary((broker), (microseconds), (interval), (status)))
#define CMNewDateTimeFromChars(broker, chars, status)                                                        \
    ((broker)->eft->newDateTimeFromChars((broker), (chars), (status)))
#define CMNewSelectExp(broker, query, language, projection, status)                                          \
    ((broker)->eft->newSelectExp((broker), (query), (language), (projection), (status)))
#define CMClassPathIsA(broker, path, type, status)                                                           \
    ((broker)->eft->classPathIsA((broker), (path), (type), (status)))
#define CMObjectIsA(broker, object, type, status)                                                            \
    ((broker)->eft->isOfType((broker), (object), (type), (status)))
#define CDToString(broker, object, status) ((broker)->eft->toString((broker), (object), (status)))
#define CDGetType(broker, object, status) ((broker)->eft->getType((broker), (object), (status)))
#define CMLogMessage(broker, severity, id, text, string)                                                     \
    ((broker)->eft->logMessage((broker), (severity), (id), (text), (string)))
#define CMTraceMessage(broker, level, component, text, string)                                               \
    ((broker)->eft->trace((broker), (level), (component), (text), (string)))

/* ---- Strings and points in time ------------------------------------------------------------------------ */

#define CMGetCharsPtr(string, status) ((string)->ft->getCharPtr((string), (status)))
#define CMGetCharPtr(string) ((string)->ft->getCharPtr((string), NULL))
#define CMGetBinaryFormat(dateTime, status) ((dateTime)->ft->getBinaryFormat((dateTime), (status)))
#define CMGetStringFormat(dateTime, status) ((dateTime)->ft->getStringFormat((dateTime), (status)))
#define CMIsInterval(dateTime, status) ((dateTime)->ft->isInterval((dateTime), (status)))

/* ---- Arrays and enumerations --------------------------------------------------------------------------- */

#define CMGetArrayCount(array, status) ((array)->ft->getSize((array), (status)))
#define CMGetArrayType(array, status) ((array)->ft->getSimpleType((array), (status)))
#define CMGetArrayElementAt(array, index, status) ((array)->ft->getElementAt((array), (index), (status)))
#define CMSetArrayElementAt(array, index, value, type)                                                       \
    ((array)->ft->setElementAt((array), (index), (value), (type)))
#define CMGetNext(enumeration, status) ((enumeration)->ft->getNext((enumeration), (status)))
#define CMHasNext(enumeration, status) ((enumeration)->ft->hasNext((enumeration), (status)))
#define CMToArray(enumeration, status) ((enumeration)->ft->toArray((enumeration), (status)))

/* ---- Instances ----------------------------------------------------------------------------------------- */

#define CMGetProperty(instance, name, status) ((instance)->ft->getProperty((instance), (name), (status)))
#define CMGetPropertyAt(instance, index, name, status)                                                       \
    ((instance)->ft->getPropertyAt((instance), (index), (name), (status)))
#define CMGetPropertyCount(instance, status) ((instance)->ft->getPropertyCount((instance), (status)))
#define CMSetProperty(instance, name, value, type)                                                           \
    ((instance)->ft->setProperty((instance), (name), (value), (type)))
#define CMGetObjectPath(instance, status) ((instance)->ft->getObjectPath((instance), (status)))
#define CMSetObjectPath(instance, path) ((instance)->ft->setObjectPath((instance), (path)))
#define CMSetPropertyFilter(instance, properties, keys)                                                      \
    ((instance)->ft->setPropertyFilter((instance), (properties), (keys)))

/* ---- Object paths -------------------------------------------------------------------------------------- */

#define CMSetNameSpace(path, nameSpace) ((path)->ft->setNameSpace((path), (nameSpace)))
#define CMGetNameSpace(path, status) ((path)->ft->getNameSpace((path), (status)))
#define CMSetHostname(path, name) ((path)->ft->setHostname((path), (name)))
#define CMGetHostname(path, status) ((path)->ft->getHostname((path), (status)))
#define CMSetClassName(path, name) ((path)->ft->setClassName((path), (name)))
#define CMGetClassName(path, status) ((path)->ft->getClassName((path), (status)))
#define CMAddKey(path, name, value, type) ((path)->ft->addKey((path), (name), (value), (type)))
#define CMGetKey(path, name, status) ((path)->ft->getKey((path), (name), (status)))
#define CMGetKeyAt(path, index, name, status) ((path)->ft->getKeyAt((path), (index), (name), (status)))
#define CMGetKeyCount(path, status) ((path)->ft->getKeyCount((path), (status)))
#define CMSetNameSpaceFromObjectPath(path, source) ((path)->ft->setNameSpaceFromObjectPath((path), (source)))
#define CMSetHostAndNameSpaceFromObjectPath(path, source)                                                    \
    ((path)->ft->setHostAndNameSpaceFromObjectPath((path), (source)))

/* ---- Arguments, context, results ----------------------------------------------------------------------- */

#define CMAddArg(args, name, value, type) ((args)->ft->addArg((args), (name), (value), (type)))
#define CMGetArg(args, name, status) ((args)->ft->getArg((args), (name), (status)))
#define CMGetArgAt(args, index, name, status) ((args)->ft->getArgAt((args), (index), (name), (status)))
#define CMGetArgCount(args, status) ((args)->ft->getArgCount((args), (status)))
#define CMAddContextEntry(context, name, value, type)                                                        \
    ((context)->ft->addEntry((context), (name), (value), (type)))
#define CMGetContextEntry(context, name, status) ((context)->ft->getEntry((context), (name), (status)))
#define CMGetContextEntryAt(context, index, name, status)                                                    \
    ((context)->ft->getEntryAt((context), (index), (name), (status)))
#define CMGetContextEntryCount(context, status) ((context)->ft->getEntryCount((context), (status)))
#define CMReturnData(result, value, type) ((result)->ft->returnData((result), (value), (type)))
#define CMReturnInstance(result, instance) ((result)->ft->returnInstance((result), (instance)))
#define CMReturnObjectPath(result, path) ((result)->ft->returnObjectPath((result), (path)))
#define CMReturnDone(result) ((result)->ft->returnDone((result)))

/* ---- Requests to the object manager -------------------------------------------------------------------- */

#define CBPrepareAttachThread(broker, context) ((broker)->bft->prepareAttachThread((broker), (context)))
#define CBAttachThread(broker, context) ((broker)->bft->attachThread((broker), (context)))
#define CBDetachThread(broker, context) ((broker)->bft->detachThread((broker), (context)))
#define CBDeliverIndication(broker, context, nameSpace, indication)                                          \
    ((broker)->bft->deliverIndication((broker), (context), (nameSpace), (indication)))
#define CBEnumInstanceNames(broker, context, path, status)                                                   \
    ((broker)->bft->enumerateInstanceNames((broker), (context), (path), (status)))
#define CBEnumInstances(broker, context, path, properties, status)                                           \
    ((broker)->bft->enumerateInstances((broker), (context), (path), (properties), (status)))
#define CBGetInstance(broker, context, path, properties, status)                                             \
    ((broker)->bft->getInstance((broker), (context), (path), (properties), (status)))
#define CBCreateInstance(broker, context, path, instance, status)                                            \
    ((broker)->bft->createInstance((broker), (context), (path), (instance), (status)))
#define CBModifyInstance(broker, context, path, instance, properties)                                        \
    ((broker)->bft->modifyInstance((broker), (context), (path), (instance), (properties)))
#define CBDeleteInstance(broker, context, path) ((broker)->bft->deleteInstance((broker), (context), (path)))
#define CBAssociators(broker, context, path, assocClass, resultClass, role, resultRole, properties, status)  \
    ((broker)->bft->associators((broker), (context), (path), (assocClass), (resultClass), (role),            \
                                (resultRole), (properties), (status)))
#define CBAssociatorNames(broker, context, path, assocClass, resultClass, role, resultRole, status)          \
    ((broker)->bft->associatorNames((broker), (context), (path), (assocClass), (resultClass), (role),        \
                                    (resultRole), (status)))
#define CBReferences(broker, context, path, resultClass, role, properties, status)                           \
    ((broker)->bft->references((broker), (context), (path), (resultClass), (role), (properties), (status)))
#define CBReferenceNames(broker, context, path, resultClass, role, status)                                   \
    ((broker)->bft->referenceNames((broker), (context), (path), (resultClass), (role), (status)))
#define CBInvokeMethod(broker, context, path, method, in, out, status)                                       \
    ((broker)->bft->invokeMethod((broker), (context), (path), (method), (in), (out), (status)))

/* ---- Entry points -------------------------------------------------------------------------------------- */

#ifdef __cplusplus
#define CMPI_EXTERN_C extern "C"
#else
#define CMPI_EXTERN_C
#endif

/* <name>_Create_<kind>MI: hands out the functions of `table`. `hook` runs when the object manager loads the
 * provider, and knows its arguments as brkr, ctx and rc. */
#define CMPI_MI_FACTORY_(kind, table, name, broker, hook)                                                    \
    CMPI_EXTERN_C CMPI##kind##MI* name##_Create_##kind##MI(const CMPIBroker* brkr, const CMPIContext* ctx,   \
                                                           CMPIStatus* rc);                                  \
    CMPI_EXTERN_C CMPI##kind##MI* name##_Create_##kind##MI(const CMPIBroker* brkr, const CMPIContext* ctx,   \
                                                           CMPIStatus* rc) {                                 \
        static CMPI##kind##MI mi = {NULL, &table};                                                           \
        (void)ctx;                                                                                           \
        (void)rc;                                                                                            \
        broker = brkr;                                                                                       \
        hook;                                                                                                \
        return &mi;                                                                                          \
    }

/* The members that 2.1 appended. */
#if CMPI_VERSION >= CMPIVersion210
#define CMPI_NONE_ , NULL
#else
#define CMPI_NONE_
#endif

/* A provider `name` over functions <prefix>EnumInstances and so on. */
#define CMInstanceMIStub(prefix, name, broker, hook)                                                         \
    static CMPIInstanceMIFT prefix##InstanceFunctions_ = {                                                   \
        CMPICurrentVersion,     CMPICurrentVersion,          "instance" #name,                               \
        prefix##Cleanup,        prefix##EnumInstanceNames,   prefix##EnumInstances,                          \
        prefix##GetInstance,    prefix##CreateInstance,      prefix##ModifyInstance,                         \
        prefix##DeleteInstance, prefix##ExecQuery CMPI_NONE_};                                               \
    CMPI_MI_FACTORY_(Instance, prefix##InstanceFunctions_, name, broker, hook)

#define CMMethodMIStub(prefix, name, broker, hook)                                                           \
    static CMPIMethodMIFT prefix##MethodFunctions_ = {CMPICurrentVersion, CMPICurrentVersion,                \
                                                      "method" #name, prefix##MethodCleanup,                 \
                                                      prefix##InvokeMethod};                                 \
    CMPI_MI_FACTORY_(Method, prefix##MethodFunctions_, name, broker, hook)

#define CMAssociationMIStub(prefix, name, broker, hook)                                                      \
    static CMPIAssociationMIFT prefix##AssociationFunctions_ = {                                             \
        CMPICurrentVersion,  CMPICurrentVersion,                                                             \
        "association" #name, prefix##AssociationCleanup,                                                     \
        prefix##Associators, prefix##AssociatorNames,                                                        \
        prefix##References,  prefix##ReferenceNames CMPI_NONE_ CMPI_NONE_};                                  \
    CMPI_MI_FACTORY_(Association, prefix##AssociationFunctions_, name, broker, hook)

#define CMIndicationMIStub(prefix, name, broker, hook)                                                       \
    static CMPIIndicationMIFT prefix##IndicationFunctions_ = {                                               \
        CMPICurrentVersion,        CMPICurrentVersion,                                                       \
        "indication" #name,        prefix##IndicationCleanup,                                                \
        prefix##AuthorizeFilter,   prefix##MustPoll,                                                         \
        prefix##ActivateFilter,    prefix##DeActivateFilter,                                                 \
        prefix##EnableIndications, prefix##DisableIndications CMPI_NONE_ CMPI_NONE_ CMPI_NONE_};             \
    CMPI_MI_FACTORY_(Indication, prefix##IndicationFunctions_, name, broker, hook)

#define CMNoHook

#endif
