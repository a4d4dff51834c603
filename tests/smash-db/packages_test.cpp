// What a sync makes of FRU areas and of locators, and what it takes for installed.
#include "bmc_session.h"
#include "database_fixture.h"
#include "smash-db/sync/sync.h"
#include "virtual-bmc/virtual_bmc.h"

#include <gmock/gmock.h>
#include <platform/smash_db_packages.h>

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::IsEmpty;

class SyncPackages : public SysrootFixture {
protected:
    // The packages of a model as "tag|manufacturer|model|part|serial|version|asset|chassis type".
    std::vector<std::string> sync(const std::string& model) {
        vbmc::createFromText(stateFile, model, "model", vbmc::Existing::Replace);
        report = smash::sync(*ipmi::openTransport(virtualBmc(stateFile)));
        handle = openDatabase(db_init);
        std::vector<std::string> texts;
        const auto rows = getAll(db_get_all_packages, handle);
        for (int i = 0; i < rows.count; ++i) {
            const PackageRow& row = rows.rows.get()[i];
            std::string text = row.tag;
            for (const char* field :
                 {row.manufacturer, row.model, row.partNumber, row.serialNumber, row.version, row.assetTag})
                text += "|" + std::string(field);
            EXPECT_EQ(row.hasFruData == 1, text.find_last_not_of('|') >= std::strlen(row.tag)) << text;
            texts.push_back(text + "|" + std::to_string(row.chassisType));
        }
        EXPECT_EQ(report.packages, texts.size());
        return texts;
    }
    std::string remarks() const {
        std::string lines;
        for (const auto& [source, reason, isLoss] : report.remarks)
            lines += source + ": " + reason + "\n";
        return lines;
    }

    const std::filesystem::path stateFile = sysroot.place("/tmp/bmc.state");
    smash::SyncReport report;
    Handle handle;
};

TEST_F(SyncPackages, describeWhatTheFruIsOn) {
    const struct {
        const char* name;
        const char* model;
        std::vector<std::string> packages;
    } cases[] = {
        {"product where the board says nothing",
         R"({"frus": [{"id": 3, "name": "Card", "entity": 11, "entityInstance": 2,
             "board": {"manufacturer": "BM", "product": "BP", "partNumber": "BN"},
             "product": {"manufacturer": "PM", "serialNumber": "PS", "version": "PV", "assetTag": "PA"}}]})",
         {"11.2.3:Card|BM|BP|BN|PS|PV|PA|0"}},
        {"chassis area and product of the whole system on the board",
         R"({"frus": [{"id": 0, "name": "Board", "board": {"manufacturer": "BM", "serialNumber": "BS"},
             "chassis": {"type": 23, "partNumber": "CN", "serialNumber": "CS"},
             "product": {"manufacturer": "PM", "product": "PP", "partNumber": "PN", "version": "PV",
                         "serialNumber": "PS", "assetTag": "PA"}}]})",
         {"7.1.0:Board|BM|||BS|||0", "23.1.0|PM|PP|CN|CS|PV|PA|23"}},
        {"chassis with a FRU device of its own",
         R"({"frus": [{"id": 4, "name": "Box", "entity": 23, "product": {"product": "P4", "serialNumber": "S4"}},
                      {"id": 0, "name": "", "chassis": {"type": 17, "partNumber": "CN", "serialNumber": "CS"},
                       "product": {"product": "Server", "version": "PV", "assetTag": "PA"}}]})",
         {"23.1.4:Box||P4|CN|S4||PA|17", "7.1.0|||||||0"}},
        {"chassis that has the chassis area",
         R"({"frus": [{"id": 4, "name": "Box", "entity": 23, "board": {"serialNumber": "BS"},
                       "chassis": {"type": 3, "serialNumber": "CS"}, "product": {"product": "Server"}}]})",
         {"23.1.4:Box||Server||CS|||3"}},
        {"two FRU devices of one entity, a quote in the name",
         R"({"frus": [{"id": 1, "name": "A'", "entity": 10, "product": {"product": "P1"}},
                      {"id": 2, "name": "B", "entity": 10, "product": {"product": "P2"}}]})",
         {"10.1.1:A_||P1|||||0", "10.1.2:B||P2|||||0"}},
        {"locators without a FRU device, of which the first counts",
         R"({"frus": [{"id": 5, "name": "Board", "entity": 7, "board": {"product": "BP"}}],
             "sdrRepository": {"controllers": [{"name": "BMC", "entity": 6}, {"name": "Bridge"}],
                               "genericDevices": [{"name": "CPU1", "entity": 3, "entityInstance": 129},
                                                  {"name": "Twin", "entity": 3}]}})",
         {"7.1.5:Board||BP|||||0", "6.1:BMC|||||||0", "3.1:CPU1|||||||0"}},
        {"a BMC that locates nothing and has no FRU device", R"({})", {}},
    };
    for (const auto& item : cases)
        EXPECT_THAT(sync(item.model), ElementsAreArray(item.packages)) << item.name;
}

