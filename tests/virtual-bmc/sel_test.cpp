// The machine's event log.
#include "virtual_bmc_fixture.h"

#include <array>

namespace {

using testing::ElementsAreArray;

using Record = std::array<std::uint8_t, 16>;

class SelCommands : public VirtualBmcFixture {
protected:
    void createSel(const std::string& sel) {
        create(R"({"device": {}, "sel": )" + sel + "}");
        transport = open();
        bmc = std::make_unique<vbmc::VirtualBmc>(stateFile);
    }
    Bytes ask(std::uint8_t command, const Bytes& request = {}) {
        return VirtualBmcFixture::ask(*transport, storage, command, request);
    }
    Bytes reserve() {
        const Bytes answer = ask(0x42);
        return {answer.begin() + 1, answer.end()};
    }
    Bytes withReservation(const Bytes& request) {
        Bytes whole = reserve();
        whole.insert(whole.end(), request.begin(), request.end());
        return whole;
    }
    // The IDs along the chain of records.
    std::vector<int> ids() {
        std::vector<int> found;
        for (int next = 0; next != 0xFFFF;) {
            const Bytes answer = ask(
                0x43, {0, 0, static_cast<std::uint8_t>(next), static_cast<std::uint8_t>(next >> 8), 0, 0xFF});
            if (answer[0] != 0)
                break;
            next = answer[1] | answer[2] << 8;
            found.push_back(answer[3] | answer[4] << 8);
        }
        return found;
    }
    std::uint16_t add(std::uint8_t mark) {
        return bmc->addSelRecord(Record{0, 0, 2, 1, 0, 0, 0, 0x20, 0, 4, 1, 0x30, 1, mark, 0, 0});
    }

