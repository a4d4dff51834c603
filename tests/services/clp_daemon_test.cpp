// The CLP daemon, by the commands that are really called.
#include "service_requests.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char daemonOnly[] = "  100 ?        Ss     0:00 /usr/local/bin/smashclpd\n";
constexpr char daemonAndClient[] = "  100 ?        Ss     0:00 /usr/local/bin/smashclpd\n"
                                   "  200 pts/0    S+     0:00 smashclp\n"
                                   "  300 pts/1    S+     0:00 grep smashclp\n";
constexpr char unrelated[] = "  300 pts/1    S+     0:00 grep smashclpd\n"
                             "  400 pts/1    S+     0:00 vi notes\n";

class ClpDaemonCommands : public ServiceRequests {
protected:
    // The failure's text, "" for success.
    static std::string change(std::uint16_t state) {
        char message[PH_SERVICE_MESSAGE_SIZE] = "";
        const int result = PH_Set_ProtocolService_EnabledState("CLPProtocolService", state, message);
        EXPECT_EQ(result, message[0] == '\0' ? 0 : -1);
        return message;
    }
};

TEST_F(ClpDaemonCommands, isFoundInTheProcessList) {
    const std::tuple<const char*, std::string, int, int> cases[] = {
        {"both", daemonAndClient, 0, 0},
        {"the daemon", daemonOnly, 0, -1},
        {"searching for it", unrelated, -1, -1},
        {"a client of no terminal", "  200 ?  S  0:00 smashclp\n", -1, -1},
        // Longer lines come in pieces of 63 characters.
        {"at the end of a piece", std::string(54, ' ') + "smashclpd" + " --verbose\n", 0, -1},
        {"across two pieces", std::string(58, ' ') + "smashclpd" + " --verbose\n", -1, -1},
        {"nothing", "", -1, -1},
    };
    for (const auto& [what, processes, daemon, client] : cases) {
        write("/processes", processes);
        EXPECT_EQ(PH_IsSmashclpdRunning(), daemon) << what;
        EXPECT_EQ(PH_IsSmashclpRunning(), client) << what;
    }
}

TEST_F(ClpDaemonCommands, startsOnce) {
    write("/tmp/smash.pid", "1");
    std::filesystem::create_directories(sysroot.place("/tmp/smash-sessions/1"));
    write("/tmp/other", "stays");
    write("/processes", unrelated);
    EXPECT_EQ(change(2), "");
    EXPECT_THAT(commands(), ElementsAre("smashclpd"));
    EXPECT_FALSE(std::filesystem::exists(sysroot.place("/tmp/smash.pid")));
    EXPECT_FALSE(std::filesystem::exists(sysroot.place("/tmp/smash-sessions")));
    EXPECT_TRUE(std::filesystem::exists(sysroot.place("/tmp/other")));
    EXPECT_EQ(change(2), "An instance of SMASHCLPD server is already running...!");
    EXPECT_THAT(commands(), IsEmpty());
    EXPECT_THAT(platformCalls.pauses, IsEmpty());
}

TEST_F(ClpDaemonCommands, isHungUpOnAfterItsClients) {
    write("/processes", daemonAndClient);
    EXPECT_EQ(change(3), "");
    EXPECT_THAT(commands(), ElementsAre("killall smashclp", "killall -1 smashclpd"));
    EXPECT_THAT(std::exchange(platformCalls.pauses, {}), ElementsAre(2, 2));
    write("/processes", daemonOnly);
    EXPECT_EQ(change(3), "");
    EXPECT_THAT(commands(), ElementsAre("killall -1 smashclpd"));
    write("/processes", unrelated);
    EXPECT_EQ(change(3), "SMASHCLPD server is not running currently...!");
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(ClpDaemonCommands, isResetWhateverItsState) {
    write("/tmp/smash.pid", "1");
    write("/processes", daemonAndClient);
    EXPECT_EQ(change(11), "");
    EXPECT_THAT(commands(), ElementsAre("killall smashclp", "killall smashclpd", "smashclpd"));
    EXPECT_THAT(std::exchange(platformCalls.pauses, {}), ElementsAre(2, 2));
    EXPECT_FALSE(std::filesystem::exists(sysroot.place("/tmp/smash.pid")));
    write("/processes", unrelated);
    EXPECT_EQ(change(11), "");
    EXPECT_THAT(commands(), ElementsAre("smashclpd"));
    std::filesystem::remove(sysroot.place("/usr/local/bin/smashclpd"));
    EXPECT_EQ(change(11), "");
}

TEST_F(ClpDaemonCommands, isAServiceLikeTheOthers) {
    constexpr const char* jobName = "CLPProtocolService_RequestStateChange";
    EXPECT_EQ(change(4), "RequestedState value is Invalid");
    EXPECT_THAT(commands(), IsEmpty());
    EXPECT_EQ(jobOf(request("CLPProtocolService", 2)), Job::completed(jobName));
    EXPECT_EQ(textOf(services.get(path("CLPProtocolService")).instances.at(0), "EnabledState"), "2");
    const auto reply = request("CLPProtocolService", 2);
    EXPECT_EQ(reply.message, "An instance of SMASHCLPD server is already running...!");
    EXPECT_EQ(jobOf(reply), Job::failed(jobName));
}

} // namespace
