// The event log of a BMC that changes under the reader's hands, answers in parts only, or errs.
#include "scripted_bmc.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

int pauses = 0;

// A BMC's event log with the habits that BMCs have. Records are told apart by their last byte.
struct FakeLog {
    struct Entry {
        std::uint16_t id;
        std::uint8_t mark;
    };
    std::vector<Entry> entries;
    std::uint32_t lastErase = 100;
    std::size_t largestRead = 16;
    Bytes allocation = {0xC1}; // answer of Get SEL Allocation Info
    std::uint8_t reserveCode = 0x00;
    std::uint8_t reservation = 0;
    std::vector<std::uint8_t> erasure = {1}; // progress by request; the last one stays
    std::size_t erasureAnswers = 0;
    std::function<void(std::size_t reads)> beforeRead = [](std::size_t) {};
    std::size_t reads = 0;
    bool isCircle = false;
    std::size_t unannounced = 0; // records that Get SEL Info leaves out
    std::uint8_t tooMuchCode = 0xCA;

    void add(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            const int id = entries.empty() ? 1 : entries.back().id + 1;
            entries.push_back({static_cast<std::uint16_t>(id), static_cast<std::uint8_t>(id)});
        }
    }
    void erase(std::size_t first, std::size_t count) {
        const auto begin = entries.begin() + static_cast<std::ptrdiff_t>(first);
        entries.erase(begin, begin + static_cast<std::ptrdiff_t>(count));
        ++lastErase;
        ++reservation;
    }

    static Bytes recordOf(const Entry& entry) {
        Bytes record(16, 0xAA);
        record[0] = static_cast<std::uint8_t>(entry.id);
        record[1] = static_cast<std::uint8_t>(entry.id >> 8);
        record[15] = entry.mark;
        return record;
    }
    Bytes info() const {
        const auto count = static_cast<std::uint8_t>(entries.size() - unannounced);
        return {0x00, 0x51, count, 0,   0x40, 0, 1, 2, 3, 4, static_cast<std::uint8_t>(lastErase),
                0,    0,    0,     0x02};
    }
    Bytes read(const Bytes& request) {
        beforeRead(++reads);
        const std::size_t offset = request[6];
        const std::size_t size = request[7] == 0xFF ? 16 : request[7];
        const auto id = static_cast<std::uint16_t>(request[4] | request[5] << 8);
        if (offset > 0 && request[2] != reservation)
            return {0xC5};
        std::size_t i = id == 0 ? 0 : entries.size();
        for (std::size_t j = 0; j < entries.size(); ++j)
            if (entries[j].id == id)
                i = j;
        if (i >= entries.size())
            return {0xCB};
        if (size > largestRead)
            return {tooMuchCode};
        const std::uint16_t next = i + 1 < entries.size() ? entries[i + 1].id
                                   : isCircle             ? entries[0].id
                                                          : 0xFFFF;
        Bytes answer{0x00, static_cast<std::uint8_t>(next), static_cast<std::uint8_t>(next >> 8)};
        const Bytes record = recordOf(entries[i]);
        answer.insert(answer.end(), record.begin() + static_cast<std::ptrdiff_t>(offset),
                      record.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(offset + size, 16)));
        return answer;
    }
    Bytes clear(const Bytes& request) {
        if (request[2] != reservation)
            return {0xC5};
        EXPECT_EQ(Bytes(request.begin() + 4, request.begin() + 7), (Bytes{'C', 'L', 'R'}));
        EXPECT_EQ(request[7], erasureAnswers == 0 ? 0xAA : 0x00);
        const std::uint8_t progress = erasure[std::min(erasureAnswers, erasure.size() - 1)];
        ++erasureAnswers;
        return {0x00, progress};
    }
    Bytes respond(const Bytes& request) {
        if (request[0] != 0x0A)
            return {0xC1};
        switch (request[1]) {
        case 0x40:
            return info();
        case 0x41:
            return allocation;
        case 0x42:
            return reserveCode != 0 ? Bytes{reserveCode} : Bytes{0x00, ++reservation, 0};
        case 0x43:
            return read(request);
        case 0x47:
            return clear(request);
        default:
            return {0xC1};
        }
    }
};

class Sel : public HookTest {
protected:
    Sel() {
        pauses = 0;
        bmc.respond = [this](const Bytes& request) { return log.respond(request); };
    }

    // The last bytes of the records that the hook reads, with room for some.
    std::optional<std::vector<int>> readMarks(std::uint16_t room = 200) {
        std::vector<CIM_SELEntry> buffer(room + 1U);
        std::uint16_t count = room;
        if (CIM_GetSELRecords(&session, buffer.data(), &count, 30) != 0)
            return std::nullopt;
        EXPECT_EQ(buffer.back().record[2], 0) << "behind the room that there was";
        std::vector<int> marks;
        for (std::size_t i = 0; i < count; ++i) {
            marks.push_back(buffer[i].record[15]);
            EXPECT_EQ(buffer[i].record[0], marks.back());
            EXPECT_EQ(buffer[i].record[2], 0xAA);
            EXPECT_EQ(buffer[i].record[14], 0xAA);
        }
        return marks;
    }
    std::size_t requestsOf(std::uint8_t command) const {
        return static_cast<std::size_t>(
            std::ranges::count(bmc.requests, command, [](auto& m) { return m[1]; }));
    }

