#include "database_fixture.h"
#include "smash-db/database.h"
#include "smash-db/device_tables.h"
#include "smash-db/inventory_tables.h"
#include "smash-db/rows.h"

#include <cstring>
#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

template <class Record>
Record blank() {
    Record record;
    std::memset(&record, 0, sizeof record); // padding too, so that whole records can be compared
    return record;
}

// Texts as long as their fields, each of its own character.
template <std::size_t... Sizes>
void fillTexts(char (&... fields)[Sizes]) {
    char character = 'a';
    (std::memset(fields, character++, Sizes - 1), ...);
}

// Numbers that differ, some of which need their field's whole width.
template <class... Fields>
void fillNumbers(Fields&... fields) {
    std::int64_t next = 0;
    const auto value = [&] { return ++next % 2 != 0 ? -next : next; };
    ((fields = static_cast<Fields>(value())), ...);
}

void fillCommon(CompactSdr& row) {
    fillTexts(row.deviceId, row.name, row.otherSensorType, row.source);
    fillNumbers(row.sensorType, row.ownerId, row.ownerLun, row.sensorNumber, row.entityId, row.entityInstance,
                row.ipmiSensorType, row.eventReadingType, row.supportedStates);
}

// A field that is not stored, or stored as another one, shows.
template <class Record>
void expectSame(const Owned<Record>& row, const Record& expected) {
    ASSERT_NE(row, nullptr) << db_last_error();
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): both had their padding cleared
    EXPECT_EQ(std::memcmp(row.get(), &expected, sizeof expected), 0);
}

class Rows : public DatabaseFixture {
protected:
    SQLite::Database connection = smash::open(smash::smashSchema, smash::OpenMode::Existing);
};

TEST_F(Rows, ofASessionThereIsOne) {
    EXPECT_EQ(getRow(db_get_ipmi_session_info, handle), nullptr) << "none was set";
    auto session = blank<IPMISessionInfo>();
    fillTexts(session.address, session.userName, session.password, session.interfaceType, session.cipherSuite,
              session.workaroundFlags, session.retransmission, session.privilegeLevel);
    session.port = 65535;
    ASSERT_EQ(db_set_ipmi_session_info(handle.get(), &session), 0) << db_last_error();
    expectSame(getRow(db_get_ipmi_session_info, handle), session);

    std::memset(session.address, 0, sizeof session.address);
    ASSERT_EQ(db_set_ipmi_session_info(handle.get(), &session), 0) << db_last_error();
    expectSame(getRow(db_get_ipmi_session_info, handle), session);
}

TEST_F(Rows, ofDevicesThereIsOneOfEachType) {
    for (const int type : {SMASH_DEVICE_SP, SMASH_DEVICE_HOST, SMASH_DEVICE_HOST}) {
        auto device = blank<DeviceRecord>();
        fillTexts(device.deviceId, device.guid);
        fillNumbers(device.manufacturerId, device.productId, device.firmwareMajor, device.firmwareMinor,
                    device.tag[0], device.tag[1], device.requestedState);
        device.type = type;
        ASSERT_EQ(db_set_device(handle.get(), &device), 0) << db_last_error();
        expectSame(getRow(db_get_device_bytype, handle, type), device);
    }
    EXPECT_NE(getRow(db_get_device_bytype, handle, SMASH_DEVICE_SP), nullptr);
    EXPECT_EQ(getRow(db_get_device_bytype, handle, 3), nullptr);
    EXPECT_THAT(db_last_error(), HasSubstr("table device"));
    EXPECT_EQ(connection.execAndGet("SELECT count(*) FROM device").getInt(), 2);
}