    std::unique_ptr<ipmi::Transport> transport;
    std::unique_ptr<vbmc::VirtualBmc> bmc;
};

TEST_F(SelCommands, recordsComeBackAsTheyWereAdded) {
    createSel("{}");
    EXPECT_EQ(ask(0x43, {0, 0, 0, 0, 0, 0xFF}), Bytes{0xCB});
    const Record oemRecord{9, 9, 0xE5, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13};
    EXPECT_EQ(bmc->addSelRecord(oemRecord), 1);
    const Record event{0, 0, 0x02, 0x78, 0x56, 0x34, 0x12, 0x20, 0, 4, 1, 0x30, 0x81, 5, 255, 255};
    EXPECT_EQ(ask(0x44, Bytes(event.begin(), event.end())), (Bytes{0x00, 2, 0}));
    EXPECT_THAT(ask(0x43, {0, 0, 1, 0, 0, 0xFF}),
                ElementsAreArray(Bytes{0x00, 2, 0, 1, 0, 0xE5, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}));
    // The BMC writes the time of an event that it is sent.
    const Bytes time = ask(0x48);
    const Bytes last = ask(0x43, {0, 0, 0xFF, 0xFF, 0, 0xFF});
    EXPECT_EQ(Bytes(last.begin() + 7, last.begin() + 10), Bytes(time.begin() + 2, time.begin() + 5));
    EXPECT_EQ(Bytes(last.begin() + 10, last.end()), Bytes(event.begin() + 7, event.end()));
    EXPECT_EQ(ask(0x43, {0, 0, 3, 0, 0, 0xFF}), Bytes{0xCB});
}

TEST_F(SelCommands, setTimeIsTheTimeOfNewRecords) {
    createSel("{}");
    EXPECT_EQ(ask(0x49, {0, 0, 0, 0x10}), Bytes{0x00});
    EXPECT_EQ(ask(0x48)[4], 0x10);
    bmc->fillSel(1);
    EXPECT_EQ(ask(0x43, {0, 0, 0, 0, 0, 0xFF})[9], 0x10);
}

TEST_F(SelCommands, partsNeedAReservation) {
    createSel(R"({"largestRead": 8})");
    add(0x55);
    EXPECT_EQ(ask(0x43, {0, 0, 1, 0, 0, 0xFF}), Bytes{0xCA});
    EXPECT_EQ(ask(0x43, {0, 0, 1, 0, 8, 8}), Bytes{0xC5});
    Bytes request = withReservation({1, 0, 8, 8});
    EXPECT_EQ(ask(0x43, request), (Bytes{0x00, 0xFF, 0xFF, 0, 4, 1, 0x30, 1, 0x55, 0, 0}));
    request[4] = 9;
    EXPECT_EQ(ask(0x43, request), Bytes{0xC9});
    bmc->clearSel();
    EXPECT_EQ(ask(0x43, request), Bytes{0xC5});
}

TEST_F(SelCommands, aFullLogStopsOrWraps) {
    createSel(R"({"capacity": 3})");
    EXPECT_EQ(bmc->fillSel(5), 3U);
    EXPECT_THROW(add(1), vbmc::Error);
    EXPECT_EQ(ask(0x44, Bytes(16, 0)), Bytes{0xC4});
    EXPECT_EQ(ids(), (std::vector{1, 2, 3}));
    const Bytes info = ask(0x40);
    EXPECT_EQ(Bytes(info.begin() + 1, info.begin() + 6), (Bytes{0x51, 3, 0, 0, 0}));
    EXPECT_EQ(info.back(), 0x8B) << "events were dropped";
    bmc->setSelWraps(true);
    EXPECT_EQ(bmc->fillSel(5), 5U);
    EXPECT_EQ(ids(), (std::vector{6, 7, 8}));
    EXPECT_EQ(VirtualBmcFixture::ask(*transport, 0x30, 0x60, {}), (Bytes{0x00, 1}));
    EXPECT_EQ(ask(0x41), (Bytes{0x00, 3, 0, 16, 0, 0, 0, 0, 0, 1}));
}

TEST_F(SelCommands, idsBeginAnewAfterTheLast) {
    createSel(R"({"capacity": 4, "whenFull": "wrap", "nextId": 65533})");
    bmc->fillSel(6);
    EXPECT_EQ(ids(), (std::vector{1, 2, 3, 4}));
    createSel(R"({"capacity": 4, "whenFull": "wrap", "nextId": 65533})");
    bmc->fillSel(4);
    EXPECT_EQ(ids(), (std::vector{65533, 65534, 1, 2}));
}

TEST_F(SelCommands, deletedRecordsLeaveTheOthersToBeFound) {
    createSel(R"({"nextId": 65530})");
    bmc->fillSel(10);
    std::vector<int> expected = ids();
    for (const int id : {65533, 65530, 5, 2}) {
        const Bytes answer =
            ask(0x46, withReservation({static_cast<std::uint8_t>(id), static_cast<std::uint8_t>(id >> 8)}));
        EXPECT_EQ(answer, (Bytes{0x00, static_cast<std::uint8_t>(id), static_cast<std::uint8_t>(id >> 8)}));
        std::erase(expected, id);
        EXPECT_EQ(ids(), expected) << id;
        EXPECT_EQ(
            ask(0x43, {0, 0, static_cast<std::uint8_t>(id), static_cast<std::uint8_t>(id >> 8), 0, 0xFF}),
            Bytes{0xCB});
    }
    EXPECT_EQ(ask(0x46, {9, 9, 1, 0}), Bytes{0xC5});
}

TEST_F(SelCommands, erasureTakesItsSteps) {
    createSel(R"({"erasureSteps": 2})");
    bmc->fillSel(7);
    EXPECT_EQ(ask(0x47, withReservation({'C', 'L', 'X', 0xAA})), Bytes{0xCC});
    EXPECT_EQ(ask(0x47, {9, 9, 'C', 'L', 'R', 0xAA}), Bytes{0xC5});
    Bytes request = withReservation({'C', 'L', 'R', 0xAA});
    EXPECT_EQ(ask(0x47, request), (Bytes{0x00, 0}));
    request.back() = 0x00;
    EXPECT_EQ(ask(0x47, request), (Bytes{0x00, 0}));
    EXPECT_EQ(ask(0x47, request), (Bytes{0x00, 1}));
    EXPECT_TRUE(ids().empty());
}

TEST_F(SelCommands, holdsAsManyRecordsAsACountCanTell) {
    createSel(R"({"capacity": 65535})");
    EXPECT_EQ(bmc->fillSel(70000), 65535U);
    const std::vector<int> all = ids();
    ASSERT_EQ(all.size(), 65535U);
    for (std::size_t i = 0; i < all.size(); ++i)
        ASSERT_EQ(all[i], static_cast<int>(i));
}

TEST_F(SelCommands, aBulkFileThatIsCutShortIsAnError) {
    createSel("{}");
    bmc->fillSel(3);
    std::filesystem::resize_file(stateFile.string() + ".sel", 20);
    EXPECT_THROW(ids(), ipmi::TransportError);
}

TEST_F(SelCommands, eventsOfSensorsSayWhichAndWhat) {
    create(R"({"device": {}, "sel": {"capacity": 2, "whenFull": "wrap"}, "sensors": [
        {"number": 7, "name": "Slot", "type": 33, "readingType": 111, "record": "compact",
         "sharing": {"count": 3}}]})");
    bmc = std::make_unique<vbmc::VirtualBmc>(stateFile);
    EXPECT_THROW(bmc->addSensorEvent("no such sensor", 0, false), vbmc::Error);
    EXPECT_EQ(bmc->addSensorEvent(7, 1, false), 1);
    EXPECT_EQ(bmc->addSensorEvent(8, 14, true), 2);
    EXPECT_EQ(bmc->addSensorEvent(9, 2, false), 3); // drops the oldest
    const auto records = bmc->selRecords();
    ASSERT_EQ(records.size(), 2U);
    const auto behindTheTime = [&](std::size_t i) {
        return std::vector(records[i].begin() + 7, records[i].end());
    };
    EXPECT_THAT(behindTheTime(0), ElementsAreArray({0x20, 0, 4, 0x21, 8, 0xEF, 14, 0xFF, 0xFF}));
    EXPECT_THAT(behindTheTime(1), ElementsAreArray({0x20, 0, 4, 0x21, 9, 0x6F, 2, 0xFF, 0xFF}));
    EXPECT_EQ(records[0][0], 2);
    EXPECT_EQ(records[0][2], 0x02);
}

} // namespace
