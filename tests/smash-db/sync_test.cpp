// What a sync makes of a virtual BMC, whatever the BMC has and however it behaves.
#include "smash-db/sync/staleness.h"
#include "smash-db/sync/sync.h"

#include "bmc_session.h"
#include "database_fixture.h"
#include "sdr_builder.h"
#include "virtual-bmc/virtual_bmc.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <SQLiteCpp/SQLiteCpp.h>
#include <unistd.h>

namespace {
std::vector<useconds_t> pauses;
}

// The pauses of a sync that waits for other clients.
extern "C" int usleep(useconds_t microseconds) {
    pauses.push_back(microseconds);
    return 0;
}

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t getDeviceId = 0x01, getDeviceGuid = 0x08, getFruInfo = 0x10, readFru = 0x11,
                       reserveSdrs = 0x22, getSdr = 0x23;

const json server = json::parse(R"({
    "device": {"deviceGuid": "01020304-0506-0708-090a-0b0c0d0e0f10",
               "systemGuid": "abababab-abab-abab-abab-abababababab"},
    "sensors": [{"number": 1, "name": "Inlet", "analog": {}},
                {"number": 2, "name": "PS", "type": "Power Supply", "readingType": "sensor-specific",
                 "record": "compact", "supportedStates": [0, 1]},
                {"number": 3, "name": "Outlet", "analog": {}}],
    "frus": [{"id": 0, "name": "Board", "board": {"manufacturer": "Maker", "product": "Board",
                                                  "serialNumber": "B-1", "partNumber": "P-1"}},
             {"id": 3, "name": "Supply", "entity": 10,
              "product": {"manufacturer": "Supplier", "product": "Supply", "partNumber": "P-3", "version": "v2",
                          "serialNumber": "S-3"}}]})");

json rawRecord(const SdrBuilder& builder) {
    std::string digits;
    const Bytes record = builder.record().bytes;
    for (std::size_t i = 2; i < record.size(); ++i) { // behind its ID
        char text[4];
        std::snprintf(text, sizeof text, "%02x ", record[i]);
        digits += text;
    }
    return {{"rawRecords", {digits}}};
}

class Sync : public SysrootFixture, protected ipmi::Transport {
protected:
    Sync() { create(server); }

    void create(const json& model) {
        vbmc::createFromText(stateFile, model.dump(), "model", vbmc::Existing::Replace);
        bmc = ipmi::openTransport(virtualBmc(stateFile));
    }
    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer) override {
        Bytes bytes(ipmi::maxMessage);
        bytes.resize(bmc->exchange(netFn, command, request, bytes));
        alter(command, Bytes(request.begin(), request.end()), bytes);
        std::ranges::copy(bytes, answer.begin());
        return bytes.size();
    }
    smash::SyncReport sync(const smash::SyncProgress& progress = {}) { return smash::sync(*this, progress); }

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

    const std::filesystem::path stateFile = sysroot.place("/tmp/bmc.state");
    std::unique_ptr<ipmi::Transport> bmc;
    // What a test makes of an answer on its way to the sync.
    std::function<void(std::uint8_t command, const Bytes& request, Bytes& answer)> alter = [](auto&&...) {};
};

