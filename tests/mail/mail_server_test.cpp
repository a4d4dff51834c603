// Servers that ask for something, refuse or keep silent.
#include "mail_fixture.h"

#include <algorithm>
#include <cstdlib>
#include <elapsed.h>
#include <silent_port.h>

namespace {

class MailServer : public MailFixture {
protected:
    std::size_t refusals() const {
        const auto all = server->records();
        return std::count_if(all.begin(), all.end(),
                             [](const auto& entry) { return entry.contains("refused"); });
    }
    // A key, and its certificate for 127.0.0.1.
    std::string makeCertificate(const char* name) const {
        const std::string file = sysroot.place(name);
        const std::string command =
            "/usr/bin/openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes "
            "-days 2 -subj /CN=mail.test -addext subjectAltName=IP:127.0.0.1 -keyout " +
            file + " -out " + file + ".crt 2>" + file + ".log && cat " + file + ".crt >>" + file;
        EXPECT_EQ(std::system(command.c_str()), 0);
        return file;
    }
};

TEST_F(MailServer, AsksForALogin) {
    startServer({"--login", "alerts:se cret"});
    EXPECT_NE(send(), 0) << "without";

    fill(request.userName, "alerts");
    fill(request.password, "wrong");
    request.security = CIM_SMTP_AUTHENTICATE;
    request.retries = 3;
    request.retryInterval = 20;
    EXPECT_LT(seconds([&] { EXPECT_NE(send(), 0); }), 15) << "a wrong password is not tried again";

    fill(request.password, "se cret");
    EXPECT_EQ(sent()["user"], "alerts");
}

// Nobody knows then whether it is the server that is meant.
TEST_F(MailServer, OffersNoLogin) {
    startServer();
    fill(request.userName, "alerts");
    fill(request.password, "secret");
    request.security = CIM_SMTP_AUTHENTICATE;
    request.retries = 3;
    request.retryInterval = 20;
    EXPECT_LT(seconds([&] { EXPECT_NE(send(), 0); }), 15) << "it is not tried again";
    EXPECT_TRUE(server->records().empty());
}

TEST_F(MailServer, RefusesForNow) {
    startServer({"--refuse", "451 try later", "--refusals", "2"});
    request.retries = 1;
    EXPECT_NE(send(), 0);
    EXPECT_EQ(refusals(), 2U) << "the first attempt and a retry";
    EXPECT_EQ(send(), 0);

    startServer({"--refuse", "451 greylisted", "--stage", "recipient", "--refusals", "1", "--login",
                 "alerts:secret"});
    fill(request.userName, "alerts");
    fill(request.password, "secret");
    request.security = CIM_SMTP_AUTHENTICATE;
    request.retryInterval = 1;
    EXPECT_GE(seconds([&] { EXPECT_EQ(send(), 0); }), 1);
}

TEST_F(MailServer, RefusesForGood) {
    request.retries = 3;
    for (const char* stage : {"recipient", "data"}) {
        startServer({"--refuse", "550 no such user", "--stage", stage, "--refusals", "1"});
        EXPECT_NE(send(), 0) << stage;
    }
    EXPECT_EQ(refusals(), 2U) << "one of each server";
}

TEST_F(MailServer, KeepsSilent) {
    startServer({"--delay", "60"});
    request.timeout = 1;
    request.retries = 3;
    request.retryInterval = 20;
    const double took = seconds([&] { EXPECT_NE(send(), 0); });
    EXPECT_GE(took, 1);
    EXPECT_LT(took, 15) << "it is not tried again";
    fill(request.recipient, "another@example.org");
    EXPECT_LT(seconds([&] { EXPECT_NE(send(), 0); }), 1) << "it is left alone";
}

TEST_F(MailServer, RefusesOneRecipientForNow) {
    startServer({"--refuse", "451 greylisted", "--stage", "recipient", "--refusals", "2"});
    request.retries = 1;
    request.retryInterval = 1;
    EXPECT_NE(send(), 0);
    EXPECT_NE(send(), 0) << "it would take this one, and is not asked";
    EXPECT_TRUE(server->records(2).back().contains("refused"));
    fill(request.recipient, "another@example.org");
    EXPECT_EQ(send(), 0);
}

// Connections to a full backlog are not answered, as on a machine that is switched off.
TEST_F(MailServer, IsOnADeadMachine) {
    const SilentPort dead(SilentPort::Dead);
    request.port = dead.port();
    request.timeout = 30;
    request.retries = 3;
    request.retryInterval = 3;
    EXPECT_LT(seconds([&] { EXPECT_NE(send(), 0); }), 20)
        << "one attempt, which does not take the whole time";
    EXPECT_LT(seconds([&] { EXPECT_NE(send(), 0); }), 1) << "it is left alone";
}

TEST_F(MailServer, IsNotThere) {
    startServer();
    server.reset();
    EXPECT_NE(send(), 0);
}

TEST_F(MailServer, Encrypts) {
    startServer({"--certificate", makeCertificate("/mail.pem"), "--login", "alerts:secret"});
    fill(request.userName, "alerts");
    fill(request.password, "secret");
    request.security = CIM_SMTP_STARTTLS | CIM_SMTP_AUTHENTICATE;
    EXPECT_NE(send(), 0) << "a certificate that nobody vouches for";
    makeCertificate("/another.pem");
    std::filesystem::copy(sysroot.place("/another.pem.crt"), sysroot.place("/conf/smtp_ca.pem"));
    EXPECT_NE(send(), 0) << "a certificate of somebody else's";
    EXPECT_TRUE(server->records().empty());

    std::filesystem::copy(sysroot.place("/mail.pem.crt"), sysroot.place("/conf/smtp_ca.pem"),
                          std::filesystem::copy_options::overwrite_existing);
    const auto mail = sent();
    EXPECT_EQ(mail["encrypted"], true);
    EXPECT_EQ(mail["user"], "alerts");
}

TEST_F(MailServer, CannotEncrypt) {
    startServer();
    request.security = CIM_SMTP_STARTTLS;
    EXPECT_NE(send(), 0);
    EXPECT_TRUE(server->records().empty()) << "nothing in clear";
}

TEST_F(MailServer, IsReachedOverIpv6) {
    try {
        startServer({"--address", "::1"});
    } catch (const std::runtime_error&) {
        GTEST_SKIP() << "no IPv6 here";
    }
    fill(request.server, "::1");
    EXPECT_EQ(sent()["sender"], "bmc@example.org");
}

} // namespace
