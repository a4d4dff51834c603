/* A CMPI instance provider that serves CIM_NumericSensor with what libProviderHelper knows of the BMC. It reads, and
 * refuses changes. */
#include <provider_helper/provider_helper.h>

#include <cmpimacs.h>

static const CMPIBroker* broker;

/* The library has set the status; a result is closed by whoever has it. */
static CMPIStatus finish(const CMPIResult* result, CMPIStatus status) {
    if (status.rc == CMPI_RC_OK)
        CMReturnDone(result);
    return status;
}

static CMPIStatus sensorsEnumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context,
                                           const CMPIResult* result, const CMPIObjectPath* path) {
    CMPIStatus status = {CMPI_RC_OK, NULL};
    (void)mi;
    PH_EIN_NumericSensor(broker, context, path, result, &status);
    return finish(result, status);
}

static CMPIStatus sensorsEnumInstances(CMPIInstanceMI* mi, const CMPIContext* context,
                                       const CMPIResult* result, const CMPIObjectPath* path,
                                       const char** properties) {
    CMPIStatus status = {CMPI_RC_OK, NULL};
    (void)mi;
    PH_EI_NumericSensor(broker, context, path, properties, result, &status);
    return finish(result, status);
}

static CMPIStatus sensorsGetInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                                     const CMPIObjectPath* path, const char** properties) {
    CMPIStatus status = {CMPI_RC_OK, NULL};
    (void)mi;
    PH_GI_NumericSensor(broker, context, path, properties, result, &status);
    return finish(result, status);
}

static CMPIStatus refuse(void) {
    CMPIStatus status = {CMPI_RC_ERR_NOT_SUPPORTED, NULL};
    return status;
}

static CMPIStatus sensorsCreateInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                        const CMPIResult* result, const CMPIObjectPath* path,
                                        const CMPIInstance* instance) {
    (void)mi, (void)context, (void)result, (void)path, (void)instance;
    return refuse();
}

static CMPIStatus sensorsModifyInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                        const CMPIResult* result, const CMPIObjectPath* path,
                                        const CMPIInstance* instance, const char** properties) {
    (void)mi, (void)context, (void)result, (void)path, (void)instance, (void)properties;
    return refuse();
}

static CMPIStatus sensorsDeleteInstance(CMPIInstanceMI* mi, const CMPIContext* context,
                                        const CMPIResult* result, const CMPIObjectPath* path) {
    (void)mi, (void)context, (void)result, (void)path;
    return refuse();
}

static CMPIStatus sensorsExecQuery(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                                   const CMPIObjectPath* path, const char* query, const char* language) {
    (void)mi, (void)context, (void)result, (void)path, (void)query, (void)language;
    return refuse();
}

static CMPIStatus sensorsCleanup(CMPIInstanceMI* mi, const CMPIContext* context, CMPIBoolean terminating) {
    CMPIStatus status = {CMPI_RC_OK, NULL};
    (void)mi, (void)context, (void)terminating;
    return status;
}

/* The name is that of the registration; phctl asks a module for the provider of this one. */
CMInstanceMIStub(sensors, ProviderHelper, broker, PH_Init(broker, ctx, "ProviderHelper", rc))
