// What the platform offers: its functions and features, read once.
#include "provider_helper/utility.h"

PlatformFunctions g_fp;
CoreFeatures g_corefeatures;

int PH_Init(const CMPIBroker*, const CMPIContext*, const char*, CMPIStatus*) {
    Get_Function_Pointer(&g_fp);
    RetrieveCoreFeatures(&g_corefeatures);
    return 0;
}
