// What clients see of sshd_config.
#include "managed_bmc.h"
#include "provider_helper/service_sessions.h"

namespace {

class SshOptions : public ManagedBmc {
protected:
    SshOptions() : ManagedBmc(R"({"services": [{"name": "ssh", "securePort": 22, "activeSessions": 1}]})") {
        std::filesystem::create_directories(sysroot.place("/etc/ssh"));
    }
    // Versions, algorithms, names of others, keep-alive, X11 and compression, with blanks between them.
    std::string options() const {
        std::string all;
        for (const char* name : {"EnabledSSHVersions", "EnabledEncryptionAlgorithms",
                                 "OtherEnabledEncryptionAlgorithm", "KeepAlive", "ForwardX11", "Compression"})
            all += (all.empty() ? "" : " ") + textOf(only(settings), name);
        return all;
    }

    const ClassRequests settings{broker, PH_CLASS_FUNCTIONS(SSHSettingData)};
    const ClassRequests sessions{broker, PH_CLASS_FUNCTIONS(SSHProtocolEndpoint)};
};

TEST_F(SshOptions, areWhatTheFileSays) {
    const std::string nothing = "<none> <none> <none> <none> <none> <none>";
    EXPECT_EQ(options(), nothing) << "there is no file";
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"all",
         "# Protocol 1\n protocol=2\nCiphers aes256-ctr,3des-cbc,arcfour\r\nTCPKeepAlive "
         "\"no\"\nX11Forwarding yes\n"
         "Compression delayed # after the login\n",
         "{3} {1, 3, 4} {\"aes256-ctr\"} FALSE TRUE TRUE"},
        {"the first counts", "KeepAlive yes\nTCPKeepAlive no\nProtocol 2,1",
         "{3, 2} <none> <none> TRUE <none> <none>"},
        {"for some sessions", "Match user root\nX11Forwarding yes\n", nothing},
        {"overruled elsewhere", "include /etc/ssh/more\nX11Forwarding yes\n", nothing},
        {"changes of the server's list", "Ciphers +aes128-cbc\nProtocol 2,3\n", nothing},
        {"no value", "X11Forwarding\nTCPKeepAlive maybe\nProtocol 1,2,1\nCiphers ,\n", nothing},
        {"no text", "Protocol 2\n" + std::string(1, '\0'), nothing},
        {"too long", "Protocol 2\n" + std::string(64 * 1024, '#'), nothing},
        {"too many ciphers",
         [] {
             std::string line = "Ciphers a";
             for (int i = 0; i < PH_SSH_MAX_CIPHERS; ++i)
                 line += ",b";
             return line;
         }(),
         nothing},
    };
    for (const auto& [what, file, expected] : cases) {
        write("/etc/ssh/sshd_config", file);
        EXPECT_EQ(options(), expected) << what;
    }
    std::filesystem::remove(sysroot.place("/etc/ssh/sshd_config"));
    std::filesystem::create_directory(sysroot.place("/etc/ssh/sshd_config"));
    EXPECT_EQ(options(), nothing) << "it is none";
}

TEST_F(SshOptions, tellASessionsVersionWhereThereIsOne) {
    for (const auto& [file, version] : {std::pair{"Protocol 2\n", "3"}, {"Protocol 1,2\n", "0"}, {"", "0"}}) {
        write("/etc/ssh/sshd_config", file);
        EXPECT_EQ(textOf(only(sessions), "SSHVersion"), version) << file;
    }
}

} // namespace