    FakeLog log;
};

TEST_F(Sel, isReadAlongItsIdsWithOneMessageARecord) {
    log.entries = {{7, 7}, {9, 9}, {4, 4}}; // IDs go up and begin anew, they are no positions
    EXPECT_THAT(readMarks().value(), ElementsAre(7, 9, 4));
    EXPECT_EQ(requestsOf(0x43), 3U);
    EXPECT_EQ(requestsOf(0x42), 0U);
    log.unannounced = 2;
    EXPECT_THAT(readMarks().value(), ElementsAre(7, 9, 4)) << "more of them than the BMC says";
    log = {};
    EXPECT_THAT(readMarks().value(), ElementsAre());
}

TEST_F(Sel, isReadInPartsFromABmcThatSendsNoMore) {
    constexpr std::uint8_t tooMuchCodes[] = {0xC7, 0xC8, 0xCA, 0xFF};
    log.add(3);
    for (const std::size_t largest : {16, 15, 8, 7, 4, 3, 1}) {
        log.largestRead = largest;
        log.tooMuchCode = tooMuchCodes[largest % std::size(tooMuchCodes)];
        EXPECT_THAT(readMarks().value(), ElementsAre(1, 2, 3)) << largest;
        CIM_SELEntryRequest request{{0, 0}, {2, 0}, 0, 0xFF};
        CIM_SELEntryAnswer answer;
        ASSERT_EQ(CIM_GetSELEntry(&session, &request, &answer, 30), 0) << largest;
        EXPECT_EQ(answer.completionCode, 0);
        EXPECT_THAT(answer.entry.record, testing::ElementsAreArray(FakeLog::recordOf({2, 2})));
        EXPECT_THAT(answer.entry.nextRecordId, ElementsAre(3, 0));
    }
}

TEST_F(Sel, partsSurviveAReservationThatIsLost) {
    log.add(3);
    log.largestRead = 8;
    log.beforeRead = [&](std::size_t read) {
        log.reservation = static_cast<std::uint8_t>(log.reservation + (read == 4));
    };
    EXPECT_THAT(readMarks().value(), ElementsAre(1, 2, 3));
    log.beforeRead = [&](std::size_t) { ++log.reservation; };
    EXPECT_FALSE(readMarks());
    EXPECT_LT(log.reads, 100U);
}

struct ChangeCase {
    const char* name;
    std::function<void(FakeLog&)> change; // before the third read
    std::vector<int> expected;
};

TEST_F(Sel, isConsistentWhenItChangesOnce) {
    const ChangeCase cases[] = {
        {"a record is added", [](FakeLog& fake) { fake.add(1); }, {1, 2, 3, 4, 5}},
        {"the next one is deleted", [](FakeLog& fake) { fake.erase(2, 1); }, {1, 2, 4}},
        {"one that was read is deleted", [](FakeLog& fake) { fake.erase(0, 1); }, {2, 3, 4}},
        {"all are erased", [](FakeLog& fake) { fake.erase(0, 4); }, {}},
        {"all are erased and others come",
         [](FakeLog& fake) {
             fake.erase(0, 4);
             fake.entries = {{1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}};
         },
         {1, 2, 3, 4, 5}},
        {"the oldest are overwritten up to the next",
         [](FakeLog& fake) {
             fake.entries = {{14, 14}, {15, 15}};
         },
         {14, 15}},
    };
    for (const auto& item : cases) {
        log = {};
        log.add(4);
        log.beforeRead = [&](std::size_t read) {
            if (read == 3)
                item.change(log);
        };
        EXPECT_EQ(readMarks(), item.expected) << item.name;
        EXPECT_LE(log.reads, 10U) << item.name;
    }
}

TEST_F(Sel, failsWhenItNeverStandsStill) {
    log.add(100);
    log.beforeRead = [&](std::size_t read) { log.lastErase += read % 100 == 50; };
    EXPECT_FALSE(readMarks());
    EXPECT_EQ(log.reads, 300U);
    EXPECT_THAT(bmc.debugLog, HasSubstr("changed each time"));
}

TEST_F(Sel, failsWhenItsIdsRunInACircle) {
    log.add(5);
    log.isCircle = true;
    EXPECT_FALSE(readMarks());
    EXPECT_EQ(log.reads, 15U);
}

TEST_F(Sel, neverFillsMoreThanTheBufferHolds) {
    log.add(5);
    log.beforeRead = [&](std::size_t) { log.add(1); };
    EXPECT_THAT(readMarks(7).value(), ElementsAre(1, 2, 3, 4, 5, 6, 7));
    EXPECT_THAT(readMarks(0).value(), ElementsAre());
}

