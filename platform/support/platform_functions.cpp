#include <platform/support.h>

int Get_Function_Pointer(PlatformFunctions* table) {
    if (table == nullptr)
        return -1;
    *table = {.isFeatureEnabled = IsFeatureEnabled,
              .getMacrodefineInt = GetMacrodefine_getint,
              .debugOut = IDBG_LINUXAPP_DbgOut,
              .runtimeDebugOut = IDBG_LINUXAPP_Runtime_DbgOut};
    return 0;
}
