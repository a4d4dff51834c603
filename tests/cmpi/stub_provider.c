/* A provider in plain C, made with the macros that providers are made with. */
#include <cmpimacs.h>

const CMPIBroker* stubBroker;

static CMPIStatus refuse(void) {
    CMPIStatus status = {CMPI_RC_ERR_NOT_SUPPORTED, NULL};
    return status;
}

#define UNUSED_4(a, b, c, d) ((void)(a), (void)(b), (void)(c), (void)(d))

static CMPIStatus stubCleanup(CMPIInstanceMI* mi, const CMPIContext* context, CMPIBoolean terminating) {
    UNUSED_4(mi, context, terminating, 0);
    return refuse();
}
static CMPIStatus stubEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context,
                                        const CMPIResult* result, const CMPIObjectPath* path) {
    UNUSED_4(mi, context, result, path);
    return refuse();
}
static CMPIStatus stubEnumInstances(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                                    const CMPIObjectPath* path, const char** properties) {
    (void)properties;
    return stubEnumInstanceNames(mi, context, result, path);
}
#define stubGetInstance stubEnumInstances
static CMPIStatus stubCreateInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                                     const CMPIObjectPath* path, const CMPIInstance* instance) {
    (void)instance;
    return stubEnumInstanceNames(mi, context, result, path);
}
static CMPIStatus stubModifyInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                                     const CMPIObjectPath* path, const CMPIInstance* instance,
                                     const char** properties) {
    (void)instance;
    return stubEnumInstances(mi, context, result, path, properties);
}
#define stubDeleteInstance stubEnumInstanceNames
static CMPIStatus stubExecQuery(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                                const CMPIObjectPath* path, const char* query, const char* language) {
    UNUSED_4(query, language, 0, 0);
    return stubEnumInstanceNames(mi, context, result, path);
}

static CMPIStatus stubMethodCleanup(CMPIMethodMI* mi, const CMPIContext* context, CMPIBoolean terminating) {
    UNUSED_4(mi, context, terminating, 0);
    return refuse();
}
static CMPIStatus stubInvokeMethod(CMPIMethodMI* mi, const CMPIContext* context, const CMPIResult* result,
                                   const CMPIObjectPath* path, const char* method, const CMPIArgs* in,
                                   CMPIArgs* out) {
    UNUSED_4(mi, context, result, path);
    UNUSED_4(method, in, out, 0);
    return refuse();
}

/* The hook knows what the provider is loaded with by the standard's names. */
CMInstanceMIStub(stub, Stub, stubBroker, if (rc != NULL && ctx == NULL && brkr == stubBroker) * rc = refuse())
    CMMethodMIStub(stub, Stub, stubBroker, CMNoHook)
