// A service processor with an event log: the library on the virtual BMC and its databases.
#pragma once

#include "class_requests.h"
#include "failing_platform.h"
#include "provider_helper/provider_helper.h"
#include "sysroot_fixture.h"
#include "virtual-bmc/virtual_bmc.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using SelBytes = std::array<std::uint8_t, 16>;

class LogFixture : public SysrootFixture {
protected:
    static constexpr const char* logId = "IPMI:Test BMC SEL Log";

    void SetUp() override {
        platform = {};
        setenv("TZ", "EST5", 1);
        write("/conf/system_names.ini", "[names]\nsp = Test BMC\n");
        makeBmc("{}");
        IPMISessionInfo session{};
        std::snprintf(session.interfaceType, sizeof session.interfaceType, "2");
        SMASH_DB_HANDLE database = nullptr;
        ASSERT_EQ(smash_db_init(&database), 0);
        EXPECT_EQ(db_set_ipmi_session_info(database, &session), 0);
        db_close(database);
    }
    void TearDown() override {
        EXPECT_EQ(platform.openSessions, 0);
        EXPECT_EQ(broker.liveObjects(), 0U);
    }

    void makeBmc(const std::string& sel) {
        vbmc::createFromText(stateFile, R"({"device": {}, "sel": )" + sel + "}", "model",
                             vbmc::Existing::Replace);
        bmc = std::make_unique<vbmc::VirtualBmc>(stateFile);
    }

    // Property as text, "<none>" when the instance does not have it.
    static std::string text(const broker::Instance& instance, std::string_view property) {
        const broker::Value* value = broker::find(instance.properties, property);
        return value != nullptr ? broker::toText(*value) : "<none>";
    }

    const std::filesystem::path stateFile = sysroot.place("/var/lib/virtual-bmc/bmc.state");
    std::unique_ptr<vbmc::VirtualBmc> bmc;
    broker::Broker broker;
};
