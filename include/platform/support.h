/* Platform support: feature switches, debug output and text helpers that a BMC's firmware brings. */
#ifndef PLATFORM_SUPPORT_H
#define PLATFORM_SUPPORT_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Run-time features: 32-bit words that RetrieveCoreFeatures fills, 0 where a feature is off. */
enum {
    CORE_FEATURE_INSTANCE_ARRAY_CACHE = 63, /* 1: PH_GetInstArray keeps the arrays of six costly classes */
    CORE_FEATURE_WORDS = 128
};
typedef struct {
    uint32_t words[CORE_FEATURE_WORDS];
} CoreFeatures;

/* Fills the whole table. Returns 0. */
int RetrieveCoreFeatures(CoreFeatures* features);

/* Platform functions that callers reach through a table, because a vendor may replace them at run time. */
typedef struct {
    int (*isFeatureEnabled)(const char* feature);
    int (*getMacrodefineInt)(const char* name, int defaultValue);
    void (*debugOut)(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));
    void (*runtimeDebugOut)(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));
} PlatformFunctions;

/* Fills the whole table; no entry is left NULL. Returns 0. */
int Get_Function_Pointer(PlatformFunctions* table);

/* Build-time switches of the firmware, by name ("CONFIG_KZP_FEATURE_LMEDIA_SUPPORT"). The result is 1 for
 * enabled, 0 for not enabled or unknown. */
int IsFeatureEnabled(const char* feature);
/* Reads the number that a build-time definition holds, or `defaultValue` where it is unknown. */
int GetMacrodefine_getint(const char* name, int defaultValue);

/* Debug log. `level` selects the log the line goes to: 134 for the first function, 135 for the second. */
void IDBG_LINUXAPP_DbgOut(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));
void IDBG_LINUXAPP_Runtime_DbgOut(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));

/* Writes an IPv4 address (4 bytes, most significant first; `text` holds 16 characters) or an IPv6 address
 * (16 bytes; 46 characters) as text. Returns 0, or -1 for a NULL argument. */
int ConvertIPnumToStr(const uint8_t* address, char* text);
int ConvertIP6numToStr(const uint8_t* address, char* text);

#ifdef __cplusplus
}
#endif

#endif
