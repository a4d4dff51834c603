// Requests to a class that do something, as a client may send them.
#pragma once

#include "machine.h"
#include "served_class.h"

// One that changes something and, if any of the class does, succeeds: of each operation, and of each method. The
// machine is put back after each attempt.
std::vector<broker::Request> sampleChanges(const broker::Broker& broker, const Machine& machine,
                                           const ServedClass& asked);
// Those, and the others on the first instance.
std::vector<broker::Request> sampleRequests(const broker::Broker& broker, const Machine& machine,
                                            const ServedClass& asked);
