/* CIM hook functions: what libProviderHelper asks of the BMC's IPMI controller.
 *
 * A BMC vendor implements these functions (libCIMAPIHooks, libCIMTRZHooks, libCIMOEMHooks); the reference
 * platform does it over IPMI 2.0 messages. Common rules:
 *   - every function returns 0 for success; any other value is a failure whose meaning is the platform's own;
 *   - on failure an out-argument has no meaning;
 *   - `timeout` is in seconds and bounds the whole call, however many messages it takes and retries included;
 *     the library passes 30;
 *   - when an answer is lost, its retries included, the session is over: each further call on it fails at
 * once;
 *   - a BMC that is busy, or ran out of time itself (C0h, C3h), is asked again a few times;
 *   - a session serves one thread at a time.
 *
 * The functions are declared by subject, in the headers included here. */
#ifndef PLATFORM_CIM_HOOKS_H
#define PLATFORM_CIM_HOOKS_H

#include "platform/cim_alerts.h"
#include "platform/cim_boot.h"
#include "platform/cim_chassis.h"
#include "platform/cim_dns.h"
#include "platform/cim_firmware.h"
#include "platform/cim_lan.h"
#include "platform/cim_mail.h"
#include "platform/cim_network.h"
#include "platform/cim_pef.h"
#include "platform/cim_sel.h"
#include "platform/cim_sensors.h"
#include "platform/cim_services.h"
#include "platform/cim_session.h"
#include "platform/cim_sol.h"
#include "platform/cim_system_info.h"
#include "platform/cim_users.h"
#include "platform/cim_watchdog.h"

#ifdef __cplusplus
extern "C" {
#endif

/* System names a vendor wants published instead of those made from the device record. `name` holds 256
 * characters. A result other than 0, or an empty name, means that there is none. */
int OEM_GetHostSystemName(char* name);
int OEM_GetSPSystemName(char* name);

#ifdef __cplusplus
}
#endif

#endif
