// Which libraries a process loads for its sessions. This program is not linked to libphipmi: it loads a copy,
// beside which it puts the libraries that it wants found.
#include "ipmi/transport.h"
#include "paths.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <link.h>
#include <sys/stat.h>
#include <sysroot_fixture.h>

namespace {

namespace fs = std::filesystem;
using ipmi::SessionSettings;
using testing::AllOf;
using testing::HasSubstr;

bool isLoaded(const char* name) {
    struct Search {
        const char* name;
        bool isFound = false;
    } search{name};
    dl_iterate_phdr(
        [](dl_phdr_info* library, std::size_t, void* data) {
            auto& wanted = *static_cast<Search*>(data);
            wanted.isFound |= std::strstr(library->dlpi_name, wanted.name) != nullptr;
            return 0;
        },
        &search);
    return search.isFound;
}

class TransportLibrary : public SysrootFixture {
protected:
    void SetUp() override {
        fs::copy(fs::path(paths::libraries) / "libphipmi.so", sysroot.place("/usr/local/lib"));
        void* const library = dlopen(sysroot.place("/usr/local/lib/libphipmi.so").c_str(), RTLD_NOW);
        ASSERT_NE(library, nullptr) << dlerror();
        open_ = reinterpret_cast<decltype(open_)>(
            dlsym(library, "_ZN4ipmi13openTransportERKNS_15SessionSettingsE"));
        ASSERT_NE(open_, nullptr) << dlerror();
    }
    void provide(const char* library, const char* as) const {
        fs::copy(fs::path(paths::libraries) / library, sysroot.place("/usr/local/lib") / as,
                 fs::copy_options::overwrite_existing);
    }
    // Empty for a transport that opens.
    std::string problem(int interfaceType, const char* address) const {
        SessionSettings settings;
        settings.address = address;
        settings.interfaceType = interfaceType;
        try {
            open_(settings);
        } catch (const ipmi::TransportError& error) {
            return error.what();
        }
        return {};
    }

private:
    decltype(&ipmi::openTransport) open_ = nullptr;
};

// One test, as what is loaded stays.
TEST_F(TransportLibrary, isLoadedForTheSessionThatAsks) {
    fs::create_directory(sysroot.place("/dev"));
    ASSERT_EQ(mkfifo(sysroot.place("/dev/ipmi0").c_str(), 0600), 0);
    EXPECT_EQ(problem(SessionSettings::LocalDevice, ""), "");

    const char* const missing = "cannot be loaded: ";
    EXPECT_THAT(problem(SessionSettings::VirtualBmc, ""),
                AllOf(HasSubstr("platform library libphipmi-vbmc.so"), HasSubstr(missing)));
    EXPECT_THAT(problem(SessionSettings::Lan, "127.0.0.1"),
                AllOf(HasSubstr("platform library libphipmi-freeipmi.so"), HasSubstr(missing)));
    fs::remove(sysroot.place("/dev/ipmi0"));
    EXPECT_THAT(problem(SessionSettings::LocalDevice, ""),
                AllOf(HasSubstr("no local IPMI device /dev/ipmi0"), HasSubstr(missing)));

    provide("libipmi_test_stale_transports.so", "libphipmi-vbmc.so");
    EXPECT_THAT(problem(SessionSettings::VirtualBmc, ""), HasSubstr("it is of version 0, not of 1"));
    provide("libphsupport.so", "libphipmi-freeipmi.so");
    EXPECT_THAT(problem(SessionSettings::Lan, "127.0.0.1"), HasSubstr("it has no transports"));
    EXPECT_FALSE(isLoaded("/libfreeipmi.so"));

    fs::remove(sysroot.place("/usr/local/lib/libphipmi-freeipmi.so"));
    provide("libphipmi-freeipmi.so", "libphipmi-freeipmi.so");
    EXPECT_THAT(problem(SessionSettings::Lan, ""), HasSubstr("address is missing"));
    EXPECT_TRUE(isLoaded("/libfreeipmi.so"));
    EXPECT_FALSE(isLoaded("/libphipmi-vbmc.so"));

    fs::remove(sysroot.place("/usr/local/lib/libphipmi-vbmc.so"));
    provide("libphipmi-vbmc.so", "libphipmi-vbmc.so");
    EXPECT_THAT(problem(SessionSettings::VirtualBmc, "/nowhere/bmc.state"), HasSubstr("/nowhere/bmc.state"));
    EXPECT_TRUE(isLoaded("/libphipmi-vbmc.so"));
}

} // namespace
