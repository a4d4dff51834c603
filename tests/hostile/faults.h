// What is wrong with an answer, whatever the BMC did.
#pragma once

#include "broker/broker.h"

#include <string>
#include <vector>

namespace hostile {

std::vector<std::string> faultsOf(const broker::Request& request, const broker::Reply& reply);

} // namespace hostile
