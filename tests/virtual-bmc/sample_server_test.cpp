// The sample server, as sync finds it.
#include "virtual_bmc_fixture.h"

#include "smash-db/sync/sync.h"

#include <cstdlib>
#include <map>
#include <platform/cim_hooks.h>
#include <platform/smash_db.h>
#include <set>

namespace {

using testing::IsEmpty;
using testing::IsSupersetOf;

class SampleServer : public VirtualBmcFixture {
protected:
    void SetUp() override {
        vbmc::create(stateFile, PH_SAMPLE_SERVER);
        bmc = open();
        report = smash::sync(*bmc);
        sensors = vbmc::VirtualBmc(stateFile).describe()["sensors"];
        ASSERT_EQ(db_init(&database), 0);
        ASSERT_EQ(db_get_all_full_sdrs(database, &full, &fullCount), 0);
        ASSERT_EQ(db_get_all_compact_sdrs(database, &compact, &compactCount), 0);
    }
    void TearDown() override {
        std::free(full);
        std::free(compact);
        EXPECT_EQ(db_close(database), 0);
    }

    std::unique_ptr<ipmi::Transport> bmc;
    smash::SyncReport report;
    nlohmann::ordered_json sensors; // as the machine describes them
    SMASH_DB_HANDLE database = nullptr;
    FullSdr* full = nullptr;
    CompactSdr* compact = nullptr;
    int fullCount = 0;
    int compactCount = 0;
};

TEST_F(SampleServer, isFoundWhole) {
    for (const auto& remark : report.remarks)
        ADD_FAILURE() << remark.source << ": " << remark.reason;
    EXPECT_EQ(report.frus, 5u);
    std::map<int, std::string> found;
    for (int i = 0; i < fullCount; ++i)
        found[full[i].common.sensorNumber] = full[i].common.name;
    for (int i = 0; i < compactCount; ++i)
        found[compact[i].sensorNumber] = compact[i].name;
    std::map<int, std::string> described;
    for (const auto& sensor : sensors)
        described[sensor["number"]] = sensor["name"];
    EXPECT_EQ(found, described);
    EXPECT_GE(found.size(), 60u);
}

TEST_F(SampleServer, hasSensorsOfAllKinds) {
    std::set<int> formats;
    int nonLinear = 0;
    int withOffset = 0;
    std::set<int> codes;
    std::set<int> specificTypes;
    for (int i = 0; i < fullCount; ++i) {
        formats.insert(full[i].analogFormat);
        nonLinear += full[i].isLinear == 0;
        withOffset += full[i].b != 0 && full[i].exponents != 0;
    }
    for (int i = 0; i < compactCount; ++i) {
        codes.insert(compact[i].eventReadingType);
        if (compact[i].eventReadingType == 0x6F)
            specificTypes.insert(compact[i].ipmiSensorType);
    }
    EXPECT_EQ(formats, (std::set{0, 1, 2}));
    EXPECT_GE(nonLinear, 2);
    EXPECT_GE(withOffset, 2);
    EXPECT_THAT(codes, IsSupersetOf({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0x6F, 0x70, 0x7E}));
    EXPECT_THAT(specificTypes, IsSupersetOf({0x05, 0x07, 0x08, 0x0C, 0x0D, 0x23, 0x25}));
}

TEST_F(SampleServer, readsAsItDescribesItself) {
    std::map<std::string, int> availabilities;
    for (const auto& sensor : sensors) {
        const auto number = sensor["number"].get<std::uint8_t>();
        const std::string availability = sensor["availability"];
        const Bytes answer = ask(*bmc, 0x04, 0x2D, {number});
        ++availabilities[availability];
        if (availability == "unreadable") {
            EXPECT_EQ(answer, Bytes{0xCB}) << sensor;
            continue;
        }
        EXPECT_EQ((answer.at(2) & 0x20) != 0, availability == "unavailable") << sensor;
        if (sensor.contains("raw")) {
            EXPECT_EQ(answer.at(1), sensor["raw"]) << sensor;
        }
        if (sensor.contains("crossed")) {
            EXPECT_EQ(answer.at(3) & 0x3F, 0) << sensor << " is healthy";
        }
        if (sensor.contains("states")) {
            EXPECT_EQ(answer.at(3) | (answer.at(4) & 0x7F) << 8, sensor["states"]) << sensor;
        }
    }
    EXPECT_GE(availabilities["unavailable"], 2);
    EXPECT_GE(availabilities["unreadable"], 2);
    EXPECT_THAT(report.remarks, IsEmpty());
}

TEST_F(SampleServer, isReachedThroughTheHooks) {
    constexpr std::uint8_t localhost[] = {127, 0, 0, 1};
    constexpr int virtualBmc = 2;
    constexpr int administrator = 4;
    const auto openFor = [&](IPMI20_SESSION_T& session, const char* user) {
        return CIM_Create_IPMI20_Session_Ext(&session, user, localhost, virtualBmc, administrator, 0, 30);
    };
    IPMI20_SESSION_T session;
    for (const char* const user : {"guest", "nobody"}) // disabled, unknown
        EXPECT_NE(openFor(session, user), 0) << user;
    ASSERT_EQ(openFor(session, "operator"), 0);
    vbmc::VirtualBmc(stateFile).setReading("FAN1", 900);
    CIM_SensorReading reading;
    ASSERT_EQ(CIM_GetSensorReading(&session, 34, &reading, 30), 0);
    EXPECT_EQ(reading.completionCode, 0);
    EXPECT_EQ(reading.reading, 9);
    EXPECT_EQ(reading.statesLow & 0x3F, 0x03) << "below lower non-critical and critical";
    EXPECT_EQ(CIM_Close_Session(&session), 0);
}

} // namespace
