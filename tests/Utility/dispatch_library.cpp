// Libraries that PH_GetInstArray opens: which one, and what it exports, the build says. Every function
// returns an array with a single text that tells which function it was.
#include <cmpimacs.h>
#include <cstdio>
#include <cstring>

#ifndef OBJECT_MANAGER
static CMPIArray* tell(const CMPIBroker* broker, const char* function) {
    CMPIArray* array = CMNewArray(broker, 1, CMPI_string, nullptr);
    CMSetArrayElementAt(array, 0, reinterpret_cast<const CMPIValue*>(function), CMPI_chars);
    return array;
}
#endif

#define GET_INST_ARRAY(name)                                                                                 \
    extern "C" __attribute__((visibility("default"))) CMPIArray* name(                                       \
        const CMPIObjectPath*, const CMPIBroker* broker, const CMPIContext*, const char** properties) {      \
        return tell(broker, properties != nullptr ? *properties : #name);                                    \
    }

#if defined(OEM_LIBRARY)
GET_INST_ARRAY(PH_OEM_Fan_GetInstArray)
#elif defined(OBJECT_MANAGER)
// Maps classes whose prefix is QOM_ to the library's, and fails or says nothing for two of them.
extern "C" __attribute__((visibility("default"))) int
qom_get_classname_for_arbitrary_prefix(const CMPIBroker*, const CMPIObjectPath* path, char name[256]) {
    const CMPIString* className = CMGetClassName(path, nullptr);
    const char* text = CMGetCharsPtr(className, nullptr);
    std::snprintf(name, 256, "%s", std::strcmp(text, "QOM_Empty") == 0 ? "" : "Sensor");
    return std::strcmp(text, "QOM_Failing") == 0 ? 1 : 0;
}
#else
GET_INST_ARRAY(PH_Fan_GetInstArray)
GET_INST_ARRAY(PH_Pump_GetInstArray)
GET_INST_ARRAY(PH_Sensor_GetInstArray)
GET_INST_ARRAY(PH_HostComputerSystem_GetInstArray)
GET_INST_ARRAY(PH_SPComputerSystem_GetInstArray)

extern "C" __attribute__((visibility("default"))) CMPIArray*
PH_DNSSettingData_GetInstArray(const CMPIObjectPath*, const CMPIBroker*, const CMPIContext*, const char**) {
    return nullptr;
}
#endif
