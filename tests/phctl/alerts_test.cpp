// The virtual BMC's alerts: where they go, and what an event gives rise to.
#include "paths.h"
#include "phctl_fixture.h"

#include <array>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using ph_test::Outcome;
using ph_test::phctl;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using Bytes = std::vector<std::uint8_t>;

class Alerts : public ph_test::PhctlTest {
protected:
    void SetUp() override { succeed({"bmc", "create", paths::sampleServer, "--replace"}); }

    static nlohmann::json shown(const std::string& part) {
        return succeed({"bmc", "show", part, "--json"}).json()[part];
    }
    static Outcome event(const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments{"bmc", "event", "--record",
                                           "02 01020304 2000 04 01 03 01 59 7d 78"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return phctl(arguments);
    }
};

// The monitor's end of the pipe.
class EventPipe {
public:
    explicit EventPipe(const Sysroot& sysroot) : path_(sysroot.place("/tmp/SELEvent_fifo")) {
        EXPECT_EQ(mkfifo(path_.c_str(), 0600), 0);
        descriptor_ = open(path_.c_str(), O_RDONLY | O_NONBLOCK);
    }
    ~EventPipe() {
        close(descriptor_);
        unlink(path_.c_str());
    }
    // What has been written so far.
    Bytes read() const {
        Bytes bytes(4096);
        const ssize_t size = ::read(descriptor_, bytes.data(), bytes.size());
        bytes.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
        return bytes;
    }

private:
    std::string path_;
    int descriptor_;
};

Bytes message(std::uint8_t id, std::uint8_t destination, std::uint8_t channel, std::uint8_t kind) {
    return {id,   0,    0x02,        1, 2, 3, 4,       0x20, 0, 0x04, 0x01, 0x03, 0x01, 0x59,
            0x7D, 0x78, destination, 0, 0, 0, channel, 0,    0, 0,    kind, 0,    0,    0};
}

TEST_F(Alerts, goWhereFiltersAndPoliciesSay) {
    const EventPipe pipe(*sysroot);
    succeed({"bmc", "alert-destination", "1", "1", "--mail", "2"});
    succeed({"bmc", "alert-destination", "1", "2", "--trap", "2001:db8::9"});
    succeed({"bmc", "alert-destination", "8", "7", "--listener"});
    succeed({"bmc", "alert-policy", "2", "--policy", "1", "--channel", "8", "--selector", "7"});
    succeed({"bmc", "alert-policy", "3", "--policy", "1", "--channel", "1", "--selector", "2"});
    const Outcome outcome = event();
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out,
              "Added record 1\nFilter 1 matches\nWritten for e-mail: destination 1 of channel 1\n"
              "Written for listener: CIMXML-7\nLeft to the BMC: trap: destination 2 of channel 1\n");
    Bytes expected = message(1, 1, 1, 1);
    const Bytes second = message(1, 7, 8, 2);
    expected.insert(expected.end(), second.begin(), second.end());
    EXPECT_EQ(pipe.read(), expected);

    succeed({"bmc", "alert-policy", "2", "--off"});
    const auto json = event({"--json"}).json();
    EXPECT_EQ(json["id"], 2);
    EXPECT_EQ(json["filters"], nlohmann::json({1}));
    EXPECT_EQ(json["alerts"].size(), 2u);
    EXPECT_EQ(json["alerts"][0]["kind"], 1);
    EXPECT_EQ(json["alerts"][1]["kind"], 0);
    EXPECT_EQ(pipe.read(), message(2, 1, 1, 1));

    EXPECT_EQ(succeed({"bmc", "event", "FAN1", "2"}).out, "Added record 3\nNo filter matches\n");
    EXPECT_EQ(pipe.read(), Bytes());
}

TEST_F(Alerts, goWhereTheCommandLineSays) {
    const EventPipe pipe(*sysroot);
    EXPECT_EQ(event({"--to", "mail:1:3"}).out,
              "Added record 1\nWritten for e-mail: destination 3 of channel 1\n");
    EXPECT_EQ(pipe.read(), message(1, 3, 1, 1));
    EXPECT_EQ(event({"--to", "cimxml:7"}).status, 0);
    EXPECT_EQ(pipe.read(), message(2, 7, 0, 2));
    for (const char* wrong :
         {"mail:1", "mail:1:16", "mail:x:3", "cimxml", "cimxml:-1", "cimxml:4294967296", "snmp:1:3"})
        EXPECT_THAT(fail({"bmc", "event", "1", "9", "--to", wrong}, 2), HasSubstr(wrong));
    EXPECT_THAT(fail({"bmc", "event", "--to", "mail:1:3"}, 2), HasSubstr("name a sensor"));
    EXPECT_EQ(shown("sel")["records"], 2) << "nothing is logged then";
}

