// Commands that change users and services.
#include "virtual_bmc_fixture.h"

#include <fstream>
#include <sstream>

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr std::uint8_t setUserAccess = 0x43, getUserAccess = 0x44;
constexpr std::uint8_t setUserName = 0x45, getUserName = 0x46, setUserPassword = 0x47;
constexpr std::uint8_t getService = 0x10, setService = 0x11;

class Users : public VirtualBmcFixture {
protected:
    void SetUp() override {
        create(R"({"users": [{"id": 2, "name": "root"}, {"id": 3, "name": "fixed", "fixedName": true}]})");
        bmc = open();
    }
    Bytes tell(std::uint8_t command, const Bytes& request) { return ask(*bmc, app, command, request); }
    Bytes password(std::uint8_t slot, std::uint8_t operation, std::string_view text) {
        return tell(setUserPassword, with({slot, operation}, text, (slot & 0x80) != 0 ? 20 : 16));
    }
    std::unique_ptr<ipmi::Transport> bmc;
};

TEST_F(Users, areMadeChangedAndForgotten) {
    EXPECT_THAT(tell(getUserAccess, {1, 5}), ElementsAre(0, 16, 0x82, 1, 0x0F));
    EXPECT_THAT(tell(setUserName, with({5}, "eva", 16)), ElementsAre(0));
    EXPECT_EQ(tell(getUserName, {5}), with({0}, "eva", 16));
    EXPECT_THAT(tell(getUserAccess, {1, 5}), ElementsAre(0, 16, 0x82, 1, 0x0F)) << "nothing but a name";
    EXPECT_THAT(tell(setUserAccess, {0xF1, 5, 3}), ElementsAre(0));
    EXPECT_THAT(tell(setUserPassword, {5, 1}), ElementsAre(0));
    EXPECT_THAT(tell(getUserAccess, {1, 5}), ElementsAre(0, 16, 0x43, 1, 0x73));
    EXPECT_THAT(tell(setUserAccess, {0x01, 5, 4}), ElementsAre(0)) << "bits not enabled for change";
    EXPECT_THAT(tell(setUserPassword, {5, 0}), ElementsAre(0));
    EXPECT_THAT(tell(getUserAccess, {1, 5}), ElementsAre(0, 16, 0x82, 1, 0x74));
    password(5, 2, "word");
    EXPECT_THAT(tell(setUserName, with({5}, "", 16)), ElementsAre(0));
    EXPECT_THAT(tell(setUserName, with({5}, "bob", 16)), ElementsAre(0));
    EXPECT_THAT(password(5, 3, "word"), ElementsAre(0x80)) << "the former user's password";
}

TEST_F(Users, passwordsAreComparedInTheirForm) {
    EXPECT_THAT(password(2, 3, ""), ElementsAre(0x80)) << "none was set";
    EXPECT_THAT(password(2, 2, "word"), ElementsAre(0));
    EXPECT_THAT(password(2, 3, "word"), ElementsAre(0));
    EXPECT_THAT(password(2, 3, "wor"), ElementsAre(0x80));
    EXPECT_THAT(password(2, 3, {"word\0x", 6}), ElementsAre(0x80));
    EXPECT_THAT(password(0x82, 3, "word"), ElementsAre(0x81)) << "wrong size";
    EXPECT_THAT(password(0x82, 2, "twenty bytes of word"), ElementsAre(0));
    EXPECT_THAT(password(0x82, 3, "twenty bytes of word"), ElementsAre(0));
    EXPECT_THAT(password(0x82, 3, "twenty bytes of worx"), ElementsAre(0x80));
}