TEST_F(Sync, fillsTheDatabaseAndReports) {
    alter = [](std::uint8_t command, const Bytes&, Bytes& answer) {
        if (command == getDeviceId)
            answer = {0x00, 0x21, 0x85, 0x83, 0x45, 0x02, 0xBF, 0x57, 0x01, 0xF0, 0x34, 0x12};
    };
    std::vector<std::string> steps;
    const auto report = sync([&](std::string_view phase, std::size_t done, std::size_t total) {
        steps.push_back(std::string(phase) + " " + std::to_string(done) + "/" + std::to_string(total));
    });
    EXPECT_EQ(contents(), expected);
    EXPECT_EQ(report.recordsRead, 5u);
    EXPECT_EQ(report.numericSensors, 2u);
    EXPECT_EQ(report.sensors, 2u);
    EXPECT_EQ(report.frus, 2u);
    EXPECT_EQ(text(report), "");
    EXPECT_THAT(steps, ElementsAre("device 0/1", "device 1/1", "SDR 0/5", "SDR 1/5", "SDR 2/5", "SDR 3/5",
                                   "SDR 4/5", "SDR 5/5", "FRU 0/3", "FRU 1/3", "FRU 2/3", "FRU 3/3",
                                   "database 0/1", "database 1/1"));

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
    EXPECT_STREQ(getAll(db_get_all_full_sdrs, handle).rows->common.source, "SDR record 0x0001");
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
    sync();
    create({{"device", server["device"]}}); // neither sensors nor FRUs
    EXPECT_THAT(text(sync()), HasSubstr("FRU device 0: "));
    EXPECT_THAT(contents(), ElementsAre(expected[0], expected[1], "///"));
    const Handle handle = openDatabase(db_init);
    const auto session = getRow(db_get_ipmi_session_info, handle);
    const auto host = getRow(db_get_device_bytype, handle, SMASH_DEVICE_HOST);
    ASSERT_TRUE(session != nullptr && host != nullptr);
    EXPECT_EQ(session->port, 6230);
    EXPECT_EQ(host->requestedState, 3);
}

TEST_F(Sync, leavesTheDatabaseAsItWasWhereverTheBmcStopsAnswering) {
    sync();
    json other = server;
    other["sensors"] = {{{"number", 9}, {"name", "New"}, {"analog", json::object()}}};
    create(other);
    int left = 0;
    alter = [&](auto&&...) {
        if (left-- <= 0)
            throw ipmi::TransportError("no answer");
    };
    int exchanges = 0;
    for (bool isDone = false; !isDone; ++exchanges) {
        ASSERT_LT(exchanges, 100);
        EXPECT_EQ(contents(), expected) << "after " << exchanges << " exchanges";
        left = exchanges;
        try {
            sync();
            isDone = true;
        } catch (const ipmi::TransportError&) {
            isDone = false;
        }
    }
    EXPECT_GT(exchanges, 8) << "device ID, GUIDs, repository, reservation, record, FRU";
    EXPECT_THAT(contents(),
                ElementsAre(expected[0], expected[1], expected[2], expected[3], "32.9.0.1.01.99:New"));
}

TEST_F(Sync, leavesTheDatabaseAsItWasWhereItCannotWriteAllRows) {
    sync();
    SQLite::Database(sysroot.place("/conf/smash.db"), SQLite::OPEN_READWRITE)
        .exec("CREATE TRIGGER full BEFORE INSERT ON compact_sdr WHEN new.deviceId LIKE '%.1:PS' "
              "BEGIN SELECT RAISE(ABORT, 'disk is full'); END");
    json other = server;
    other["device"].erase("systemGuid");
    create(other);
    EXPECT_THAT([&] { sync(); }, testing::ThrowsMessage<std::runtime_error>(
                                     HasSubstr(sysroot.place("/conf/smash.db").string() + ": disk is full")));
    EXPECT_EQ(contents(), expected);
}

TEST_F(Sync, readsARecordAgainWhoseReservationWasLost) {
    const auto loseReservation = [&] {
        std::uint8_t answer[ipmi::maxMessage];
        bmc->exchange(0x0A, reserveSdrs, {}, answer);
    };
    for (int lost = 0; lost < 8; ++lost) {
        alter = [&, read = 0](std::uint8_t command, auto&&...) mutable {
            if (command == getSdr && read++ == lost)
                loseReservation();
        };
        EXPECT_EQ(text(sync()), "");
        EXPECT_EQ(contents(), expected) << "lost behind Get SDR " << lost;
    }
    alter = [&](std::uint8_t command, auto&&...) {
        if (command == getSdr || command == reserveSdrs)
            loseReservation();
    };
    pauses.clear();
    EXPECT_THAT([&] { sync(); }, testing::ThrowsMessage<std::runtime_error>(HasSubstr("another client")));
    EXPECT_GE(pauses.size(), 10u);
    EXPECT_TRUE(std::ranges::is_sorted(pauses) && pauses.front() < pauses.back() &&
                pauses.back() <= 1'000'000);
    EXPECT_EQ(contents(), expected);
}

