// The sample server, as sync finds it.
#include "paths.h"
#include "virtual_bmc_fixture.h"

#include "smash-db/sync/sync.h"

#include <cstdlib>
#include <map>
#include <platform/smash_db.h>

namespace {

using testing::IsEmpty;

class SampleServer : public VirtualBmcFixture {
protected:
    void SetUp() override {
        vbmc::create(stateFile, paths::sampleServer);
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
    EXPECT_EQ(report.packages, 17u + 16u)
        << "5 FRU devices, 4 generic devices, the BMC, 7 fans; 14 modules and 2 cards of the host's table";
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

} // namespace
