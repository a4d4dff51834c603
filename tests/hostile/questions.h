// All that a BMC is asked through the library and beside it, each by itself.
#pragma once

#include "machine.h"
#include "random.h"
#include "schema/class_schema.h"

#include <functional>
#include <string>
#include <vector>

namespace hostile {

struct Question {
    std::string text;
    std::function<std::vector<std::string>(Random&)> ask; // returns what is wrong
    bool changes = true;                                  // files of the machine
};
struct Subject {
    const char* name;
    std::size_t weight; // how often it has its turn, among all
    std::vector<Question> questions;
};

// These are made on a machine whose BMC behaves.

Subject classes(broker::Broker& broker, const Machine& machine);
Subject associations(broker::Broker& broker);
Subject hooks(const ipmi::SessionSettings& settings);
// What is left in the database is as it was, or serves all classes.
Subject synchronisation(broker::Broker& broker, const ipmi::SessionSettings& settings);
// What tools show of a BMC.
Subject views(const ipmi::SessionSettings& settings);
// The follower of the event log: once the BMC behaves again, each event is taken once.
Subject logFollower(const Machine& machine);
// The monitor of the event pipe, whose thread goes on until the process ends: of each event, and of one for a listener
// behind it, which comes through.
Subject eventMonitor(const Machine& machine);

broker::ObjectPath classPath(const schema::Class& served);

} // namespace hostile
