// What mails look like when they arrive.
#include "mail_fixture.h"

#include <atomic>
#include <gmock/gmock.h>
#include <set>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

class Mail : public MailFixture {
protected:
    Mail() { startServer(); }

    // What every message must keep to, whatever it says.
    static void expectSafe(const std::string& raw) {
        std::size_t start = 0;
        while (start < raw.size()) {
            const std::size_t end = raw.find("\r\n", start);
            ASSERT_NE(end, std::string::npos) << "the last line has no end";
            const std::string line = raw.substr(start, end - start);
            const bool hasEncodedWord = line.find("=?UTF-8?B?") != std::string::npos;
            EXPECT_LE(line.size(), hasEncodedWord ? 76U : 998U) << line;
            for (const char c : line)
                EXPECT_TRUE(c >= ' ' && c <= '~') << "byte " << static_cast<int>(c) << " in: " << line;
            start = end + 2;
        }
    }
};

TEST_F(Mail, HasEnvelopeAndHeaders) {
    fill(request.moreRecipients[1], "second@example.org");
    fill(request.body, "EventID\t\t:\t0a\r\nSensorName\t\t:\tFan 1(66)\r\n");
    const auto mail = sent();
    EXPECT_EQ(mail["helo"], "bmc.example.org");
    EXPECT_EQ(mail["sender"], "bmc@example.org");
    EXPECT_THAT(mail["recipients"], ElementsAre("admin@example.org", "second@example.org"));
    EXPECT_EQ(mail["user"], nullptr);
    EXPECT_EQ(mail["body"], "EventID\t\t:\t0a\r\nSensorName\t\t:\tFan 1(66)\r\n");

    const auto headers = mail["headers"].get<std::map<std::string, std::string>>();
    EXPECT_EQ(headers.at("From"), "bmc@example.org");
    EXPECT_EQ(headers.at("To"), "admin@example.org, second@example.org");
    EXPECT_EQ(headers.at("Subject"), "Alert");
    EXPECT_THAT(
        headers.at("Date"),
        MatchesRegex("(Mon|Tue|Wed|Thu|Fri|Sat|Sun), [0-9]{2} (Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|"
                     "Dec) 20[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2} \\+0000"));
    EXPECT_THAT(headers.at("Message-ID"), MatchesRegex("<[0-9]+\\.[0-9a-f]{16}@bmc\\.example\\.org>"));
    EXPECT_EQ(headers.at("MIME-Version"), "1.0");
    EXPECT_EQ(headers.at("Content-Type"), "text/plain; charset=\"UTF-8\"");
}

TEST_F(Mail, CarriesAnyBody) {
    const std::string longLine(900, 'x');
    struct Case {
        std::string body, arrives;
    };
    const std::vector<Case> cases{
        {"one\ntwo\r\nthree", "one\r\ntwo\r\nthree\r\n"},
        {"above\r\n.\r\n..below\n.\n", "above\r\n.\r\n..below\r\n.\r\n"},
        {"Gehäuse geöffnet: 温度 \U0001F525\r\n", "Gehäuse geöffnet: 温度 \U0001F525\r\n"},
        {"no UTF-8: \x80\xFF\n", "no UTF-8: \\x80\\xff\r\n"}, // as the server writes such bytes down
        {longLine + "\n" + longLine.substr(0, 76) + " \t\n",
         longLine + "\r\n" + longLine.substr(0, 76) + " \t\r\n"},
        {std::string(75, 'x') + "=\n" + std::string(74, 'x') + " \n",
         std::string(75, 'x') + "=\r\n" + std::string(74, 'x') + " \r\n"},
        {std::string(75, 'x') + ".\n" + std::string(75, 'x') + "..\n",
         std::string(75, 'x') + ".\r\n" + std::string(75, 'x') + "..\r\n"},
        {"=3D =?UTF-8?Q?a?= \x01\x7F\r.\r\nFrom me\n", "=3D =?UTF-8?Q?a?= \x01\x7F\r.\r\nFrom me\r\n"},
        {std::string(1024, '\x07'), std::string(1024, '\x07') + "\r\n"}, // no NUL at its end, long on its way
        {"", ""},
    };
    std::size_t count = 0;
    for (const Case& c : cases) {
        fill(request.body, c.body);
        ASSERT_EQ(send(), 0);
        const auto mails = server->records(++count);
        ASSERT_EQ(mails.size(), count);
        EXPECT_EQ(mails.back()["body"], c.arrives);
        expectSafe(mails.back()["raw"].get<std::string>());
    }
}