TEST_F(Rows, ofSensorsComeWholeAndInOrder) {
    EXPECT_EQ(getAll(db_get_all_full_sdrs, handle).count, 0);
    EXPECT_EQ(getAll(db_get_all_compact_sdrs, handle).count, 0);

    std::vector<FullSdr> numeric(1000, blank<FullSdr>());
    std::vector<CompactSdr> discrete(3, blank<CompactSdr>());
    for (std::size_t i = 0; i < numeric.size(); ++i) {
        FullSdr& row = numeric[i];
        fillCommon(row.common);
        fillNumbers(row.baseUnits, row.rateUnits, row.analogFormat, row.m, row.b, row.exponents,
                    row.nominalReading, row.normalMax, row.normalMin, row.maxReadable, row.minReadable,
                    row.hysteresis, row.lowerNonCritical, row.lowerCritical, row.lowerNonRecoverable,
                    row.upperNonCritical, row.upperCritical, row.upperNonRecoverable, row.resolution,
                    row.tolerance, row.accuracy, row.isLinear);
        smash::copyText(row.common.deviceId, std::to_string(i * 7919 % numeric.size())); // in no order
    }
    for (std::size_t i = 0; i < discrete.size(); ++i) {
        fillCommon(discrete[i]);
        discrete[i].deviceId[0] = static_cast<char>('z' - i);
    }
    SQLite::Transaction transaction(connection);
    smash::replaceAll<FullSdr>(connection, smash::fullSdrTable, numeric);
    smash::replaceAll<CompactSdr>(connection, smash::compactSdrTable, discrete);
    transaction.commit();

    const auto allNumeric = getAll(db_get_all_full_sdrs, handle);
    ASSERT_EQ(allNumeric.count, 1000) << db_last_error();
    EXPECT_EQ(std::memcmp(allNumeric.rows.get(), numeric.data(), numeric.size() * sizeof(FullSdr)), 0);
    const auto allDiscrete = getAll(db_get_all_compact_sdrs, handle);
    ASSERT_EQ(allDiscrete.count, 3) << db_last_error();
    EXPECT_EQ(std::memcmp(allDiscrete.rows.get(), discrete.data(), discrete.size() * sizeof(CompactSdr)), 0);

    expectSame(getRow(db_get_full_sdr, handle, numeric[500].common.deviceId), numeric[500]);
    expectSame(getRow(db_get_compact_sdr, handle, discrete[1].deviceId), discrete[1]);
    EXPECT_EQ(getRow(db_get_full_sdr, handle, "1000"), nullptr);
}

TEST_F(Rows, ofSensorsAreFoundByTheNumberOfAnEvent) {
    const std::pair<const char*, std::uint8_t> names[] = {
        {"Fan", 26},  {"Fan (26)", 9}, {"CPU( +26a) (5)", 10}, {"Fan (rear)", 26}, {"(5", 26},
        {"Temp", 27}, {"Fan2", 26}};
    std::vector<FullSdr> sensors;
    for (const auto& [name, number] : names) {
        auto& sensor = sensors.emplace_back(blank<FullSdr>());
        smash::copyText(sensor.common.name, name);
        smash::copyText(sensor.common.deviceId, name);
        sensor.common.sensorNumber = number;
    }
    smash::replaceAll<FullSdr>(connection, smash::fullSdrTable, sensors);
    const auto found = [&](int number) {
        FullSdr* rows = nullptr;
        int count = 0;
        EXPECT_EQ(db_get_full_sdrs_of_event(handle.get(), number, &rows, &count), 0) << db_last_error();
        std::vector<std::string> result;
        for (int i = 0; i < count; ++i)
            result.emplace_back(rows[i].common.name);
        std::free(rows);
        return result;
    };
    EXPECT_THAT(found(26), ElementsAre("Fan", "Fan (26)", "CPU( +26a) (5)", "Fan2"));
    EXPECT_THAT(found(5), ElementsAre("(5"));
    EXPECT_THAT(found(9), IsEmpty());
    SQLite::Statement plan(connection,
                           "EXPLAIN QUERY PLAN SELECT * FROM full_sdr WHERE " SMASH_EVENT_NUMBER " = ?");
    ASSERT_TRUE(plan.executeStep());
    EXPECT_THAT(plan.getColumn("detail").getString(), HasSubstr("USING INDEX full_sdr_index"));
}

TEST_F(Rows, ofEntitiesComeWhole) {
    auto device = blank<EntityDeviceRow>();
    fillNumbers(device.entityId, device.entityInstance, device.tachometer, device.presenceSensor,
                device.presentStates, device.absentStates, device.hasVariableSpeed);
    auto association = blank<EntityAssociationRow>();
    fillNumbers(association.containerId, association.containerInstance, association.entityId,
                association.entityInstance);
    smash::replaceAll<EntityDeviceRow>(connection, smash::entityDeviceTable, {&device, 1});
    smash::replaceAll<EntityAssociationRow>(connection, smash::entityAssociationTable, {&association, 1});
    expectSame(getAll(db_get_all_entity_devices, handle).rows, device);
    expectSame(getAll(db_get_all_entity_associations, handle).rows, association);
}

