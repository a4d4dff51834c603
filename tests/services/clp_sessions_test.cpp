// Sessions of the command-line protocol, through the daemon's packet library and by its processes.
#include "clp_daemon.h"
#include "managed_bmc.h"
#include "provider_helper/service_sessions.h"

#include <cstring>

ClpDaemon clpDaemon;

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ClpSessions : public ManagedBmc {
protected:
    void SetUp() override {
        clpDaemon = {};
        clpDaemon.options = {"/system1", "eng", "properties", 20, 600, 2, 3, 2, 2, true};
    }
    void TearDown() override {
        clpDaemon = {};
        ManagedBmc::TearDown();
    }
    broker::Reply change(const char* name, const broker::Value& value) const {
        broker::Instance setting = only(settings);
        broker::set(setting.properties, name, value);
        return settings.modify(setting, {{name}});
    }

    const ClassRequests sessions{broker, PH_CLASS_FUNCTIONS(CLPProtocolEndpoint)};
    const ClassRequests settings{broker, PH_CLASS_FUNCTIONS(CLPSettingData)};
};

TEST_F(ClpSessions, areThoseOfTheDaemon) {
    EXPECT_THAT(sessions.names().paths, IsEmpty());
    clpDaemon.sessions = {{7, clpDaemon.options}, {9, clpDaemon.options}};
    clpDaemon.sessions[1].options.OutputFormat = 5;
    std::memset(clpDaemon.sessions[1].options.OutputLanguage, 'x', sizeof(CLPOptions::OutputLanguage));
    const auto all = sessions.enumerate().instances;
    EXPECT_THAT(textsOf(all, "Name"), ElementsAre("CLPProtocolEndpoint7", "CLPProtocolEndpoint9"));
    EXPECT_THAT(textsOf(all, "OutputFormat"), ElementsAre("2", "5"));
    EXPECT_THAT(textsOf(all, "OutputLanguage"), ElementsAre("eng", "xxxxxxx"));
    EXPECT_THAT(textsOf(all, "WaitBehavior"), ElementsAre("TRUE", "TRUE"));
}

TEST_F(ClpSessions, areProcessesWithoutIt) {
    clpDaemon.answers = false;
    write("/processes", "  100 ?        Ss     0:00 /usr/local/bin/smashclpd\n"
                        "  200 pts/0    S+     0:00 smashclp\n"
                        "  300 pts/1    S+     0:00 grep smashclp\n"
                        "12345 pts/2    S+     0:00 smashclp\n");
    const auto all = sessions.enumerate().instances;
    EXPECT_THAT(textsOf(all, "Name"), ElementsAre("CLPProtocolEndpoint200", "CLPProtocolEndpoint12345"));
    EXPECT_THAT(textsOf(all, "OutputFormat"), ElementsAre("<none>", "<none>"));
    EXPECT_EQ(textOf(only(settings), "OutputLanguage"), "<none>");
    EXPECT_THAT(change("OutputLanguage", text("ger")),
                Refuses(CMPI_RC_ERR_FAILED, "The daemon refuses the settings"));
}

TEST_F(ClpSessions, beginAsTheSettingsSay) {
    EXPECT_TRUE(change("OutputFormat", number(4)).ok());
    EXPECT_TRUE(change("OutputLanguage", text("ger")).ok());
    EXPECT_TRUE(change("WaitBehavior", {CMPI_boolean, false}).ok());
    EXPECT_TRUE(change("OutputCount", number(0xFFFFFFFFU, CMPI_uint32)).ok());
    CLPOptions expected{"/system1", "ger", "properties", 0xFFFFFFFF, 600, 4, 3, 2, 2, false};
    EXPECT_EQ(std::memcmp(&clpDaemon.options, &expected, sizeof expected), 0);

    const std::pair<const char*, broker::Value> wrong[] = {
        {"OutputFormat", number(6)},           {"OutputFormat", number(1)},
        {"OutputVerbosity", number(5)},        {"OutputPosition", text("begin")},
        {"OutputLanguage", text("german-at")}, {"OutputLanguage", text("")},
        {"WaitBehavior", number(1)},           {"DisplayOption", text(std::string(64, 'x'))},
    };
    for (const auto& [name, value] : wrong)
        EXPECT_THAT(change(name, value),
                    Refuses(CMPI_RC_ERR_INVALID_PARAMETER, std::string(name) + " Parameter is Invalid"));
    EXPECT_EQ(change("CurrentDefaultTarget", text("/")).code, CMPI_RC_ERR_INVALID_PARAMETER);
    clpDaemon.tellsOptions = false;
    EXPECT_EQ(change("KeepTime", number(1)).message, "The daemon refuses the settings")
        << "the others would be lost";
    clpDaemon.tellsOptions = true;
    clpDaemon.takesOptions = false;
    EXPECT_EQ(change("KeepTime", number(1)).message, "The daemon refuses the settings");
    EXPECT_EQ(std::memcmp(&clpDaemon.options, &expected, sizeof expected), 0);
}

} // namespace
