/* Everything that libProviderHelper exports. */
#ifndef PROVIDER_HELPER_PROVIDER_HELPER_H
#define PROVIDER_HELPER_PROVIDER_HELPER_H

#include "provider_helper/accounts.h"
#include "provider_helper/alert_delivery.h"
#include "provider_helper/boot.h"
#include "provider_helper/computer_system.h"
#include "provider_helper/devices.h"
#include "provider_helper/firmware.h"
#include "provider_helper/indications.h"
#include "provider_helper/inventory.h"
#include "provider_helper/jobs.h"
#include "provider_helper/network.h"
#include "provider_helper/network_clients.h"
#include "provider_helper/record_log.h"
#include "provider_helper/redirection.h"
#include "provider_helper/roles.h"
#include "provider_helper/sensors.h"
#include "provider_helper/service_sessions.h"
#include "provider_helper/services.h"
#include "provider_helper/software.h"
#include "provider_helper/tables.h"
#include "provider_helper/utility.h"
#include "provider_helper/views.h"
#include "provider_helper/watchdog.h"

#endif