TEST_F(Users, areLetInWithNamePasswordAndAccess) {
    vbmc::VirtualBmc machine(stateFile);
    const auto isIn = [&](const char* text) { return machine.letsIn("root", text); };
    EXPECT_FALSE(isIn("")) << "no password was set";
    password(2, 2, "sixteen letters!");
    EXPECT_TRUE(isIn("sixteen letters!"));
    EXPECT_FALSE(isIn("sixteen letters?"));
    EXPECT_FALSE(isIn("sixteen letters!!"));
    EXPECT_FALSE(machine.letsIn("nobody", "sixteen letters!"));
    password(0x82, 2, "seventeen letters");
    EXPECT_TRUE(isIn("seventeen letters"));
    password(2, 0, ""); // disabled
    EXPECT_FALSE(isIn("seventeen letters"));
    password(2, 1, "");
    EXPECT_TRUE(isIn("seventeen letters"));
    tell(setUserAccess, {0x91, 2, 15}); // no access
    EXPECT_FALSE(isIn("seventeen letters"));
}

TEST_F(Users, whatIsWrongIsRefused) {
    const struct {
        const char* what;
        std::uint8_t command;
        Bytes request;
        std::uint8_t code;
    } cases[] = {
        {"access of user 0", setUserAccess, {0x91, 0, 4}, 0xC9},
        {"access of user 17", setUserAccess, {0x91, 17, 4}, 0xC9},
        {"privilege 6", setUserAccess, {0x91, 2, 6}, 0xCC},
        {"short access", setUserAccess, {0x91, 2}, 0xC7},
        {"name of user 17", setUserName, with({17}, "eva", 16), 0xC9},
        {"a fixed name", setUserName, with({3}, "eva", 16), 0xCC},
        {"not UTF-8", setUserName, with({5}, "\xFF", 16), 0xCC},
        {"short name", setUserName, with({5}, "eva", 15), 0xC7},
        {"short password", setUserPassword, with({2, 2}, "word", 15), 0xC7},
        {"16 bytes for 20", setUserPassword, with({0x82, 2}, "word", 16), 0xC7},
        {"password of user 17", setUserPassword, with({17, 2}, "word", 16), 0xC9},
    };
    for (const auto& item : cases)
        EXPECT_THAT(tell(item.command, item.request), ElementsAre(item.code)) << item.what;
}

TEST_F(Users, passwordsAreKeptHashedAndSalted) {
    password(2, 2, "unmistakable");
    password(3, 2, "unmistakable");
    std::stringstream file;
    file << std::ifstream(stateFile).rdbuf();
    EXPECT_THAT(file.str(), AllOf(HasSubstr("passwordHash"), Not(HasSubstr("unmistakable"))));
    const auto hashes = file.str();
    const auto first = hashes.find("$5$"), second = hashes.find("$5$", first + 1);
    ASSERT_NE(second, std::string::npos);
    EXPECT_NE(hashes.substr(first, 60), hashes.substr(second, 60));
    EXPECT_THAT(vbmc::VirtualBmc(stateFile).describe().dump(), Not(HasSubstr("$5$")));
    EXPECT_THAT(password(2, 3, "unmistakable"), ElementsAre(0));
}

TEST_F(Users, servicesAreTheMachines) {
    const auto web = ask(*bmc, oem, getService, {1, 0, 0, 0});
    ASSERT_EQ(web.size(), 26U);
    Bytes request{1, 0, 0, 0};
    request.insert(request.end(), web.begin() + 1, web.end() - 1);
    request[20] = 2;
    EXPECT_THAT(ask(*bmc, oem, setService, request), ElementsAre(0xCC));
    request[20] = 0;
    request[4] = 'x';
    EXPECT_THAT(ask(*bmc, oem, setService, request), ElementsAre(0xCC)) << "another service's name";
    EXPECT_EQ(ask(*bmc, oem, getService, {1, 0, 0, 0}), web);
    for (const Bytes& none :
         {Bytes{0, 0, 0, 0}, Bytes{3, 0, 0, 0}, Bytes{0x80, 0, 0, 0}, Bytes{0, 0, 0, 0x80}})
        EXPECT_THAT(ask(*bmc, oem, getService, none), ElementsAre(0xCB));
    create(R"({"services": [{"name": "ssh"}]})");
    EXPECT_THAT(ask(*bmc, oem, getService, {1, 0, 0, 0}), ElementsAre(0xCB)) << "not of this machine";
    EXPECT_EQ(ask(*bmc, oem, getService, {0x20, 0, 0, 0})[0], 0);
}

} // namespace
