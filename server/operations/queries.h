// What enumerating and associating operations share, whether they answer at once or piece by piece.
#pragma once

#include "operations/operation.h"

namespace server {

std::vector<broker::Instance> enumerateInstances(const Operation& operation);
std::vector<broker::ObjectPath> enumerateNames(const Operation& operation);
// The request is Associators, AssociatorNames, References or ReferenceNames; `object` is the parameter that
// names the instance.
broker::Reply associate(const Operation& operation, broker::Request::Operation request, const char* object);

// Writes instances as the operation's parameters ask for them.
using WriteInstance = std::function<void(cimxml::XmlWriter&, const broker::Instance&)>;
WriteInstance instanceWriter(const Operation& operation);

// Drops properties that are not in the list: a provider need not heed it.
void limit(broker::Instance& instance, const broker::PropertyList& properties);

} // namespace server
