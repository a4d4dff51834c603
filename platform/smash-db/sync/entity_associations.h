// Entity association records (IPMI 2.0 tables 43-4 and 43-5): which entities are parts of which.
#pragma once

#include "ipmi/message.h"

#include <platform/smash_db_devices.h>

#include <vector>

namespace smash {

// Appends what a record says, each pair of entities once; the reader stands at the record's sixth byte. A
// device-relative record (type 09h) counts as far as its entities belong to the BMC. Throws Unusable.
void addEntityAssociations(ipmi::Reader& record, bool isDeviceRelative,
                           std::vector<EntityAssociationRow>& associations);

} // namespace smash