TEST_F(Rows, ofFrusComeByTheLowestEntityInstance) {
    auto lowest = blank<FruRecord>();
    fillTexts(lowest.manufacturer, lowest.model, lowest.serialNumber, lowest.partNumber);
    lowest.entityId = 7;
    lowest.entityInstance = 2;
    auto higher = blank<FruRecord>();
    higher.entityId = 7;
    higher.entityInstance = 0x60;
    const FruRecord rows[] = {higher, lowest};
    smash::replaceAll<FruRecord>(connection, smash::fruTable, rows);
    expectSame(getRow(db_get_fru_by_entity_id, handle, 7), lowest);
    EXPECT_EQ(getRow(db_get_fru_by_entity_id, handle, 8), nullptr);
}

TEST_F(Rows, ofStagedAddressesTheFirstStays) {
    auto standard = blank<StaticIPRow>();
    std::strcpy(standard.key, "1");
    ASSERT_EQ(db_init_static_ip_assignment_settingdata(handle.get(), &standard), 0) << db_last_error();
    auto staged = standard;
    std::strcpy(staged.IPv4Address, "192.0.2.9");
    ASSERT_EQ(db_set_static_ip_assignment_settingdata(handle.get(), &staged), 0) << db_last_error();
    // By a reader that had found the table empty before.
    ASSERT_EQ(db_init_static_ip_assignment_settingdata(handle.get(), &standard), 0) << db_last_error();
    const auto all = getAll(db_get_all_static_ip_assignment_settingdata, handle);
    ASSERT_EQ(all.count, 1);
    EXPECT_STREQ(all.rows.get()->IPv4Address, "192.0.2.9");
}

TEST_F(Rows, haveTextsThatAreCutBetweenCharacters) {
    auto device = blank<DeviceRecord>();
    device.type = SMASH_DEVICE_HOST;
    std::memset(device.guid, 'g', sizeof device.guid); // no terminator
    ASSERT_EQ(db_set_device(handle.get(), &device), 0) << db_last_error();
    // 62 characters and a Euro sign of three bytes, of which the field would hold one.
    connection.exec("UPDATE device SET deviceId = '" + std::string(62, 'd') + "\xE2\x82\xAC'");
    const auto row = getRow(db_get_device_bytype, handle, SMASH_DEVICE_HOST);
    ASSERT_NE(row, nullptr) << db_last_error();
    EXPECT_EQ(std::string(row->guid), std::string(63, 'g'));
    EXPECT_EQ(std::string(row->deviceId), std::string(62, 'd'));
}

TEST_F(Rows, areAllKeptBackWhereOneIsDamaged) {
    CompactSdr rows[2] = {blank<CompactSdr>(), blank<CompactSdr>()};
    std::strcpy(rows[0].deviceId, "good");
    std::strcpy(rows[1].deviceId, "bad");
    smash::replaceAll<CompactSdr>(connection, smash::compactSdrTable, rows);
    for (const char* value : {"256", "-1", "'text'"}) {
        connection.exec(std::string("UPDATE compact_sdr SET sensorNumber = ") + value +
                        " WHERE deviceId = 'bad'");
        const auto all = getAll(db_get_all_compact_sdrs, handle);
        EXPECT_FALSE(all.isRead) << value;
        EXPECT_EQ(all.count, 0);
        EXPECT_THAT(db_last_error(), HasSubstr("compact_sdr.sensorNumber"));
    }
    EXPECT_NE(getRow(db_get_compact_sdr, handle, "good"), nullptr);
}

TEST_F(Rows, needTheirArguments) {
    DeviceRecord* device = nullptr;
    CompactSdr* rows = nullptr;
    int count = 0;
    EXPECT_EQ(db_init(nullptr), 1);
    EXPECT_EQ(db_close(nullptr), 1);
    EXPECT_EQ(db_get_device_bytype(nullptr, 1, &device), 1);
    EXPECT_EQ(db_get_device_bytype(handle.get(), 1, nullptr), 1);
    EXPECT_EQ(db_set_device(handle.get(), nullptr), 1);
    EXPECT_EQ(db_get_all_compact_sdrs(handle.get(), nullptr, &count), 1);
    EXPECT_EQ(db_get_all_compact_sdrs(handle.get(), &rows, nullptr), 1);
    EXPECT_EQ(getRow(db_get_compact_sdr, handle, nullptr), nullptr);
}

} // namespace
