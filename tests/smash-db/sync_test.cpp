#include "smash-db/sync/sync.h"

#include "database_fixture.h"
#include "fake_bmc.h"
#include "sdr_builder.h"

#include <gmock/gmock.h>
#include <SQLiteCpp/SQLiteCpp.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint8_t temperature = 0x01;
constexpr std::uint8_t powerSupply = 0x08;

Bytes sdr(const SdrBuilder& builder, std::uint16_t id) {
    return builder.record(id).bytes;
}

class Sync : public SysrootFixture {
protected:
    void SetUp() override {
        bmc.sdrs = {sdr(SdrBuilder::full(temperature, 0x01, "Inlet").number(1), 1),
                    sdr(SdrBuilder::fruLocator(3, 10, 1), 2),
                    sdr(SdrBuilder::compact(powerSupply, 0x6F, "PS").number(2).states(0x0003), 3),
                    sdr(SdrBuilder::full(temperature, 0x01, "Outlet").number(3), 4)};
        bmc.frus = {{0, fruImage({"Maker", "Board", "B-1", "P-1"})},
                    {3, fruImage({"Supplier", "Supply", "P-3", "v2", "S-3"}, true)}};
        bmc.deviceGuid = Bytes{0x10, 0x0F, 0x0E, 0x0D, 0x0C, 0x0B, 0x0A, 0x09,
                               0x08, 0x07, 0x06, 0x05, 0x04, 0x03, 0x02, 0x01};
        bmc.systemGuid = Bytes(16, 0xAB);
    }

    // All that sync writes, as text.
    static std::vector<std::string> contents() {
        std::vector<std::string> texts;
        const Handle handle = openDatabase(db_init);
        for (const int type : {1, 2})
            if (const auto device = getRow(db_get_device_bytype, handle, type))
                texts.emplace_back(device->deviceId);
        for (const int entity : {7, 10})
            if (const auto fru = getRow(db_get_fru_by_entity_id, handle, entity))
                texts.push_back(std::string(fru->manufacturer) + "/" + fru->model + "/" + fru->serialNumber +
                                "/" + fru->partNumber);
        const auto full = getAll(db_get_all_full_sdrs, handle);
        for (int i = 0; i < full.count; ++i)
            texts.emplace_back(full.rows.get()[i].common.deviceId);
        const auto compact = getAll(db_get_all_compact_sdrs, handle);
        for (int i = 0; i < compact.count; ++i)
            texts.emplace_back(compact.rows.get()[i].deviceId);
        return texts;
    }
    const std::vector<std::string> expected = {"0102030405060708090a0b0c0d0e0f10",
                                               "abababababababababababababababab",
                                               "Maker/Board/B-1/P-1",
                                               "Supplier/Supply/S-3/P-3",
                                               "32.1.0.1.01.99:Inlet",
                                               "32.3.0.1.01.99:Outlet",
                                               "32.2.0.8.6f.0:PS",
                                               "32.2.0.8.6f.1:PS"};

    static std::string text(const smash::SyncReport& report) {
        std::string lines;
        for (const auto& remark : report.remarks)
            lines += remark.source + ": " + remark.reason + "\n";
        return lines;
    }

    FakeBmc bmc;
};

TEST_F(Sync, fillsTheDatabaseAndReports) {
    std::vector<std::string> steps;
    const auto report = smash::sync(bmc, [&](std::string_view phase, std::size_t done, std::size_t total) {
        steps.push_back(std::string(phase) + " " + std::to_string(done) + "/" + std::to_string(total));
    });
    EXPECT_EQ(contents(), expected);
    EXPECT_EQ(report.recordsRead, 4u);
    EXPECT_EQ(report.numericSensors, 2u);
    EXPECT_EQ(report.sensors, 2u);
    EXPECT_EQ(report.frus, 2u);
    EXPECT_EQ(text(report), "");
    EXPECT_THAT(steps,
                ElementsAre("device 0/1", "device 1/1", "SDR 0/4", "SDR 1/4", "SDR 2/4", "SDR 3/4", "SDR 4/4",
                            "FRU 0/2", "FRU 1/2", "FRU 2/2", "database 0/1", "database 1/1"));

    const Handle handle = openDatabase(db_init);
    const auto device = getRow(db_get_device_bytype, handle, SMASH_DEVICE_SP);
    ASSERT_NE(device, nullptr);
    EXPECT_STREQ(device->guid, "01020304-0506-0708-090a-0b0c0d0e0f10");
    EXPECT_EQ(device->tag[0], 0x21);
    EXPECT_EQ(device->tag[1], 5);
    EXPECT_EQ(device->firmwareMajor, 3);
    EXPECT_EQ(device->firmwareMinor, 0x45);
    EXPECT_EQ(device->manufacturerId, 0x157u) << "20 bits";
    EXPECT_EQ(device->productId, 0x1234);
    EXPECT_EQ(device->requestedState, 12);
}

