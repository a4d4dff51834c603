// Alert destinations and mail as clients read and write them.
#include "virtual_bmc_fixture.h"

namespace {

constexpr std::uint8_t transport = 0x0C;
constexpr std::uint8_t getUser = 0x40, setUser = 0x41, getText = 0x42, setText = 0x43, getServer = 0x44,
                       setServer = 0x45;

class MailCommands : public VirtualBmcFixture {
protected:
    void SetUp() override {
        create(R"({"users": [{"id": 2, "name": "root", "email": "root@example.com"}],
                   "lans": [{"channel": 1, "name": "eth0"}, {"channel": 8, "name": "eth1"}],
                   "mail": {"servers": [{"channel": 8, "secondary": true, "ipv4": "192.0.2.25", "password": "older"}]}})");
        bmc = open();
    }
    Bytes tell(std::uint8_t command, const Bytes& request) { return ask(*bmc, oem, command, request); }
    Bytes parameter(std::uint8_t number, std::uint8_t selector) {
        return ask(*bmc, transport, 0x02, {1, number, selector, 0});
    }
    Bytes change(Bytes request) {
        request.insert(request.begin(), 1);
        return ask(*bmc, transport, 0x01, request);
    }
    std::unique_ptr<ipmi::Transport> bmc;
};

TEST_F(MailCommands, destinationsAreLanParameters) {
    EXPECT_EQ(change({17, 3}), Bytes({0x82}));
    EXPECT_EQ(parameter(18, 16), Bytes({0xC9}));
    EXPECT_EQ(change({18, 3, 0xFF, 9, 0xFF}), Bytes({0}));
    EXPECT_EQ(parameter(18, 3), Bytes({0, 0x11, 3, 0x87, 9, 7})) << "without reserved bits";
    Bytes ipv6{19, 3, 0x10};
    ipv6.resize(18, 0xAB);
    EXPECT_EQ(change(ipv6), Bytes({0xC7})) << "one byte is missing";
    ipv6.resize(19, 0xAB);
    ipv6[2] = 0x20;
    EXPECT_EQ(change(ipv6), Bytes({0xCC})) << "no such format";
}

TEST_F(MailCommands, textsChangeWithTheirLastBlock) {
    const std::string first(blockSize, 'a');
    EXPECT_EQ(tell(setText, with({0, 1, 3, 0}, "short")), Bytes({0}));
    EXPECT_EQ(tell(setText, with({0, 1, 3, 0}, first)), Bytes({0}));
    EXPECT_EQ(tell(getText, {0, 1, 3, 0}), with({0}, "short")) << "the new one is not there yet";
    EXPECT_EQ(tell(setText, with({0, 1, 4, 1}, "b")), Bytes({0xCC})) << "goes on with another text";
    EXPECT_EQ(tell(setText, with({0, 1, 3, 1}, "b")), Bytes({0}));
    EXPECT_EQ(tell(getText, {0, 1, 3, 0}), with({0}, first));
    EXPECT_EQ(tell(getText, {0, 1, 3, 1}), with({0}, "b"));
    EXPECT_EQ(tell(setText, with({0, 1, 3, 1}, "b")), Bytes({0xCC})) << "goes on with nothing";
    // A character may lie across two blocks.
    EXPECT_EQ(tell(setText, with({1, 1, 3, 0}, first.substr(1) + "\xC3")), Bytes({0}));
    EXPECT_EQ(tell(setText, with({1, 1, 3, 1}, "\xA4\n")), Bytes({0}));
    EXPECT_EQ(tell(getText, {1, 1, 3, 1}), with({0}, "\xA4\n"));
    EXPECT_EQ(tell(setText, with({1, 1, 3, 0}, "\xC3")), Bytes({0xCC}));
    EXPECT_EQ(tell(setText, with({2, 2, 0, 0}, "a@b\nBcc: c@d")), Bytes({0xCC}));

    // Kind, channel or user, selector, block.
    const Bytes absent[] = {{0, 1, 0, 0}, {0, 1, 16, 0}, {0, 2, 3, 0}, {0, 1, 3, 2}, {1, 1, 3, 8},
                            {2, 3, 0, 0}, {2, 2, 0, 8},  {3, 2, 0, 0}, {4, 1, 2, 0}, {7, 1, 0, 0}};
    for (const Bytes& request : absent)
        EXPECT_EQ(tell(getText, request), Bytes({0xC9})) << testing::PrintToString(request);
}

TEST_F(MailCommands, serversAreOfAChannel) {
    Bytes settings{1, 3, 0x4B, 0x02, 198, 51, 100, 25};
    settings.resize(24, 0x20);
    Bytes request{1, 0};
    request.insert(request.end(), settings.begin(), settings.end());
    EXPECT_EQ(tell(setServer, request), Bytes({0}));
    Bytes answer{0};
    answer.insert(answer.end(), settings.begin(), settings.end());
    EXPECT_EQ(tell(getServer, {1, 0}), answer);
    EXPECT_EQ(tell(getServer, {8, 1}), with({0, 0, 0, 25, 0, 192, 0, 2, 25}, "", 16));
    request[3] = 4;
    EXPECT_EQ(tell(setServer, request), Bytes({0xCC}));
    request[0] = 2;
    EXPECT_EQ(tell(setServer, request), Bytes({0xC9}));
    EXPECT_EQ(tell(getServer, {1, 2}), Bytes({0xC9}));
    // All of it is in the state file, for other processes.
    EXPECT_EQ(tell(setText, with({3, 1, 0, 0}, "mailer")), Bytes({0}));
    EXPECT_EQ(ask(*open(), oem, getText, {3, 1, 0, 0}), with({0}, "mailer"));
}

TEST_F(MailCommands, passwordsAreForAdministratorsAndNotForTheMessageLog) {
    vbmc::VirtualBmc machine(stateFile);
    machine.recordMessages(10);
    const std::string password = "topsecretpassword";
    EXPECT_EQ(tell(setText, with({4, 1, 0, 0}, password)), Bytes({0}));
    EXPECT_EQ(tell(getText, {4, 1, 0, 0}), with({0}, password));
    EXPECT_EQ(tell(getText, {2, 2, 0, 0}), with({0}, "root@example.com"));
    const auto messages = machine.recordedMessages();
    ASSERT_EQ(messages.size(), 3u);
    EXPECT_EQ(messages[0].request, with({4, 1, 0, 0}, std::string(blockSize, '*')));
    EXPECT_EQ(messages[1].answer, with({0}, std::string(blockSize, '*')));
    EXPECT_EQ(messages[2].answer, with({0}, "root@example.com"));
    EXPECT_THAT(machine.describe().dump(), testing::Not(testing::HasSubstr(password)));

    ipmi::SessionSettings settings;
    settings.address = stateFile.string();
    settings.interfaceType = ipmi::SessionSettings::VirtualBmc;
    settings.privilegeLevel = 3;
    const auto session = ipmi::openTransport(settings);
    EXPECT_EQ(ask(*session, oem, getText, {4, 1, 0, 0}), Bytes({0xD4}));
    EXPECT_EQ(ask(*session, oem, setText, with({4, 1, 0, 0}, "mine")), Bytes({0xD4}));
    EXPECT_EQ(ask(*session, oem, getUser, {1, 3}), Bytes({0, 0}));
}

} // namespace
