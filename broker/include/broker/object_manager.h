// A broker as the object manager of its process: what libraries of an object manager's own look up by name
// among the process's global symbols (GetBroker, GetContext, qom_get_heap, qom_release_heap). The program
// that links this exports its symbols.
#pragma once

#include "broker/broker.h"

namespace broker {

// While it lives, its broker is the one of the process. At most one exists.
class ObjectManager {
public:
    explicit ObjectManager(const Broker& broker);
    ~ObjectManager();
    ObjectManager(const ObjectManager&) = delete;
    ObjectManager& operator=(const ObjectManager&) = delete;

private:
    Scope scope_;
};

} // namespace broker
