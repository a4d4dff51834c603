// Mails to a real SMTP server, which says what it got.
#pragma once

#include "platform/cim_mail.h"
#include "platform/mail.h"

#include <cstring>
#include <server_script.h>
#include <sysroot_fixture.h>

class MailFixture : public SysrootFixture {
protected:
    template <std::size_t N>
    static void fill(char (&field)[N], std::string_view text) {
        std::memset(field, 0, N);
        text.copy(field, N);
    }

    void startServer(std::vector<std::string> arguments = {}) {
        server =
            std::make_unique<ServerScript>("mail_server.py", sysroot.place("/mails"), std::move(arguments));
        request.port = server->port();
    }
    int send() const { return smtp_mail(&request); }
    // The only mail that came.
    nlohmann::json sent() const {
        EXPECT_EQ(send(), 0);
        const auto all = server->records(1);
        EXPECT_EQ(all.size(), 1U);
        return all.empty() ? nlohmann::json::object() : all.back();
    }

    MailFixture() {
        fill(request.hostName, "bmc.example.org");
        fill(request.server, "127.0.0.1");
        fill(request.sender, "bmc@example.org");
        fill(request.recipient, "admin@example.org");
        fill(request.subject, "Alert");
        fill(request.body, "Fan 1\r\n");
        request.timeout = 30;
    }

    AlertMailRequest request{};
    std::unique_ptr<ServerScript> server;
};