TEST_F(Sync, replacesRowsButKeepsSettings) {
    {
        const Handle handle = openDatabase(smash_db_init);
        IPMISessionInfo session = {};
        session.port = 6230;
        DeviceRecord host = {};
        host.type = SMASH_DEVICE_HOST;
        host.requestedState = 3;
        ASSERT_EQ(db_set_ipmi_session_info(handle.get(), &session), 0);
        ASSERT_EQ(db_set_device(handle.get(), &host), 0);
    }
    smash::sync(bmc);
    bmc.sdrs.resize(1);
    smash::sync(bmc);
    EXPECT_THAT(contents(), ElementsAre(expected[0], expected[1], expected[2], expected[4]));
    const Handle handle = openDatabase(db_init);
    const auto session = getRow(db_get_ipmi_session_info, handle);
    const auto host = getRow(db_get_device_bytype, handle, SMASH_DEVICE_HOST);
    ASSERT_TRUE(session != nullptr && host != nullptr);
    EXPECT_EQ(session->port, 6230);
    EXPECT_EQ(host->requestedState, 3);
}

TEST_F(Sync, leavesTheDatabaseAsItWasWhereverTheBmcStopsAnswering) {
    smash::sync(bmc);
    bmc.sdrs = {sdr(SdrBuilder::full(temperature, 0x01, "New").number(9), 1)};
    bmc.frus.clear();
    bmc.systemGuid = Bytes(16, 0xCD);
    int exchanges = 0;
    for (bool isDone = false; !isDone; ++exchanges) {
        ASSERT_LT(exchanges, 100);
        EXPECT_EQ(contents(), expected) << "after " << exchanges << " exchanges";
        bmc.silentAfter = exchanges;
        try {
            smash::sync(bmc);
            isDone = true;
        } catch (const ipmi::TransportError&) {
            isDone = false;
        }
    }
    EXPECT_GT(exchanges, 8) << "device ID, GUIDs, repository, reservation, record, FRU";
    EXPECT_THAT(contents(), ElementsAre(expected[0], std::string("cdcdcdcdcdcdcdcdcdcdcdcdcdcdcdcd"), "///",
                                        "32.9.0.1.01.99:New"));
}

TEST_F(Sync, leavesTheDatabaseAsItWasWhereItCannotWriteAllRows) {
    smash::sync(bmc);
    SQLite::Database(sysroot.place("/conf/smash.db"), SQLite::OPEN_READWRITE)
        .exec("CREATE TRIGGER full BEFORE INSERT ON compact_sdr WHEN new.deviceId LIKE '%.1:PS' "
              "BEGIN SELECT RAISE(ABORT, 'disk is full'); END");
    bmc.systemGuid = Bytes(16, 0xCD);
    EXPECT_THAT([&] { smash::sync(bmc); }, testing::ThrowsMessage<std::runtime_error>(HasSubstr(
                                               sysroot.place("/conf/smash.db").string() + ": disk is full")));
    EXPECT_EQ(contents(), expected);
}

TEST_F(Sync, readsARecordAgainWhoseReservationWasLost) {
    for (int lost = 0; lost < 8; ++lost) {
        bmc.onGetSdr = [this, lost, first = -1](int number) mutable -> std::uint8_t {
            first = first < 0 ? number : first;
            if (number - first == lost)
                bmc.cancelReservation();
            return 0;
        };
        EXPECT_EQ(text(smash::sync(bmc)), "");
        EXPECT_EQ(contents(), expected) << "lost before Get SDR " << lost;
    }
}

TEST_F(Sync, givesUpOnABmcThatCancelsEveryReservation) {
    smash::sync(bmc);
    bmc.onGetSdr = [this](int) -> std::uint8_t {
        bmc.cancelReservation();
        return 0;
    };
    EXPECT_THROW(smash::sync(bmc), std::runtime_error);
    EXPECT_EQ(contents(), expected);
}

TEST_F(Sync, asksForSmallerPartsWhereTheBmcsBufferIsSmall) {
    for (const std::uint8_t code : std::initializer_list<std::uint8_t>{0xCA, 0xFF, 0xC8, 0xC7})
        for (const std::size_t largest : {63, 31, 10, 8}) {
            bmc.tooMuchCode = code;
            bmc.largestPart = largest;
            EXPECT_EQ(text(smash::sync(bmc)), "") << largest;
            EXPECT_EQ(contents(), expected) << largest;
        }
}

TEST_F(Sync, servesTheRecordsBesideABadOne) {
    const struct {
        const char* name;
        std::function<void(FakeBmc&)> spoil; // the third record
        const char* reason;
    } cases[] = {
        {"unreadable body",
         [](FakeBmc& broken) {
             broken.onGetSdr = [first = -1](int number) mutable -> std::uint8_t {
                 first = first < 0 ? number : first;
                 return number - first == 5 ? 0xCE : 0x00;
             };
         },
         "SDR record 0x0003: "},
        {"longer than it is", [](FakeBmc& broken) { broken.sdrs[2][4] += 10; },
         "SDR record 0x0003: the BMC does not return all of it"},
        {"shorter than its fields", [](FakeBmc& broken) { broken.sdrs[2][4] = 20; },
         "SDR record 0x0003: the record ends before its last field"},
        {"no header", [](FakeBmc& broken) { broken.sdrs[2].resize(3); },
         "SDR record 0x0003: its header is cut short"},
        {"no bytes", [](FakeBmc& broken) { broken.sdrs[2].clear(); },
         "SDR record 0x0003: its header is cut short"},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.name);
        FakeBmc broken = bmc;
        item.spoil(broken);
        const auto report = smash::sync(broken);
        EXPECT_THAT(report.remarks, SizeIs(1));
        EXPECT_THAT(text(report), HasSubstr(item.reason));
        EXPECT_EQ(report.numericSensors, 2u);
        EXPECT_EQ(report.sensors, 0u);
    }
}

