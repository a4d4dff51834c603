// How far the reading of a long event log is.
#include "log_progress.h"

#include <gtest/gtest.h>
#include <sstream>
#include <vector>

namespace {

constexpr std::uint8_t storage = 0x0A;

class LogProgress : public testing::Test {
protected:
    using Bytes = std::vector<std::uint8_t>;

    void info(unsigned records) {
        progress.exchanged(
            storage, 0x40, {},
            Bytes{0, 0x51, static_cast<std::uint8_t>(records), static_cast<std::uint8_t>(records >> 8)});
    }
    void entries(unsigned count, std::uint8_t offset = 0, std::uint8_t code = 0) {
        for (unsigned i = 0; i < count; ++i)
            progress.exchanged(storage, 0x43, Bytes{0, 0, 1, 0, offset, 0xFF}, Bytes{code, 2, 0});
    }
    std::string shown() {
        const std::string text = out.str();
        out.str("");
        return text;
    }

    std::ostringstream out;
    phctl::StatusLine line{out, false};
    phctl::LogProgress progress{line};
};

TEST_F(LogProgress, isShownForLongLogsOnly) {
    entries(5000); // of a log that nobody has asked the length of
    info(1000);
    entries(1000);
    EXPECT_EQ(shown(), "");
    info(1001);
    entries(1001);
    EXPECT_EQ(shown(), "Event log: 100 of 1001\nEvent log: 300 of 1001\nEvent log: 600 of 1001\n"
                       "Event log: 800 of 1001\nEvent log: 1001 of 1001\n");
    entries(1000); // that came in meanwhile
    EXPECT_EQ(shown(), "");
}

TEST_F(LogProgress, countsRecordsThatArrived) {
    info(4000);
    entries(99);
    entries(500, 8);                                                               // second halves of records
    entries(500, 0, 0xC5);                                                         // lost reservations
    progress.exchanged(storage, 0x23, Bytes{0, 0, 0, 0, 0, 0xFF}, Bytes{0, 1, 0}); // Get SDR
    progress.exchanged(0x04, 0x43, Bytes{0, 0, 0, 0, 0, 0xFF}, Bytes{0, 1, 0});
    progress.exchanged(storage, 0x43, Bytes{0, 0, 0, 0, 0, 0xFF}, Bytes{});
    EXPECT_EQ(shown(), "");
    entries(1);
    EXPECT_EQ(shown(), "Event log: 100 of 4000\n");
    info(2000); // read again, because records were deleted
    entries(500);
    EXPECT_EQ(shown(), "Event log: 500 of 2000\n");
}

} // namespace
