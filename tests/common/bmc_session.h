// The BMC that the library's sessions go to, in the database of the test's sysroot. Link with phipmi, phsync and
// smashdb.
#pragma once

#include "ipmi/transport.h"
#include "platform/smash_db.h"
#include "smash-db/sync/sync.h"

#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

inline void storeSession(const ipmi::SessionSettings& settings) {
    IPMISessionInfo info{};
    const auto set = [](auto& field, const std::string& value) {
        std::snprintf(field, sizeof field, "%s", value.c_str());
    };
    set(info.address, settings.address);
    info.port = settings.port;
    set(info.userName, settings.userName);
    set(info.password, settings.password);
    set(info.interfaceType, std::to_string(settings.interfaceType));
    set(info.cipherSuite, std::to_string(settings.cipherSuite));
    set(info.workaroundFlags, std::to_string(settings.workaroundFlags));
    SMASH_DB_HANDLE database = nullptr;
    ASSERT_EQ(smash_db_init(&database), 0) << db_last_error();
    EXPECT_EQ(db_set_ipmi_session_info(database, &info), 0) << db_last_error();
    EXPECT_EQ(db_close(database), 0);
}

inline ipmi::SessionSettings virtualBmc(const std::filesystem::path& stateFile) {
    ipmi::SessionSettings settings;
    settings.address = stateFile.string();
    settings.interfaceType = ipmi::SessionSettings::VirtualBmc;
    return settings;
}

// Fills the database from the virtual BMC, and leads its session there.
inline void synchronise(const std::filesystem::path& stateFile) {
    smash::sync(*ipmi::openTransport(virtualBmc(stateFile)));
    storeSession(virtualBmc(stateFile));
}
