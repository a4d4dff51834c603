// A provider module for --module and --wait: its methods start jobs that end after they were asked for so
// often.
//
// InvokeMethod "<method>" with the strings Polls and End returns 4096, or 2 for the method "Refuse", and in
// Job a CIM_ConcreteJob whose InstanceID is "<Polls>:<End>"; GetInstance of it has the JobState 4, after that
// many calls End.
#include <cmpimacs.h>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

const CMPIBroker* broker;

const char* argument(const CMPIArgs* in, const char* name) {
    return CMGetCharPtr(CMGetArg(in, name, nullptr).value.string);
}

CMPIStatus invoke(CMPIMethodMI*, const CMPIContext*, const CMPIResult* result, const CMPIObjectPath* ref,
                  const char* method, const CMPIArgs* in, CMPIArgs* out) {
    const std::string id = std::string(argument(in, "Polls")) + ':' + argument(in, "End");
    CMPIValue job{};
    job.ref = CMNewObjectPath(broker, CMGetCharPtr(CMGetNameSpace(ref, nullptr)), "CIM_ConcreteJob", nullptr);
    CMAddKey(job.ref, "InstanceID", reinterpret_cast<const CMPIValue*>(id.c_str()), CMPI_chars);
    CMAddArg(out, "Job", &job, CMPI_ref);
    const CMPIValue value{.uint32 = std::strcmp(method, "Refuse") == 0 ? 2U : 4096U};
    CMReturnData(result, &value, CMPI_uint32);
    return CMReturnDone(result);
}

CMPIStatus getInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                       const CMPIObjectPath* ref, const char**) {
    static int calls = 0;
    int polls = 0;
    unsigned end = 0;
    std::sscanf(CMGetCharPtr(CMGetKey(ref, "InstanceID", nullptr).value.string), "%d:%u", &polls, &end);
    std::puts("a line that is not phctl's");
    CMPIInstance* job = CMNewInstance(broker, ref, nullptr);
    const CMPIValue state{.uint16 = static_cast<CMPIUint16>(calls++ < polls ? 4 : end)};
    CMSetProperty(job, "JobState", &state, CMPI_uint16);
    CMReturnInstance(result, job);
    return CMReturnDone(result);
}

CMPIStatus cleanup(CMPIInstanceMI*, const CMPIContext*, CMPIBoolean) {
    return {CMPI_RC_OK, nullptr};
}

CMPIStatus methodCleanup(CMPIMethodMI*, const CMPIContext*, CMPIBoolean) {
    return {CMPI_RC_OK, nullptr};
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) CMPIInstanceMI*
ProviderHelper_Create_InstanceMI(const CMPIBroker* theBroker, const CMPIContext*, CMPIStatus*) {
    static const CMPIInstanceMIFT functions{.ftVersion = CMPICurrentVersion,
                                            .miVersion = CMPICurrentVersion,
                                            .miName = "Job",
                                            .cleanup = cleanup,
                                            .enumerateInstanceNames = nullptr,
                                            .enumerateInstances = nullptr,
                                            .getInstance = getInstance,
                                            .createInstance = nullptr,
                                            .modifyInstance = nullptr,
                                            .deleteInstance = nullptr,
                                            .execQuery = nullptr,
                                            .enumerateInstancesFiltered = nullptr};
    static CMPIInstanceMI mi{nullptr, &functions};
    broker = theBroker;
    return &mi;
}

__attribute__((visibility("default"))) CMPIMethodMI*
ProviderHelper_Create_MethodMI(const CMPIBroker* theBroker, const CMPIContext*, CMPIStatus*) {
    static const CMPIMethodMIFT functions{.ftVersion = CMPICurrentVersion,
                                          .miVersion = CMPICurrentVersion,
                                          .miName = "Job",
                                          .cleanup = methodCleanup,
                                          .invokeMethod = invoke};
    static CMPIMethodMI mi{nullptr, &functions};
    broker = theBroker;
    return &mi;
}

} // extern "C"
