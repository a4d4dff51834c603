// The first LAN sessions of a process, opened by several threads at the same time: FreeIPMI's cryptography is set up
// then. Each attempt takes a process of its own.
#include "ipmi/command.h"
#include "ipmi_sim.h"

#include <barrier>
#include <cstdio>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr int attempts = 10, sessions = 4;

// Returns how many threads got what they asked for.
int openSessions(const ipmi::SessionSettings& settings) {
    std::atomic<int> served = 0;
    std::barrier start(sessions);
    std::vector<std::thread> threads;
    for (int i = 0; i < sessions; ++i)
        threads.emplace_back([&] {
            start.arrive_and_wait();
            try {
                const auto transport = ipmi::openTransport(settings);
                ipmi::run(*transport, ipmi::command::getDeviceId, {});
                ++served;
            } catch (const std::exception& error) {
                std::fprintf(stderr, "%s\n", error.what());
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    return served;
}

TEST(FirstSessions, areOpenedByThreadsAtTheSameTime) {
    const ph_test::IpmiSim bmc(ph_test::thresholdSensors(1));
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            _exit(openSessions(bmc.settings()));
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status)) << "signal " << WTERMSIG(status);
        EXPECT_EQ(WEXITSTATUS(status), sessions);
    }
}

} // namespace
