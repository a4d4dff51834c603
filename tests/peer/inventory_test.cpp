// FRU devices of OpenIPMI's BMC simulator, with ipmitool as the witness of what they say.
#include "ipmi-view/fru.h"
#include "provider_on_simulator.h"
#include "sdr_builder.h"
#include "virtual-bmc/virtual_bmc.h"

#include <map>
#include <sstream>

namespace {

// FRU device 0 is a board with everything, device 1 a power supply.
constexpr char model[] = R"({"frus": [
    {"id": 0, "name": "", "chassis": {"type": 17, "partNumber": "C-PART", "serialNumber": "C-SERIAL"},
     "board": {"manufactured": "2024-03-01", "manufacturer": "Board Maker", "product": "Board", "serialNumber": "B-SERIAL",
               "partNumber": "B-PART"},
     "product": {"manufacturer": "Server Maker", "product": "Server", "version": "v3", "serialNumber": "P-SERIAL",
                 "assetTag": "Rack 7"}},
    {"id": 1, "name": "", "product": {"manufacturer": "Supply Maker", "product": "Supply", "serialNumber": "S-SERIAL",
                                      "version": "v1", "partNumber": "S-PART"},
     "powerSupply": {"capacity": 880, "hotSwap": true}}]})";

std::string bytes(std::span<const std::uint8_t> values) {
    std::string text;
    for (const unsigned value : values) {
        char digits[8];
        std::snprintf(digits, sizeof digits, " 0x%02x", value);
        text += digits;
    }
    return text + "\n";
}

// Of ipmi_sim(1): both devices, and a locator of the supply.
std::string simulatorCommands() {
    const Sysroot place;
    const std::filesystem::path stateFile = place.place("/tmp/bmc.state");
    vbmc::createFromText(stateFile, model, "model");
    const auto bmc = ipmi::openTransport(virtualBmc(stateFile));
    std::string commands;
    for (const std::uint8_t id : std::initializer_list<std::uint8_t>{0, 1}) {
        std::uint8_t answer[ipmi::maxMessage];
        const std::uint8_t request[] = {id, 0, 0, 0xFF};
        const std::size_t size = bmc->exchange(0x0A, 0x11, request, answer);
        const auto image = std::span(answer).subspan(2, size - 2); // behind completion code and count
        commands += "mc_add_fru_data 0x20 " + std::to_string(id) + " " + std::to_string(image.size()) +
                    " data" + bytes(image);
    }
    return commands + "main_sdr_add 0x20" + bytes(SdrBuilder::fruLocator(1, 10, 1).record(0).bytes);
}

class PeerInventory : public ProviderOnSimulator {
protected:
    PeerInventory() : ProviderOnSimulator(simulatorCommands()) {
        smash::sync(*ipmi::openTransport(bmc.settings()));
    }
    // What `ipmitool fru print` says behind a label.
    static std::string printed(const std::string& fru, const std::string& label) {
        std::istringstream lines(fru);
        for (std::string line; std::getline(lines, line);)
            if (const auto start = line.find(label); start != std::string::npos)
                if (const auto colon = line.find(": ", start); colon != std::string::npos)
                    return line.substr(colon + 2);
        return "<not printed>";
    }
};

TEST_F(PeerInventory, isWhatIpmitoolPrints) {
    const std::string board = ipmitool("fru print 0");
    const std::string supply = ipmitool("-v fru print 1");
    const struct {
        const char* className;
        const std::string& fru;
        std::vector<std::pair<const char*, const char*>> properties; // and labels
    } cases[] = {
        {"CIM_Card",
         board,
         {{"Manufacturer", "Board Mfg  "},
          {"Model", "Board Product"},
          {"SerialNumber", "Board Serial"},
          {"PartNumber", "Board Part Number"}}},
        {"CIM_Chassis",
         board,
         {{"SerialNumber", "Chassis Serial"},
          {"PartNumber", "Chassis Part Number"},
          {"Manufacturer", "Product Manufacturer"},
          {"Model", "Product Name"},
          {"Version", "Product Version"},
          {"UserTracking", "Product Asset Tag"}}},
        {"CIM_PhysicalPackage",
         supply,
         {{"Manufacturer", "Product Manufacturer"},
          {"Model", "Product Name"},
          {"SerialNumber", "Product Serial"},
          {"PartNumber", "Product Part Number"},
          {"Version", "Product Version"}}},
    };
    for (const auto& [className, fru, properties] : cases) {
        const auto element = only(className);
        for (const auto& [property, label] : properties)
            EXPECT_EQ(textOf(element, property), printed(fru, label)) << className << '.' << property << '\n'
                                                                      << fru;
    }
    EXPECT_EQ(printed(board, "Chassis Type"), "Main Server Chassis") << board;
    EXPECT_EQ(get("CIM_Chassis", "ChassisPackageType"), "17");
    EXPECT_THAT(printed(board, "Board Mfg Date"), testing::HasSubstr("Mar  1")) << board;
    EXPECT_THAT(get("CIM_Card", "ManufactureDate"), testing::StartsWith("20240301"));
    EXPECT_THAT(printed(supply, "Capacity"), testing::HasSubstr("880")) << supply;
    PowerSupplyInfoRow* info = nullptr;
    SMASH_DB_HANDLE database = nullptr;
    ASSERT_EQ(db_init(&database), 0);
    ASSERT_EQ(db_get_power_supply_info(database, 10, 1, &info), 0);
    EXPECT_EQ(db_close(database), 0);
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(info->capacity, 880);
    std::free(info);
}

TEST_F(PeerInventory, fieldsAreWhatIpmitoolPrints) {
    const auto session = ipmi::openTransport(bmc.settings());
    auto devices = view::findFruDevices(*session);
    ASSERT_EQ(devices.size(), 2u);
    for (view::FruDevice& device : devices)
        view::readFru(*session, device);
    const std::string fru = ipmitool("fru print 0");
    const std::map<std::string, const char*> labels = {
        {"Chassis Type", "Chassis Type"},           {"Chassis Serial number", "Chassis Serial"},
        {"Board Manufacturer", "Board Mfg  "},      {"Board Product", "Board Product"},
        {"Board Serial number", "Board Serial"},    {"Board Part number", "Board Part Number"},
        {"Product Manufacturer", "Product Manuf"},  {"Product Name", "Product Name"},
        {"Product Version", "Product Version"},     {"Product Serial number", "Product Serial"},
        {"Product Asset tag", "Product Asset Tag"}, {"Chassis Part number", "Chassis Part Number"},
    };
    std::size_t compared = 0;
    for (const view::FruField& field : view::fieldsOf(*devices[0].contents))
        if (const auto label = labels.find(std::string(field.area) + ' ' + field.name);
            label != labels.end()) {
            EXPECT_EQ(field.value, printed(fru, label->second)) << label->first;
            ++compared;
        }
    EXPECT_EQ(compared, 12u);
}

} // namespace