TEST_F(Sync, endsAtARepositoryThatRunsInCircles) {
    bmc.nextOfLast = 2;
    const auto report = smash::sync(bmc);
    EXPECT_EQ(contents(), expected);
    EXPECT_THAT(text(report), HasSubstr("SDR record 0x0002: "));
}

TEST_F(Sync, takesABmcWithoutSensors) {
    bmc.sdrs.clear();
    const auto report = smash::sync(bmc);
    EXPECT_THAT(contents(), ElementsAre(expected[0], expected[1], expected[2]));
    EXPECT_THAT(report.remarks, IsEmpty());
}

TEST_F(Sync, namesDevicesByWhatGuidsThereAre) {
    const struct {
        std::optional<Bytes> device, system;
        std::string deviceId, hostId;
    } cases[] = {
        {bmc.deviceGuid, std::nullopt, expected[0], expected[0]},
        {std::nullopt, bmc.systemGuid, expected[1], expected[1]},
        {Bytes(15, 1), bmc.systemGuid, expected[1], expected[1]}, // a byte short
        {std::nullopt, std::nullopt, std::string(32, '0'), std::string(32, '0')},
    };
    for (const auto& item : cases) {
        bmc.deviceGuid = item.device;
        bmc.systemGuid = item.system;
        const auto report = smash::sync(bmc);
        EXPECT_THAT(text(report), HasSubstr(" GUID: "));
        const auto stored = contents();
        EXPECT_EQ(stored[0], item.deviceId);
        EXPECT_EQ(stored[1], item.hostId);
    }
}

TEST_F(Sync, alwaysHasASystemBoard) {
    const Bytes other = fruImage({"Maker 2", "Board 2", "B-2", "P-2"});
    Bytes badHeader = bmc.frus[0];
    badHeader[7] ^= 1;
    Bytes badArea = bmc.frus[0];
    badArea.back() ^= 1;
    Bytes shortFru = bmc.frus[0];
    shortFru.resize(shortFru.size() - 8);
    const struct {
        const char* name;
        std::optional<Bytes> own;
        std::optional<Bytes> located; // FRU device 5, by a locator of entity 7
        const char* expected;
        std::size_t remarks;
    } cases[] = {
        {"located", bmc.frus[0], other, "Maker 2/Board 2/B-2/P-2", 0},
        {"its own", bmc.frus[0], std::nullopt, "Maker/Board/B-1/P-1", 1},
        {"none", std::nullopt, std::nullopt, "///", 2},
        {"bad header", badHeader, std::nullopt, "///", 2},
        {"bad area", badArea, std::nullopt, "///", 2},
        {"area beyond the end", shortFru, std::nullopt, "///", 2},
        {"no area", Bytes{1, 0, 0, 0, 0, 0, 0, 0xFF}, std::nullopt, "///", 2},
        {"no data", Bytes{}, std::nullopt, "///", 2},
    };
    bmc.sdrs = {sdr(SdrBuilder::fruLocator(5, 7, 1), 1)};
    for (const auto& item : cases) {
        SCOPED_TRACE(item.name);
        bmc.frus.clear();
        if (item.own)
            bmc.frus[0] = *item.own;
        if (item.located)
            bmc.frus[5] = *item.located;
        const auto report = smash::sync(bmc);
        EXPECT_EQ(contents()[2], item.expected);
        EXPECT_EQ(report.remarks.size(), item.remarks) << text(report);
        EXPECT_EQ(report.frus, 1u);
    }
}

TEST_F(Sync, readsFrusThatAreAddressedByWords) {
    bmc.isFruWordAddressed = true;
    EXPECT_EQ(text(smash::sync(bmc)), "");
    EXPECT_EQ(contents(), expected);
}

TEST_F(Sync, keepsTheFirstFruOfAnEntity) {
    bmc.sdrs.push_back(sdr(SdrBuilder::fruLocator(0, 10, 1), 5));
    EXPECT_THAT(text(smash::sync(bmc)), HasSubstr("FRU device 0: "));
    EXPECT_EQ(contents(), expected);
}

TEST_F(Sync, namesADatabaseThatItCannotUse) {
    write("/conf/smash.db", std::string(5000, 'x'));
    EXPECT_THAT([&] { smash::sync(bmc); }, testing::ThrowsMessage<std::runtime_error>(
                                               HasSubstr(sysroot.place("/conf/smash.db").string())));
}

} // namespace
