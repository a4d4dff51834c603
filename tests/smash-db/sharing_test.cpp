#include "database_fixture.h"

#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr int rounds = 100;

// Opens, changes, reads and closes as requests do.
int work(int type) {
    for (int i = 1; i <= rounds; ++i) {
        SMASH_DB_HANDLE handle = nullptr;
        DeviceRecord device = {};
        device.type = type;
        device.requestedState = static_cast<std::uint16_t>(i);
        DeviceRecord* stored = nullptr;
        const bool isGood = smash_db_init(&handle) == 0 && db_set_device(handle, &device) == 0 &&
                            db_get_device_bytype(handle, type, &stored) == 0 && stored->requestedState == i;
        std::free(stored);
        if (!isGood || db_close(handle) != 0) {
            std::fprintf(stderr, "round %d: %s\n", i, db_last_error());
            return 1;
        }
    }
    return 0;
}

// None of them creates the database before the others: they start without one.
TEST_F(SysrootFixture, processesAndThreadsShareADatabase) {
    const pid_t child = fork();
    if (child == 0)
        _exit(work(1));
    int threadResult = -1;
    std::jthread thread([&] { threadResult = work(2); });
    EXPECT_EQ(work(3), 0);
    thread.join();
    EXPECT_EQ(threadResult, 0);
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);

    const Handle handle = openDatabase(db_init);
    for (const int type : {1, 2, 3}) {
        const auto device = getRow(db_get_device_bytype, handle, type);
        ASSERT_NE(device, nullptr) << db_last_error();
        EXPECT_EQ(device->requestedState, rounds);
    }
}

} // namespace