TEST_F(Mail, CarriesAnySubjectAndNoMoreHeaders) {
    std::string umlauts;
    while (umlauts.size() < 200)
        umlauts += "xäö温";
    struct Case {
        std::string subject, arrives;
    };
    std::size_t count = 0;
    for (const auto& [subject, arrives] : {
             Case{"Alert from server CIM Module", "Alert from server CIM Module"},
             Case{umlauts, umlauts},
             Case{"=?UTF-8?Q?not_meant?=", "=?UTF-8?Q?not_meant?="},
             Case{"a\r\nBcc: thief@example.org\r\n\r\nbody", "a  Bcc: thief@example.org    body"},
             Case{"ä\nBcc: thief@example.org", "ä Bcc: thief@example.org"},
             Case{std::string(256, 's'), std::string(256, 's')}, // no NUL at its end
             Case{"", ""},
         }) {
        fill(request.subject, subject);
        ASSERT_EQ(send(), 0);
        const auto mails = server->records(++count);
        ASSERT_EQ(mails.size(), count);
        EXPECT_EQ(mails.back()["headers"]["Subject"], arrives);
        EXPECT_EQ(mails.back()["headers"].size(), 9U);
        EXPECT_EQ(mails.back()["body"], "Fan 1\r\n");
        expectSafe(mails.back()["raw"].get<std::string>());
    }
}

TEST_F(Mail, IsFromTheHostWhenItHasNoSender) {
    fill(request.sender, "");
    EXPECT_EQ(sent()["sender"], "bmc@bmc.example.org");
}

TEST_F(Mail, SaysHelloWithTheMachinesNameWhenItsOwnIsNone) {
    fill(request.hostName, "a b\r\nMAIL FROM:<thief@example.org>");
    EXPECT_THAT(sent()["helo"].get<std::string>(),
                testing::AllOf(Not(HasSubstr(" ")), Not(testing::IsEmpty())));
}

TEST_F(Mail, WithoutAProperAddressIsNotSent) {
    const AlertMailRequest proper = request;
    struct Case {
        const char *server, *sender, *recipient, *other;
        std::uint32_t port;
    };
    for (const auto& [address, sender, recipient, other, port] : {
             Case{"localhost", "a@b", "c@d", "", 0},
             Case{"127.0.0.1:1/x", "a@b", "c@d", "", 0},
             Case{"127.0.0.1\r\n", "a@b", "c@d", "", 0},
             Case{"", "a@b", "c@d", "", 0},
             Case{"127.0.0.1", "a@b", "c@d", "", 65536 + 25},
             Case{"127.0.0.1", "a@b", "", "", 0},
             Case{"127.0.0.1", "a@b", "c", "", 0},
             Case{"127.0.0.1", "a@b", "c@", "", 0},
             Case{"127.0.0.1", "a@b", "c@d> SIZE=1", "", 0},
             Case{"127.0.0.1", "a@b", "c@d\r\nRCPT TO:<thief@e>", "", 0},
             Case{"127.0.0.1", "a@b", "c@d,thief@e", "", 0},
             Case{"127.0.0.1", "a@b\nBcc: thief@e", "c@d", "", 0},
             Case{"127.0.0.1", "a@b", "c@d", "e@f\r\n", 0},
         }) {
        request = proper;
        fill(request.server, address);
        fill(request.sender, sender);
        fill(request.recipient, recipient);
        fill(request.moreRecipients[0], other);
        request.port = port != 0 ? port : proper.port;
        EXPECT_NE(send(), 0) << address << " " << sender << " " << recipient << " " << other;
    }
    EXPECT_NE(smtp_mail(nullptr), 0);
    EXPECT_TRUE(server->records().empty());
}

TEST_F(Mail, ManyThreadsSendAtOnce) {
    constexpr int count = 8;
    std::atomic<int> failures = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i)
        threads.emplace_back([&] { failures += send() != 0 ? 1 : 0; });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(failures, 0);
    std::set<std::string> ids;
    for (const auto& mail : server->records(count))
        ids.insert(mail["headers"]["Message-ID"].get<std::string>());
    EXPECT_EQ(ids.size(), static_cast<std::size_t>(count));
}

} // namespace
