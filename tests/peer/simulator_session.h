// A simulated BMC as the library finds it: through the session row of its database.
#pragma once

#include "ipmi/transport.h"
#include "platform/smash_db.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>

namespace ph_test {

// The BMC that sessions of the library go to, in the database of the test's sysroot.
inline void storeSession(const ipmi::SessionSettings& settings) {
    IPMISessionInfo info{};
    const auto set = [](auto& field, const std::string& value) {
        std::snprintf(field, sizeof field, "%s", value.c_str());
    };
    set(info.address, settings.address);
    info.port = settings.port;
    set(info.userName, settings.userName);
    set(info.password, settings.password);
    set(info.cipherSuite, std::to_string(settings.cipherSuite));
    set(info.workaroundFlags, std::to_string(settings.workaroundFlags));
    SMASH_DB_HANDLE database = nullptr;
    ASSERT_EQ(smash_db_init(&database), 0) << db_last_error();
    EXPECT_EQ(db_set_ipmi_session_info(database, &info), 0) << db_last_error();
    ASSERT_EQ(db_close(database), 0);
}

} // namespace ph_test
