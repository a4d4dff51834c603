#include <platform/support.h>

#include <cerrno>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sysroot_fixture.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::MatchesRegex;

class DebugLog : public SysrootFixture {
protected:
    void SetUp() override { unsetenv("PH_DEBUG_LOG"); }

    // Where the log goes is decided once in a process, so each case writes in a process of its own.
    template <class Work>
    static int inChild(Work work) {
        const pid_t child = fork();
        if (child == 0)
            _exit(work());
        int status = -1;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::vector<std::string> lines(std::string_view absolutePath) const {
        std::vector<std::string> result;
        std::ifstream file(sysroot.place(absolutePath));
        for (std::string line; std::getline(file, line);)
            result.push_back(line);
        return result;
    }
};

int writeBoth() {
    errno = EBADF;
    IDBG_LINUXAPP_DbgOut(134, "%s is %d\n", "answer", 42);
    IDBG_LINUXAPP_Runtime_DbgOut(135, "[%s:%d]\n two lines \n", "file.cpp", 7);
    return errno == EBADF ? 0 : 1;
}

constexpr char log[] = "/var/log/provider-helper.log";

TEST_F(DebugLog, isOffByDefault) {
    EXPECT_EQ(inChild(writeBoth), 0);
    EXPECT_FALSE(std::filesystem::exists(sysroot.place(log)));
}

TEST_F(DebugLog, writesALinePerCallWhereFeaturesSaySo) {
    write("/conf/features.ini", "[debug]\nlog = yes\n");
    EXPECT_EQ(inChild(writeBoth), 0) << "errno changed";
    const char head[] = "20[0-9-]+T[0-9:]+\\.[0-9]+Z \\[[0-9]+\\] ";
    EXPECT_THAT(lines(log),
                ElementsAre(MatchesRegex(head + std::string("134: answer is 42")),
                            MatchesRegex(head + std::string("135: \\[file.cpp:7\\]  two lines"))));
    struct stat status = {};
    ASSERT_EQ(stat(sysroot.place(log).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(DebugLog, goesToTheFileOfTheEnvironment) {
    write("/conf/features.ini", "[debug]\nlog = yes\n");
    const auto status = inChild([&] {
        setenv("PH_DEBUG_LOG", sysroot.place("/tmp/own.log").c_str(), 1);
        return writeBoth();
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(lines("/tmp/own.log").size(), 2u);
    EXPECT_FALSE(std::filesystem::exists(sysroot.place(log)));
}

TEST_F(DebugLog, keepsLinesOfThreadsApartAndCutsLongOnes) {
    write("/conf/features.ini", "[debug]\nlog = yes\n");
    constexpr int threads = 4;
    constexpr int count = 200;
    inChild([] {
        const std::string text(4000, 'x');
        std::vector<std::jthread> writers;
        writers.reserve(threads);
        for (int i = 0; i < threads; ++i)
            writers.emplace_back([&] {
                for (int line = 0; line < count; ++line)
                    IDBG_LINUXAPP_DbgOut(134, "%s\n", text.c_str());
            });
        return 0;
    });
    const auto written = lines(log);
    EXPECT_EQ(written.size(), std::size_t{threads} * count);
    for (const auto& line : written)
        ASSERT_THAT(line, testing::AllOf(testing::SizeIs(1023), MatchesRegex("20.*134: x+")));
}

} // namespace
