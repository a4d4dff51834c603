/* Event descriptions: /usr/local/lib/libEventLogDes.so, opened at run time, puts SEL records into words.
 * These are its entry points, found by name.
 *
 * Each takes a SEL record (16 bytes, layout in cim_sel.h) and writes a text that ends with a NUL and fits
 * into EVENT_TEXT_SIZE bytes. 0 for success; on failure the text is empty. */
#ifndef PLATFORM_EVENT_DESCRIPTIONS_H
#define PLATFORM_EVENT_DESCRIPTIONS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum { EVENT_TEXT_SIZE = 256 };

/* "FindSensorType": the sensor type, such as "Temperature" (IPMI 2.0, table 42-3).
 * "AlertSeverityLevel": how serious the event is: "Ok", "Warning", "Critical", "Non-Recoverable" or
 * "Unspecified"; the library asks for events of the types 01h (threshold) and 07h (severity) only. The end
 * of a bad state is "Ok". "SELLog": what happened, such as "Upper Critical - going high" (tables 42-2 and
 * 42-3); the same text for every event of a kind, because messages are looked up by it. */
typedef int (*EventText)(const uint8_t* record, char* text);

#ifdef __cplusplus
}
#endif

#endif