TEST_F(Sel, failuresAreFailures) {
    std::uint16_t count = 1;
    CIM_SELEntry entry;
    CIM_SELEntryAnswer answer;
    const CIM_SELEntryRequest request{{0, 0}, {9, 0}, 0, 0xFF};
    log.add(1);
    EXPECT_NE(CIM_GetSELEntry(&session, &request, &answer, 30), 0);
    EXPECT_EQ(answer.completionCode, 0xCB);
    EXPECT_NE(CIM_GetSELRecords(&session, nullptr, &count, 30), 0);
    EXPECT_NE(CIM_GetSELRecords(&session, &entry, nullptr, 30), 0);
    EXPECT_NE(CIM_GetSELEntry(&session, nullptr, &answer, 30), 0);
    EXPECT_NE(CIM_GetNumOfSELEntries(&session, nullptr, 30), 0);
    for (const Bytes& bytes : {Bytes{0x00}, Bytes{0x00, 0x51, 1, 0}, Bytes{0xD4}}) {
        bmc.respond = [&](const Bytes&) { return bytes; };
        EXPECT_NE(CIM_GetNumOfSELEntries(&session, &count, 30), 0);
        EXPECT_NE(CIM_GetMaxPossibleSELEntries(&session, &count, 30), 0);
        EXPECT_NE(CIM_GetSELRecords(&session, &entry, &count, 30), 0);
        if (bytes.size() == 1) {
            EXPECT_NE(CIM_ClearSEL(&session, 30), 0);
        }
    }
}

TEST_F(Sel, roomComesFromTheAllocationOrTheFreeBytes) {
    struct RoomCase {
        Bytes allocation;
        std::uint16_t room;
    };
    const RoomCase cases[] = {
        {{0x00, 0x00, 0x10, 0x10, 0x00, 1, 0, 1, 0, 1}, 0x1000},
        {{0x00, 0x00, 0x02, 0x14, 0x00, 1, 0, 1, 0, 1}, 0x0200}, // units of 20 bytes hold a record each
        {{0x00, 0x00, 0x02, 0x08, 0x00, 1, 0, 1, 0, 1}, 0x0100}, // a record takes two
        {{0x00, 0xFF, 0xFF, 0x40, 0x00, 1, 0, 1, 0, 1}, 0xFFFF}, // more than a count can tell
        {{0x00, 0x00, 0x00, 0x10, 0x00, 1, 0, 1, 0, 1}, 5 + 4},  // not specified: 40h bytes are free
        {{0xC1}, 5 + 4},
    };
    log.add(5);
    for (const auto& item : cases) {
        log.allocation = item.allocation;
        std::uint16_t room = 0;
        EXPECT_EQ(CIM_GetMaxPossibleSELEntries(&session, &room, 30), 0);
        EXPECT_EQ(room, item.room);
    }
}

TEST_F(Sel, policyIsAnOemCommandThatMostBmcsDoNotKnow) {
    constexpr int none = 9;
    const std::pair<Bytes, int> cases[] = {{{0x00, 0x01}, 1},    {{0x00, 0x00}, 0},
                                           {{0xC1}, none},       {{0xD4}, none},
                                           {{0x00, 0x05}, none}, {{0x00, 0x01, 0x02}, none}};
    for (const auto& item : cases) {
        bmc.respond = [&](const Bytes& request) {
            EXPECT_EQ(request, (Bytes{0x30, 0x60}));
            return item.first;
        };
        std::uint8_t policy = none;
        EXPECT_EQ(CIM_GetSELPolicy(&session, &policy, 30) == 0, item.second != none);
        EXPECT_EQ(policy, item.second);
    }
}

TEST_F(Sel, clearWaitsUntilTheErasureHasEnded) {
    EXPECT_EQ(CIM_ClearSEL(&session, 30), 0);
    EXPECT_EQ(pauses, 0);
    log.erasureAnswers = 0;
    log.erasure = {0, 0, 0, 1};
    EXPECT_EQ(CIM_ClearSEL(&session, 30), 0);
    EXPECT_EQ(pauses, 3);
    log.erasureAnswers = 0;
    log.erasure = {0};
    EXPECT_NE(CIM_ClearSEL(&session, 1), 0);
    EXPECT_THAT(bmc.debugLog, HasSubstr("time of the call is over"));
}

TEST_F(Sel, clearGetsAnotherReservationForOneThatIsLost) {
    int strikes = 2;
    bmc.respond = [&](const Bytes& request) {
        if (request[1] == 0x47 && strikes-- > 0)
            ++log.reservation;
        return log.respond(request);
    };
    EXPECT_EQ(CIM_ClearSEL(&session, 30), 0);
    strikes = 1000;
    log.erasureAnswers = 0;
    EXPECT_NE(CIM_ClearSEL(&session, 30), 0);
    EXPECT_EQ(log.erasureAnswers, 0U);
    EXPECT_GT(strikes, 990);
    log.reserveCode = 0xC1; // a BMC without reservations
    log.reservation = 0;
    strikes = 0;
    EXPECT_EQ(CIM_ClearSEL(&session, 30), 0);
}

} // namespace

extern "C" __attribute__((visibility("default"))) int usleep(useconds_t) {
    ++pauses;
    return 0;
}
