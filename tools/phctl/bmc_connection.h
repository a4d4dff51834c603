// The BMC that a command asks over IPMI itself: the one that its options name, or else the one of the
// database.
#pragma once

#include "database.h"
#include "session_options.h"

namespace phctl {

class BmcConnection {
public:
    void addTo(Command command); // with --timeout

    // Whether options name the BMC, so that the database may be that of another one.
    bool isGiven() const { return session_.isGiven(); }
    // Returns how to reach it, as the database keeps that. Throws UsageError for options that are wrong,
    // Failure where none name a BMC and the database does not. To be called once: a password may come from
    // standard input.
    SessionRow row() const;
    ipmi::SessionSettings settings(const SessionRow& row) const;
    // Throws what row() does, and ipmi::TransportError.
    std::unique_ptr<ipmi::Transport> open() const;

private:
    SessionOptions session_;
    int timeout_ = 30; // seconds
};

} // namespace phctl
