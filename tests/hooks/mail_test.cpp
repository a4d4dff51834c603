// Alerts by e-mail, as OEM messages of the BMC.
#include "scripted_bmc.h"

#include <endian.h>
#include <string>

namespace {

constexpr std::uint8_t mailChannel = 1;
constexpr std::size_t blockSize = 32;

// A BMC whose texts are kept by their names.
class MailHooks : public HookTest {
protected:
    MailHooks() {
        bmc.respond = [this](const Bytes& request) { return respond(request); };
    }

    Bytes respond(const Bytes& request) {
        const bool isText = request[1] == 0x42 || request[1] == 0x43;
        const Bytes name(request.begin() + 2, request.begin() + (isText ? 5 : 2));
        switch (request[1]) {
        case 0x40:
            return {0x00, user};
        case 0x41:
            user = request[4];
            return {0x00};
        case 0x42: {
            Bytes answer{0x00};
            std::string text = texts[name];
            text.resize(512);
            answer.insert(answer.end(), text.data() + request[5] * blockSize,
                          text.data() + (request[5] + 1) * blockSize);
            return answer;
        }
        case 0x43:
            if (request[5] == 0)
                texts[name].clear();
            EXPECT_EQ(texts[name].size(), request[5] * blockSize);
            EXPECT_EQ(request.size(), 6 + blockSize);
            texts[name].append(request.begin() + 6, request.end());
            return {0x00};
        case 0x44:
            return server;
        default:
            return {0xC1};
        }
    }

    std::uint8_t user = 0;
    std::map<Bytes, std::string> texts; // by kind, owner and part
    Bytes server;
};

TEST_F(MailHooks, destinationsComeAndGo) {
    std::uint8_t read = 0;
    char subject[CIM_EMAIL_SUBJECT_SIZE + 1], message[CIM_EMAIL_MESSAGE_SIZE + 1];
    for (const auto& [subjectSize, messageSize] :
         {std::pair{0, 0}, {5, 31}, {32, 32}, {64, 256}, {63, 255}, {80, 300}}) {
        const std::string longSubject(static_cast<std::size_t>(subjectSize), 's');
        const std::string longMessage(static_cast<std::size_t>(messageSize), 'm');
        ASSERT_EQ(
            CIM_TRZSetEmailDest(&session, 3, 7, longSubject.c_str(), longMessage.c_str(), mailChannel, 30),
            0);
        ASSERT_EQ(CIM_TRZGetEmailDest(&session, 3, &read, subject, message, mailChannel, 30), 0);
        EXPECT_EQ(read, 7);
        EXPECT_EQ(subject, longSubject.substr(0, 64));
        EXPECT_EQ(message, longMessage.substr(0, 256));
    }
    EXPECT_EQ((texts[{1, mailChannel, 3}].size()), 256u);
    bmc.requests.clear();
    EXPECT_EQ(CIM_TRZSetEmailDest(&session, 3, 0, "", "", mailChannel, 30), 0);
    EXPECT_EQ(bmc.requests.size(), 3u) << "an empty text is one block";
}

TEST_F(MailHooks, usersHaveAnAddress) {
    texts[{2, 5, 0}] = std::string(254, 'u');
    char address[CIM_USER_EMAIL_SIZE];
    EXPECT_EQ(CIM_TRZGetUserEmail(&session, 5, address, 30), 0);
    EXPECT_EQ(address, std::string(254, 'u'));
    texts[{2, 5, 0}] = std::string(300, 'u'); // more than a BMC may have
    EXPECT_EQ(CIM_TRZGetUserEmail(&session, 5, address, 30), 0);
    EXPECT_EQ(address, std::string(255, 'u'));
    EXPECT_EQ(CIM_TRZGetUserEmail(&session, 6, address, 30), 0);
    EXPECT_STREQ(address, "");
}

TEST_F(MailHooks, failWhereTheBmcDoesNot) {
    CIM_SMTPInfo info{};
    char text[CIM_EMAIL_MESSAGE_SIZE + 1];
    server = {0x00, 1, 0, 25, 0, 192, 0, 2, 25}; // cut
    EXPECT_EQ(CIM_TRZGetSMTPInfo(&session, &info, mailChannel, 30), -1);
    EXPECT_EQ(CIM_TRZGetSMTPServerInfo(&session, text, mailChannel, 30), -1);
    texts[{4, mailChannel, 0}] = "secret";
    server.resize(25);
    for (std::uint8_t which = 3; which <= 6; ++which) {
        bmc.respond = [&](const Bytes& request) {
            return request[1] == 0x42 && request[2] == which ? Bytes{0xD4} : respond(request);
        };
        EXPECT_EQ(CIM_TRZGetSMTPInfo(&session, &info, mailChannel, 30), -1);
        EXPECT_STREQ(info.password, "") << "nothing of a record that is not whole";
    }
    EXPECT_THAT(bmc.debugLog, testing::Not(testing::HasSubstr("secret")));
    EXPECT_EQ(CIM_TRZSetEmailDest(&session, 3, 1, nullptr, "", mailChannel, 30), -1);
    EXPECT_EQ(CIM_TRZGetSMTP2Info(&session, nullptr, mailChannel, 30), -1);
}

} // namespace
