// The parts that the machine consists of. A new part is a pair of files and its line in each list here.
//
// A part is a struct with
//   static constexpr const char* name   of its member in the model and its line in the state file
//   static std::span<const Command> commands()
//   void fields(Fields&)                how it stands in JSON (json_fields.h); or a member `list` of such
//   structs
// and where there is need of it
//   void check(const Place&)            after reading: what has to fit together, what is derived
//   Json describe(const State&) const   for people; null where there is nothing to say
//   static void settle(State&, std::int64_t now)  before each transaction: what has happened since, in the order
//                                       of the parts; milliseconds since 1970
//   static std::span<const LanParameter> lanParameters()   rows of Get and Set LAN Configuration Parameters
#pragma once

#include "virtual-bmc/device/boot_options.h"
#include "virtual-bmc/device/chassis.h"
#include "virtual-bmc/device/device.h"
#include "virtual-bmc/device/firmware.h"
#include "virtual-bmc/device/services.h"
#include "virtual-bmc/device/system_info.h"
#include "virtual-bmc/device/watchdog.h"
#include "virtual-bmc/faults.h"
#include "virtual-bmc/fru/frus.h"
#include "virtual-bmc/host/smbios.h"
#include "virtual-bmc/lan/dns.h"
#include "virtual-bmc/lan/interfaces.h"
#include "virtual-bmc/lan/lans.h"
#include "virtual-bmc/lan/sol.h"
#include "virtual-bmc/message_log.h"
#include "virtual-bmc/pef/alert_destinations.h"
#include "virtual-bmc/pef/mail.h"
#include "virtual-bmc/pef/pef.h"
#include "virtual-bmc/sel/sel.h"
#include "virtual-bmc/sensors/sdr_repository.h"
#include "virtual-bmc/sensors/sensors.h"
#include "virtual-bmc/users/sessions.h"
#include "virtual-bmc/users/users.h"

#include <tuple>

namespace vbmc {

using Parts = std::tuple<Device, Firmware, Users, Sessions, Sensors, Frus, SdrRepository, Chassis, Watchdog,
                         BootOptions, Sel, Services, Lans, Interfaces, Dns, AlertDestinations, Mail, Pef,
                         SystemInfo, Smbios, Sol, Faults, MessageLog>;

// Files beside the state file that hold the bulk of a part, by what follows its name; a new machine begins
// without them. They are read and written within transactions.
inline constexpr const char* bulkFiles[] = {MessageLog::bulkFile, Sel::bulkFile, Firmware::bulkFile};

} // namespace vbmc