TEST_F(SyncPackages, keepWhatCanBeReadBesideBrokenAreas) {
    // A header, a chassis area whose checksum is wrong, a board area of "AB" and "CD", and a multirecord area.
    const std::string start = "01 00 01 02 00 04 00 f8 01 01 17 c0 c0 c1 00 00 "
                              "01 02 19 00 00 00 c2 41 42 c2 43 44 c0 c0 c1 15 ";
    const std::string supply = " 70 03 ff ff ff 00 00 00 00 00 00 00 00 00 00 00 00 08 ff ff 00 00 00 00 00";
    const std::pair<std::string, const char*> cases[] = {
        {"00 82 18 8a dc" + supply, ""},
        {"c0 02 01 00 3d 00 00 82 18 8a dc" + supply, ""}, // behind another record
        {"00 82 18 8b db" + supply,
         "multirecord area: the checksum of its power supply information is wrong\n"},
        {"00 82 18 8a dd" + supply, "multirecord area: its checksum is wrong\n"},
        {"00 81 18 8a dd" + supply, "multirecord area: one of its records has another format than 2\n"},
        {"00 82 02 8d ef 70 03 00", "multirecord area: its power supply information is too short\n"},
        {"00 82 18 8a dc 70", "multirecord area: it goes beyond the end of the device's 38 bytes\n"},
    };
    for (const bool byWords : {false, true})
        for (const auto& [area, remark] : cases) {
            SCOPED_TRACE(area);
            const auto packages = sync(R"({"frus": [{"id": 0, "name": "", "wordAddressed": )" +
                                       std::string(byWords ? "true" : "false") +
                                       R"(, "entity": 10, "data": ")" + start + area + R"("}]})");
            EXPECT_THAT(packages, ElementsAre("10.1.0|AB|CD|||||0"));
            EXPECT_THAT(remarks(), HasSubstr("FRU device 0: chassis area: its checksum is wrong\n"));
            EXPECT_THAT(remarks(), HasSubstr(remark));
            EXPECT_EQ(report.remarks.size(), *remark != '\0' ? 4U : 3U) << "with two GUIDs\n" << remarks();
            PowerSupplyInfoRow* info = nullptr;
            ASSERT_EQ(db_get_power_supply_info(handle.get(), 10, 1, &info), 0) << db_last_error();
            const Owned<PowerSupplyInfoRow> owner(info);
            ASSERT_EQ(info != nullptr, *remark == '\0');
            if (info != nullptr) {
                EXPECT_EQ(info->capacity, 880);
                EXPECT_EQ(info->flags, SMASH_SUPPLY_HOT_SWAP);
                EXPECT_EQ(info->peakCapacity, 0) << "not specified";
            }
        }
}

TEST_F(SyncPackages, areThoseThatAreInstalled) {
    const auto sensor = [](const char* type, const char* readingType, const char* supported,
                           const char* states, const char* more = "") {
        return std::string(R"({"number": 1, "name": "S", "record": "compact", "entity": 10, "type": ")") +
               type + R"(", "readingType": ")" + readingType + R"(", "supportedStates": )" + supported +
               R"(, "states": )" + states + more + "}";
    };
    const std::tuple<std::string, bool> cases[] = {
        {"", true},
        {sensor("Power Supply", "sensor-specific", "[0, 1]", "[0]"), true},
        {sensor("Power Supply", "sensor-specific", "[0, 1]", "[1]"), false},
        {sensor("Power Supply", "sensor-specific", "[1, 3]", "[]"), true}, // which does not tell presence
        {sensor("Power Supply", "sensor-specific", "[0]", "[]", R"(, "availability": "unavailable")"), true},
        {sensor("Power Supply", "sensor-specific", "[0]", "[]", R"(, "availability": "unreadable")"), true},
        {sensor("Module or Board", "0x08", "[0, 1]", "[0]"), false},
        {sensor("Entity Presence", "sensor-specific", "[0, 1, 2]", "[2]"), true},
        {sensor("Entity Presence", "sensor-specific", "[0, 1, 2]", "[1]"), false},
        {sensor("FRU State", "sensor-specific", "[0, 4]", "[0]"), false},
    };
    for (const auto& [sensors, isInstalled] : cases)
        for (const char* what :
             {R"("frus": [{"id": 1, "name": "P", "entity": 10, "product": {"product": "X"}}])",
              R"("sdrRepository": {"genericDevices": [{"name": "P", "entity": 10}]})"})
            EXPECT_EQ(sync("{" + std::string(what) + R"(, "sensors": [)" + sensors + "]}").size(),
                      isInstalled ? 1U : 0U)
                << sensors << what;
    // A FRU device that does not answer is not there, unless a sensor says that its entity is.
    const std::string silent = R"("sdrRepository": {"rawRecords":
        ["51 11 0e 20 09 80 00 00 10 00 0a 01 00 c3 50 53 55"],
        "genericDevices": [{"name": "Same", "entity": 10}]})";
    EXPECT_THAT(sync("{" + silent + "}"), IsEmpty());
    EXPECT_THAT(sync("{" + silent + R"(, "sensors": [)" +
                     sensor("Power Supply", "sensor-specific", "[0, 1]", "[0]") + "]}"),
                ElementsAre("10.1.9:PSU|||||||0"));
}

} // namespace
