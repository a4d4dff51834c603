// The SMASH database's session row, and why requests fail that need it.
#pragma once

#include "ipmi/transport.h"

#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <platform/smash_db.h>
#include <string>
#include <string_view>

namespace phctl {

// Throws UsageError when PH_SYSROOT names no folder.
void checkSysroot();
std::filesystem::path databaseFile();

struct CloseDatabase {
    void operator()(SMASH_DB_HANDLE handle) const { db_close(handle); }
};
using Database = std::unique_ptr<SmashDatabase, CloseDatabase>;

// A session row whose password does not outlive it.
struct SessionRow : IPMISessionInfo {
    explicit SessionRow(const IPMISessionInfo& row) : IPMISessionInfo(row) {}
    ~SessionRow() { explicit_bzero(password, sizeof password); }
    SessionRow(const SessionRow&) = default;
    SessionRow& operator=(const SessionRow&) = default;
};

// Reads the session row; nothing when there is no database, or no row in it. Throws Failure when the database
// cannot be read.
std::optional<SessionRow> sessionRow();
// Creates the database when it is missing. Throws Failure.
void setSessionRow(const IPMISessionInfo& row);

ipmi::SessionSettings settingsOf(const IPMISessionInfo& row);
SessionRow rowOf(const ipmi::SessionSettings& settings);

// Returns the BMC of the session row. Throws Failure where there is none.
ipmi::SessionSettings knownBmc();

// Counts the instances of a class of sensors that the database has; 0 for any other class, and where it cannot be
// read.
std::size_t sensorCount(std::string_view className);

// "the BMC at 192.0.2.7:623 (user admin)"
std::string describe(const ipmi::SessionSettings& settings);

// Throws Failure for a virtual BMC that was never made, and says what to do.
void requireBmc(const ipmi::SessionSettings& settings);

// Says what is wrong with the database or the BMC; empty when nothing is.
std::string diagnose();

} // namespace phctl
