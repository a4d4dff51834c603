// What a BMC's memory has to have left for this library: the heap at its peak while every class is enumerated once.
#include "bmc_session.h"
#include "cim_values.h"
#include "paths.h"
#include "schema/class_schema.h"
#include "virtual-bmc/virtual_bmc.h"

#include <cstring>
#include <gmock/gmock.h>
#include <malloc.h>
#include <memory>
#include <sys/wait.h>
#include <sysroot_fixture.h>
#include <unistd.h>

namespace {

// 2 MiB on a BMC of 32 bits; half as much again where pointers are twice as long.
constexpr std::size_t mostBytes = sizeof(void*) == 4 ? 2 << 20 : 3 << 20;

#if defined __SANITIZE_ADDRESS__ || defined __SANITIZE_THREAD__
constexpr bool isOwnHeap = false;
#else
constexpr bool isOwnHeap = true;
#endif

// The most that the C library ever had of the system for its heap.
std::size_t heapPeak() {
    char* text = nullptr;
    std::size_t size = 0;
    std::FILE* const out = open_memstream(&text, &size);
    malloc_info(0, out);
    std::fclose(out);
    const std::unique_ptr<char, void (*)(void*)> owned(text, std::free);
    // That of the whole process comes last.
    const std::string all(text);
    const char* const label = "<system type=\"max\" size=\"";
    const std::size_t found = all.rfind(label);
    return found == all.npos ? 0 : std::stoul(all.substr(found + std::strlen(label)));
}

class ProviderMemory : public SysrootFixture {
protected:
    // A child makes the machine: what that takes is not of the heap that is looked at.
    void SetUp() override {
        const pid_t child = fork();
        if (child == 0) {
            const auto stateFile = sysroot.place("/var/lib/virtual-bmc/bmc.state");
            vbmc::create(stateFile, paths::sampleServer);
            synchronise(stateFile);
            _exit(HasFailure() ? 1 : 0);
        }
        int status = 1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_EQ(status, 0);
    }
};

TEST_F(ProviderMemory, ofEveryClassEnumeratedOnce) {
    if (!isOwnHeap || heapPeak() == 0)
        GTEST_SKIP() << "the C library does not keep this process's heap";
    broker::Broker broker;
    broker.loadProvider(paths::providerModule, "ProviderHelper");
    const std::size_t idle = heapPeak();
    std::size_t instances = 0;
    for (const auto& served : schema::servedClasses())
        instances += broker.enumerateInstances(path(std::string(served.name))).instances.size();
    const std::size_t peak = heapPeak() - idle;
    std::printf("idle %zu KB, %zu KB more for %zu instances\n", idle / 1024, peak / 1024, instances);
    EXPECT_GT(instances, 150U);
    EXPECT_LE(peak, mostBytes);
}

} // namespace
