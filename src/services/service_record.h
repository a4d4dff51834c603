// Service records, as the BMC tells and takes them.
#pragma once

#include "services/service_list.h"
#include "Utility/back-ends/back_ends.h"

namespace ph {

struct ServiceRecord {
    CIM_ServiceConf conf{};
    // Another maker's service under this bit has ports and sessions, but nothing that its name would tell.
    bool isOurs = false;
};

// Reads the record of a service that the BMC switches. Returns false where the BMC has no such service or
// does not tell.
bool readServiceRecord(IPMI20_SESSION_T* session, const Service& service, ServiceRecord& record);

// Returns one of the two TCP ports; 0 for none. A port that is both is the clear one.
std::uint16_t portOf(const CIM_ServiceConf& conf, bool isEncrypted);

// Returns the settings that leave a service as it is.
CIM_ServiceSettings settingsOf(const CIM_ServiceConf& conf);

} // namespace ph
