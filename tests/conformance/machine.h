// A machine on which every class has instances: a virtual BMC with something of each kind, the database that
// a sync fills from it, and jobs, addresses, filters and destinations as clients leave them.
#pragma once

#include "broker/broker.h"
#include "ipmi/transport.h"
#include "saved_files.h"

#include <memory>
#include <sysroot_fixture.h>

class Machine {
public:
    // Sessions lead to the virtual BMC over this interface.
    explicit Machine(int interfaceType = ipmi::SessionSettings::VirtualBmc);

    // Puts every file back as it was when the machine was made.
    void restore() const { before_->restore(); }

    std::filesystem::path place(std::string_view absolutePath) const { return sysroot_.place(absolutePath); }

    // One that its class creates, or that a method takes; without properties where none can be.
    static broker::Instance newInstance(const std::string& className);

private:
    Sysroot sysroot_;
    std::unique_ptr<SavedFiles> before_;
};