TEST_F(Alerts, needAMonitorThatListens) {
    const std::string path = sysroot->place("/tmp/SELEvent_fifo");
    const auto deliver = [] { return fail({"bmc", "event", "1", "9", "--to", "mail:1:3"}, 1); };
    EXPECT_THAT(deliver(),
                AllOf(HasSubstr(path), HasSubstr("No such file"), HasSubstr("record 1 is in the event log")));
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_THAT(deliver(), HasSubstr("nobody reads from it"));
    unlink(path.c_str());
    std::ofstream(path) << "no pipe";
    EXPECT_THAT(deliver(), HasSubstr("not a pipe"));
    unlink(path.c_str());
    {
        const EventPipe pipe(*sysroot);
        const int writer = open(path.c_str(), O_WRONLY | O_NONBLOCK);
        const std::array<char, 4096> filling{};
        while (write(writer, filling.data(), filling.size()) > 0) {
        }
        EXPECT_THAT(deliver(), HasSubstr("full"));
        close(writer);
    }
    EXPECT_EQ(event().status, 0) << "what is not to be delivered needs no pipe";
}

TEST_F(Alerts, destinationsAndPoliciesAreSetAndShown) {
    succeed({"bmc", "alert-destination", "1", "3", "--mail", "3"});
    succeed({"bmc", "alert-destination", "8", "15", "--trap", "192.0.2.9"});
    auto rows = shown("alertDestinations");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0]["kind"], "e-mail");
    EXPECT_EQ(rows[0]["user"], 3);
    EXPECT_EQ(rows[1]["address"], "192.0.2.9");
    succeed({"bmc", "alert-destination", "1", "3", "--off"});
    EXPECT_EQ(shown("alertDestinations")[0]["kind"], "trap");

    succeed(
        {"bmc", "alert-policy", "20", "--policy", "4", "--channel", "8", "--selector", "15", "--rule", "2"});
    EXPECT_EQ(shown("pef")["policies"][1],
              (nlohmann::json{{"number", 20}, {"policy", 4}, {"rule", 2}, {"channel", 8}, {"selector", 15}}));
    EXPECT_THAT(fail({"bmc", "alert-policy", "21", "--off"}, 1), HasSubstr("1 to 20"));
    EXPECT_THAT(fail({"bmc", "alert-policy", "2", "--policy", "4"}, 2), HasSubstr("--channel"));
    EXPECT_THAT(fail({"bmc", "alert-destination", "2", "3", "--off"}, 1), HasSubstr("no LAN on channel 2"));
    EXPECT_THAT(fail({"bmc", "alert-destination", "1", "3", "--trap", "host"}, 2), HasSubstr("host"));
    fail({"bmc", "alert-destination", "1", "3"}, 2);
}

TEST_F(Alerts, mailServersKeepWhatIsNotNamedAndTheirPassword) {
    const std::string file = sysroot->place("/tmp/password");
    std::ofstream(file) << "topsecret\n";
    succeed({"bmc", "mail-server", "1", "--enable", "--address", "192.0.2.25", "--sender", "bmc@example.com",
             "--auth", "--user", "bmc", "--password-file", file});
    succeed({"bmc", "mail-server", "1", "--port", "587", "--starttls"});
    succeed({"bmc", "mail-server", "1", "--secondary", "--address", "2001:db8::25", "--host-name",
             "bmc.example.com"});
    const Outcome outcome = succeed({"bmc", "show", "mail", "--json"});
    EXPECT_THAT(outcome.out, Not(HasSubstr("topsecret")));
    const auto rows = outcome.json()["mail"];
    EXPECT_EQ(rows[0], nlohmann::json::parse(R"({"channel": 1, "server": "primary", "enabled": true,
        "ipv4": "192.0.2.25", "ipv6": "::", "port": 587, "sender": "bmc@example.com", "hostName": "",
        "startTls": true, "authenticate": true, "userName": "bmc", "hasPassword": true})"));
    EXPECT_EQ(rows[1]["ipv6"], "2001:db8::25");
    EXPECT_FALSE(rows[1]["hasPassword"]);
    succeed({"bmc", "mail-server", "1", "--disable", "--no-auth", "--no-starttls"});
    EXPECT_FALSE(shown("mail")[0]["enabled"]);
    EXPECT_FALSE(shown("mail")[0]["authenticate"]);
    EXPECT_THAT(fail({"bmc", "mail-server", "1", "--sender", "a@b\nBcc: c@d"}, 1), HasSubstr("sender"));
    EXPECT_THAT(fail({"bmc", "mail-server", "1", "--password-file", "/nowhere"}, 2), HasSubstr("/nowhere"));

    succeed({"bmc", "user-email", "2", "root@example.com"});
    EXPECT_EQ(shown("users")[1]["email"], "root@example.com");
    succeed({"bmc", "user-email", "2", ""});
    EXPECT_EQ(shown("users")[1]["email"], "");
    EXPECT_THAT(fail({"bmc", "user-email", "9", "a@b"}, 1), HasSubstr("no user 9"));
}

} // namespace