TEST_F(Sync, asksForSmallerPartsWhereTheBmcsBufferIsSmall) {
    for (const int largest : {63, 31, 10, 8}) {
        json small = server;
        small["sdrRepository"]["largestPart"] = largest;
        create(small);
        EXPECT_EQ(text(sync()), "") << largest;
        EXPECT_EQ(contents(), expected) << largest;
    }
}

TEST_F(Sync, servesTheRecordsBesideABadOne) {
    const SdrBuilder good = SdrBuilder::compact(0x08, 0x6F, "PS 2").number(4).states(0x0003);
    const struct {
        const char* name;
        json repository; // its record is the sixth
        const char* reason;
    } cases[] = {
        {"unreadable body", rawRecord(good), "SDR record 0x0006: "},
        {"longer than it is", rawRecord(SdrBuilder(good).set(5, {40})),
         "SDR record 0x0006: the BMC does not return all of it"},
        {"shorter than its fields", rawRecord(SdrBuilder(good).set(5, {20})),
         "SDR record 0x0006: the record ends before its last field"},
        {"no header", {{"rawRecords", {"51"}}}, "SDR record 0x0006: its header is cut short"},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.name);
        json model = server;
        model["sdrRepository"] = item.repository;
        create(model);
        alter = [&](std::uint8_t command, const Bytes& request, Bytes& answer) {
            if (&item == cases && command == getSdr && request[2] == 6 && request[4] > 0)
                answer = {0xCE};
        };
        const auto report = sync();
        ASSERT_THAT(report.remarks, SizeIs(1));
        EXPECT_TRUE(report.remarks[0].isLoss);
        EXPECT_THAT(text(report), HasSubstr(item.reason));
        EXPECT_EQ(contents(), expected);
    }
}

TEST_F(Sync, knowsWhetherTheBmcsRecordsAreNewer) {
    constexpr std::uint8_t getRepositoryInfo = 0x20;
    Bytes info = {0x00, 0x51, 5, 0, 0xFF, 0xFF, 1, 2, 3, 4, 5, 6, 7, 8, 0x22};
    alter = [&](std::uint8_t command, const Bytes&, Bytes& answer) {
        if (command == getRepositoryInfo)
            answer = info;
    };
    EXPECT_THROW(smash::isStale(*this), std::runtime_error) << "there is no database";
    sync();
    EXPECT_FALSE(smash::isStale(*this));
    for (const std::size_t byte : {2, 6, 13}) { // records, last addition, last erase
        ++info[byte];
        EXPECT_TRUE(smash::isStale(*this)) << byte;
        --info[byte];
    }
    info.resize(4); // some leave the times out
    sync();
    EXPECT_FALSE(smash::isStale(*this));
}

TEST_F(Sync, endsAtARepositoryThatRunsInCircles) {
    alter = [](std::uint8_t command, const Bytes&, Bytes& answer) {
        if (command == getSdr && answer.size() > 3 && answer[1] == 0xFF) // the ID of the next one
            answer[1] = 2, answer[2] = 0;
    };
    EXPECT_THAT(text(sync()), HasSubstr("SDR record 0x0002: "));
    EXPECT_EQ(contents(), expected);
}

