// Which machine phctl lets the providers change.
#include "private_root.h"
#include "sysroot_fixture.h"

namespace {

using ipmi::SessionSettings;
using PrivateRoot = SysrootFixture;

TEST_F(PrivateRoot, isWantedForEveryBmcThatIsAnotherMachine) {
    const std::string own = sysroot.place("/"), link = sysroot.place("/tmp/link");
    std::filesystem::create_directory_symlink("/", link);
    const char* const notOwn[] = {nullptr, "", "/", "/usr/..", link.c_str()};
    for (const int interfaceType :
         {SessionSettings::Lan, SessionSettings::LocalDevice, SessionSettings::VirtualBmc})
        for (const bool isHost : {false, true}) {
            SessionSettings bmc;
            bmc.interfaceType = interfaceType;
            const bool isHere = interfaceType == SessionSettings::LocalDevice && !isHost;
            EXPECT_EQ(phctl::whyNotHere(bmc, own.c_str(), isHost), "");
            for (const char* root : notOwn) {
                const std::string reason = phctl::whyNotHere(bmc, root, isHost);
                EXPECT_EQ(reason.find("set PH_SYSROOT to a folder") == std::string::npos, isHere)
                    << interfaceType << isHost << (root != nullptr ? root : "none");
            }
        }
}

} // namespace
