// The indication provider, loaded and unloaded as object managers do. The monitor that it starts stays: this
// is a process of its own.
#include "broker/object_manager.h"
#include "paths.h"

#include <platform/sel_event_message.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sysroot_fixture.h>
#include <unistd.h>

namespace {

class IndicationProvider : public SysrootFixture {
protected:
    IndicationProvider() {
        std::filesystem::create_symlink(paths::interopLibrary,
                                        sysroot.place("/usr/local/lib/libinterop_provider.so"));
    }
    // Loads the module, asks its provider to clean up, and unloads it whatever it answers: not every object
    // manager looks.
    void reload() {
        using Create = CMPIIndicationMI* (*)(const CMPIBroker*, const CMPIContext*, CMPIStatus*);
        void* const module = dlopen(paths::providerModule, RTLD_NOW);
        const auto create = reinterpret_cast<Create>(dlsym(module, "ProviderHelper_Create_IndicationMI"));
        providers.push_back(create(broker.handle(), nullptr, nullptr));
        EXPECT_EQ(cleanUp(providers.back(), false), CMPI_RC_NEVER_UNLOAD);
        dlclose(module);
    }
    static CMPIrc cleanUp(CMPIIndicationMI* provider, bool terminating) {
        return provider->ft->cleanup(provider, nullptr, terminating).rc;
    }
    // Somebody takes what is written to the pipe.
    void expectReader() const {
        constexpr int patience = 500; // of 10 ms
        int writer = -1;
        for (int i = 0; writer < 0 && i < patience; ++i, usleep(10000))
            writer = open(pipe.c_str(), O_WRONLY | O_NONBLOCK);
        const SelEventMessage message{};
        EXPECT_EQ(::write(writer, &message, sizeof message), static_cast<ssize_t>(sizeof message));
        int left = 1;
        for (int i = 0; left > 0 && i < patience; ++i, usleep(10000))
            ioctl(writer, FIONREAD, &left);
        EXPECT_EQ(left, 0);
        close(writer);
    }
    static std::ptrdiff_t threads() {
        const std::filesystem::directory_iterator tasks("/proc/self/task");
        return std::distance(begin(tasks), end(tasks));
    }

    const std::string pipe = sysroot.place(SEL_EVENT_PIPE);
    const broker::Broker broker;
    const broker::ObjectManager objectManager{broker};
    std::vector<CMPIIndicationMI*> providers;
};

TEST_F(IndicationProvider, hasOneMonitorForAsLongAsTheProcess) {
    const auto before = threads();
    for (int i = 0; i < 3; ++i) {
        reload();
        expectReader();
        EXPECT_EQ(threads(), before + 1);
    }
    for (CMPIIndicationMI* const provider : providers)
        EXPECT_EQ(cleanUp(provider, true), CMPI_RC_OK);
    EXPECT_FALSE(std::filesystem::exists(pipe));
}

} // namespace