TEST_F(Sync, namesDevicesByWhatGuidsThereAre) {
    const std::string none(32, '0');
    const struct {
        std::vector<const char*> missing;
        bool isShort; // the device's
        const std::string &deviceId, &hostId;
    } cases[] = {{{"systemGuid"}, false, expected[0], expected[0]},
                 {{"deviceGuid"}, false, expected[1], expected[1]},
                 {{}, true, expected[1], expected[1]},
                 {{"deviceGuid", "systemGuid"}, false, none, none}};
    for (const auto& [missing, isShort, deviceId, hostId] : cases) {
        json model = server;
        for (const char* guid : missing)
            model["device"].erase(guid);
        create(model);
        alter = [cut = isShort](std::uint8_t command, const Bytes&, Bytes& answer) {
            if (cut && command == getDeviceGuid)
                answer.pop_back();
        };
        EXPECT_THAT(text(sync()), HasSubstr(" GUID: "));
        const auto stored = contents();
        EXPECT_EQ(stored[0], deviceId);
        EXPECT_EQ(stored[1], hostId);
    }
}

TEST_F(Sync, alwaysHasASystemBoard) {
    json own = server;
    own["frus"].erase(1);
    own["frus"][0]["entity"] = 3;
    own["sdrRepository"] = rawRecord(SdrBuilder::fruLocator(5, 7, 1));
    create(own);
    EXPECT_THAT(text(sync()), HasSubstr("FRU device 5: ")) << "it is located, and not there";
    EXPECT_EQ(contents()[2], expected[2]) << "the BMC's own";

    own["sdrRepository"].clear();
    own["frus"].push_back({{"id", 5}, {"name", "Board 2"}, {"board", {{"manufacturer", "Maker 2"}}}});
    create(own);
    EXPECT_EQ(text(sync()), "");
    EXPECT_EQ(contents()[2], "Maker 2///");

    // The header is read at the beginning, the board area behind its 8 bytes.
    const std::pair<const char*, void (*)(std::uint8_t command, const Bytes& request, Bytes& answer)>
        broken[] = {
            {"bad header", [](std::uint8_t command, const Bytes& request,
                              Bytes& answer) { answer.back() ^= command == readFru && request[1] == 0; }},
            {"bad area", [](std::uint8_t command, const Bytes& request,
                            Bytes& answer) { answer.back() ^= command == readFru && request[1] == 8; }},
            {"area beyond the end",
             [](std::uint8_t command, const Bytes&, Bytes& answer) {
                 if (command == getFruInfo)
                     answer[1] = static_cast<std::uint8_t>(answer[1] - 8);
             }},
            {"no area",
             [](std::uint8_t command, const Bytes& request, Bytes& answer) {
                 if (command == readFru && request[1] == 0)
                     answer = {0, 8, 1, 0, 0, 0, 0, 0, 0, 0xFF};
             }},
            {"no data",
             [](std::uint8_t command, const Bytes&, Bytes& answer) {
                 if (command == getFruInfo)
                     answer[1] = 0;
             }},
        };
    json one = server;
    one["frus"].erase(1);
    create(one);
    for (const auto& [name, alteration] : broken) {
        SCOPED_TRACE(name);
        alter = alteration;
        const auto report = sync();
        EXPECT_EQ(contents()[2], "///");
        EXPECT_EQ(report.remarks.size(), 1u) << text(report);
        EXPECT_EQ(report.frus, 1u);
    }
}

TEST_F(Sync, readsFrusThatAreAddressedByWordsAndOneOfEachEntity) {
    json model = server;
    model["frus"][0]["wordAddressed"] = true;
    model["frus"].push_back({{"id", 4}, {"name", "Another"}, {"entity", 10}, {"data", "01"}});
    create(model);
    EXPECT_THAT(text(sync()), HasSubstr("FRU device 4: "));
    EXPECT_EQ(contents(), expected);
}

TEST_F(Sync, namesADatabaseThatItCannotUse) {
    write("/conf/smash.db", std::string(5000, 'x'));
    EXPECT_THAT([&] { sync(); }, testing::ThrowsMessage<std::runtime_error>(
                                     HasSubstr(sysroot.place("/conf/smash.db").string())));
}

} // namespace
