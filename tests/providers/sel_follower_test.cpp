// Which records of a BMC's log are taken, and at what cost. The BMC's clock is set, so that records have the
// times that a test wants.
#include "sel_follower.h"

#include "bmc_session.h"
#include "ipmi/commands.h"
#include "virtual-bmc/virtual_bmc.h"

#include <fstream>
#include <gmock/gmock.h>
#include <sysroot_fixture.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SelFollowing : public SysrootFixture {
protected:
    void SetUp() override {
        const auto model = sysroot.place("/model.json");
        std::ofstream(model) << R"({"device": {}, "sel": {"capacity": 4, "whenFull": "wrap"}})";
        vbmc::create(stateFile, model);
        storeSession(virtualBmc(stateFile));
        ipmi::observeExchanges([this](auto, auto, auto, auto) { ++exchanges; });
    }
    void TearDown() override { ipmi::observeExchanges({}); }

    std::vector<std::uint8_t> ask(ipmi::CommandCode command, const std::vector<std::uint8_t>& request) const {
        std::vector<std::uint8_t> answer(64);
        const auto bmc = ipmi::openTransport(virtualBmc(stateFile));
        answer.resize(bmc->exchange(command.netFn, command.number, request, answer));
        EXPECT_EQ(answer.at(0), 0);
        return answer;
    }
    void setClock(std::uint8_t minutes) const {
        ask(ipmi::command::setSelTime, {static_cast<std::uint8_t>(minutes * 60), 0, 0, 0x60});
    }
    // The sensor's number tells events apart.
    std::uint8_t add(std::uint8_t sensor) const {
        return ask(ipmi::command::addSelEntry,
                   {0, 0, 2, 0, 0, 0, 0, 0x20, 0, 4, 1, sensor, 1, 0x57, 0, 0})[1];
    }
    std::vector<std::uint8_t> reservation() const {
        const auto answer = ask(ipmi::command::reserveSel, {});
        return {answer.at(1), answer.at(2)};
    }
    void clear() const {
        const auto id = reservation();
        ask(ipmi::command::clearSel, {id[0], id[1], 'C', 'L', 'R', 0xAA});
    }
    void remove(std::uint8_t record) const {
        const auto id = reservation();
        ask(ipmi::command::deleteSelEntry, {id[0], id[1], record, 0});
    }
    // The sensors of the events that are taken.
    std::vector<int> poll(SelFollower& follower) {
        std::vector<int> sensors;
        exchanges = 0;
        follower.poll([&](const auto& record) { sensors.push_back(record[11]); });
        return sensors;
    }

    const std::filesystem::path stateFile = sysroot.place("/bmc.state");
    unsigned exchanges = 0;
};

TEST_F(SelFollowing, takesEachNewRecordOnce) {
    setClock(0);
    add(1);
    SelFollower follower;
    EXPECT_THAT(poll(follower), IsEmpty()) << "what was there before is not news";
    EXPECT_THAT(poll(follower), IsEmpty());
    add(2);
    add(3);
    EXPECT_THAT(poll(follower), ElementsAre(2, 3));
    EXPECT_THAT(poll(follower), IsEmpty());
    EXPECT_THAT(poll(follower), IsEmpty());
    EXPECT_EQ(exchanges, 1U) << "a turn in which nothing has changed";
}

TEST_F(SelFollowing, survivesClearsWrapsAndDeletions) {
    setClock(0);
    add(1);
    SelFollower follower;
    poll(follower);
    // A clear, and a record of the same second.
    clear();
    add(2);
    EXPECT_THAT(poll(follower), ElementsAre(2));
    clear();
    EXPECT_THAT(poll(follower), IsEmpty());
    add(3);
    EXPECT_THAT(poll(follower), ElementsAre(3));
    // The oldest are dropped, the last that was taken among them; the count stays the same.
    for (std::uint8_t sensor = 4; sensor < 10; ++sensor)
        add(sensor);
    EXPECT_THAT(poll(follower), ElementsAre(6, 7, 8, 9));
    add(10);
    EXPECT_THAT(poll(follower), ElementsAre(10));
    add(11);
    EXPECT_THAT(poll(follower), ElementsAre(11)) << "of the same second as the one before";
    // The last that was taken is deleted alone.
    setClock(1);
    remove(add(12));
    const std::uint8_t last = add(13);
    EXPECT_THAT(poll(follower), ElementsAre(13));
    setClock(2);
    remove(last);
    EXPECT_THAT(poll(follower), IsEmpty());
    add(14);
    EXPECT_THAT(poll(follower), ElementsAre(14));
}

// A BMC that is busy, erases its log or answers nothing has not emptied its log.
TEST_F(SelFollowing, takesNothingTwiceAfterABmcThatRefused) {
    add(1);
    SelFollower follower;
    poll(follower);
    add(2);
    EXPECT_THAT(poll(follower), ElementsAre(2));
    for (const std::uint8_t code : std::initializer_list<std::uint8_t>{0xC0, 0x81, 0xC3}) {
        SCOPED_TRACE(static_cast<int>(code));
        clear();
        EXPECT_THAT(poll(follower), IsEmpty());
        add(3);
        vbmc::VirtualBmc(stateFile).addFault({.netFn = 0x0A, .command = 0x43, .value = code});
        EXPECT_THAT(poll(follower), IsEmpty());
        EXPECT_THAT(poll(follower), IsEmpty());
        vbmc::VirtualBmc(stateFile).clearFaults();
        EXPECT_THAT(poll(follower), ElementsAre(3));
        EXPECT_THAT(poll(follower), IsEmpty());
    }
    // It has records, and none of them is there.
    add(4);
    vbmc::VirtualBmc(stateFile).addFault({.netFn = 0x0A, .command = 0x43, .value = 0xCB});
    EXPECT_THAT(poll(follower), IsEmpty());
    EXPECT_THAT(poll(follower), IsEmpty());
    vbmc::VirtualBmc(stateFile).clearFaults();
    EXPECT_THAT(poll(follower), ElementsAre(4));
}

TEST_F(SelFollowing, goesOnAfterARestart) {
    add(1);
    {
        SelFollower follower;
        poll(follower);
        add(2);
        EXPECT_THAT(poll(follower), ElementsAre(2));
    }
    add(3);
    SelFollower follower;
    EXPECT_THAT(poll(follower), ElementsAre(3));
    follower.forget();
    add(4);
    EXPECT_THAT(poll(follower), IsEmpty()) << "nobody wanted it";
    add(5);
    EXPECT_THAT(poll(follower), ElementsAre(5));

    // A position that is none of ours.
    std::ofstream(sysroot.place("/var/lib/provider-helper/sel-position")) << "SELPOS";
    SelFollower another;
    EXPECT_THAT(poll(another), IsEmpty());
}

TEST_F(SelFollowing, waitsForABmcThatIsAway) {
    SelFollower follower;
    poll(follower);
    const auto hidden = stateFile.string() + ".away";
    std::filesystem::copy(stateFile, hidden);
    std::ofstream(stateFile) << "not a state";
    EXPECT_THAT(poll(follower), IsEmpty());
    std::filesystem::rename(hidden, stateFile);
    add(1);
    EXPECT_THAT(poll(follower), ElementsAre(1));
}

} // namespace
