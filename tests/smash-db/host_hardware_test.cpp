// What a sync makes of the host's SMBIOS table, together with what the BMC tells of the same parts.
#include "bmc_session.h"
#include "database_fixture.h"
#include "ipmi/oem_commands.h"
#include "smash-db/sync/hardware_codes.h"
#include "smash-db/sync/host_hardware.h"
#include "smbios_builder.h"
#include "virtual-bmc/virtual_bmc.h"

#include <gmock/gmock.h>
#include <platform/smash_db.h>

namespace {

namespace fs = std::filesystem;

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class SyncHardware : public SysrootFixture {
protected:
    void createBmc(const std::string& model) const {
        vbmc::createFromText(stateFile, model, "model", vbmc::Existing::Replace);
    }
    void sync(const fs::path& file = {}) {
        report = smash::sync(*ipmi::openTransport(virtualBmc(stateFile)), {}, file);
        handle = openDatabase(db_init);
    }
    fs::path save(const SmbiosBuilder::Bytes& bytes) const {
        const fs::path file = sysroot.place("/tmp/table");
        std::ofstream(file, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return file;
    }
    void sync(SmbiosBuilder table) { sync(save(table.end().bare())); }

    template <class Row>
    std::vector<std::string> rows(int (*get)(SMASH_DB_HANDLE, Row**, int*), std::string (*text)(const Row&)) {
        std::vector<std::string> texts;
        const auto all = getAll(get, handle);
        for (int i = 0; i < all.count; ++i)
            texts.push_back(text(all.rows.get()[i]));
        return texts;
    }
    std::vector<std::string> packages() {
        return rows<PackageRow>(db_get_all_packages, [](const PackageRow& row) {
            return std::string(row.tag) + "|" + row.manufacturer + "|" + row.serialNumber;
        });
    }
    std::vector<std::string> processors() {
        return rows<ProcessorRow>(db_get_all_processors, [](const ProcessorRow& row) {
            return std::to_string(row.entityInstance) + " " + std::to_string(row.enabledCores) + "/" +
                   std::to_string(row.cores);
        });
    }
    std::vector<std::string> modules() {
        return rows<MemoryModuleRow>(db_get_all_memory_modules, [](const MemoryModuleRow& row) {
            return std::to_string(row.entityInstance) + " " + std::to_string(row.capacity / 1024 / 1024);
        });
    }
    std::vector<std::string> connectors() {
        return rows<ConnectorRow>(db_get_all_connectors, [](const ConnectorRow& row) {
            return std::string(row.tag) + "|" + row.description;
        });
    }
    std::vector<std::string> pciDevices() {
        return rows<PciDeviceRow>(db_get_all_pci_devices, [](const PciDeviceRow& row) {
            return std::string(row.deviceId) + "|" + row.name + "|" + row.description + "|" +
                   std::to_string(row.classCode) + "|" + std::to_string(row.enabledState);
        });
    }
    std::vector<std::string> remarks() const {
        std::vector<std::string> lines;
        for (const auto& [source, reason, isLoss] : report.remarks)
            if (source.starts_with("SMBIOS"))
                lines.push_back(source + ": " + reason + (isLoss ? " (loss)" : ""));
        return lines;
    }

    const fs::path stateFile = sysroot.place("/tmp/bmc.state");
    smash::SyncReport report;
    Handle handle;
};

// A socket with a processor of a SMBIOS version that knows no cores.
SmbiosBuilder& addProcessor(SmbiosBuilder& table, std::uint16_t number, const std::string& socket,
                            bool isInstalled = true) {
    return table.add(4, number, 0x23, {{4, 1}, {7, 2}, {0x18, isInstalled ? 0x41U : 0U}, {0x20, 3}},
                     {socket, "Maker", "SN" + std::to_string(number)});
}

SmbiosBuilder& addModule(SmbiosBuilder& table, std::uint16_t array, const std::string& socket,
                         std::uint16_t size) {
    return table.add(17, static_cast<std::uint16_t>(0x1100 + size), 0x1B,
                     {{4, array, 2}, {0x0C, size, 2}, {0x10, 1}}, {socket});
}

TEST_F(SyncHardware, findsPartsAsTheBmcNamesThem) {
    createBmc(R"({"frus": [{"id": 0, "name": "", "board": {"manufacturer": "Board Maker"}},
                           {"id": 3, "name": "DIMM B", "entity": 32, "entityInstance": 7, "product": {"serialNumber": "Own"}},
                           {"id": 4, "name": "PCIe 1", "entity": 11, "entityInstance": 2, "product": {"manufacturer": "Card Maker"}}],
                  "sdrRepository": {"genericDevices": [{"name": "CPU 2", "entity": 3, "entityInstance": 1}]}})");
    SmbiosBuilder table;
    table.add(2, 2, 0x0F, {{4, 1}, {7, 2}, {9, 1}}, {"Other Maker", "B-SERIAL"})
        .add(3, 3, 0x16, {{4, 1}, {5, 0x97}, {7, 2}}, {"Box Maker", "To Be Filled By O.E.M."});
    addProcessor(table, 4, "CPU 1");
    addProcessor(table, 5, "cpu 2");
    addProcessor(table, 6, "CPU 3", false);
    table.add(16, 0x1000, 0x0F, {{5, 3}, {6, 6}, {7, 1024 * 1024, 4}, {0x0D, 3, 2}});
    addModule(table, 0x1000, "DIMM A", 2048);
    addModule(table, 0x1000, "DIMM B", 4096);
    addModule(table, 0x1000, "DIMM C", 0);
    table.add(9, 7, 0x11, {{4, 1}, {5, 0xB8}, {6, 0x0D}, {7, 4}, {0x0F, 0x17}}, {"PCIe 1"})
        .add(9, 8, 0x11, {{4, 1}, {5, 0xB6}, {6, 0x0A}, {7, 4}, {0x0F, 0xFF}, {0x10, 0xFF}}, {"It's \"new\""})
        .add(9, 9, 0x11, {{4, 1}, {5, 6}, {6, 5}, {7, 3}}, {"PCI"})
        .add(8, 10, 9, {{5, 0}, {6, 1}, {7, 0x0B}, {8, 0x1F}}, {"LAN"})
        .add(41, 11, 0x0B, {{4, 1}, {5, 0x85}, {9, 1}}, {"NIC 1"})
        .add(41, 12, 0x0B, {{4, 1}, {5, 0x03}, {9, 1}, {10, 1}}, {"Video"});
    sync(table);

    EXPECT_THAT(remarks(), IsEmpty());
    EXPECT_THAT(packages(), ElementsAre("7.1.0|Board Maker|B-SERIAL", "32.7.3:DIMM B||Own",
                                        "11.2.4:PCIe 1|Card Maker|", "3.1:CPU 2|Maker|SN5", "23.1|Box Maker|",
                                        "3.2:CPU 1|Maker|SN4", "32.1:DIMM A||", "11.0:Slot 2:It_s _new_||"));
    EXPECT_THAT(processors(), ElementsAre("2 0/0", "1 0/0"));
    EXPECT_THAT(modules(), ElementsAre("1 2048", "7 4096"));
    EXPECT_THAT(connectors(),
                ElementsAre("Processor Socket 1:CPU 1|processor socket with 3.2:CPU 1",
                            "Processor Socket 2:cpu 2|processor socket with 3.1:CPU 2",
                            "Processor Socket 3:CPU 3|processor socket, empty",
                            "Memory Socket 1:DIMM A|memory socket with 32.1:DIMM A",
                            "Memory Socket 2:DIMM B|memory socket with 32.7.3:DIMM B",
                            "Memory Socket 3:DIMM C|memory socket, empty",
                            "Slot 1:PCIe 1|PCI Express Gen 4 x16 slot with 11.2.4:PCIe 1",
                            "Slot 2:It_s _new_|PCI Express Gen 3 x4 in x16 slot with 11.0:Slot 2:It_s _new_",
                            "Slot 3:PCI|PCI slot, empty", "Port 1:LAN|Network Port"));
    EXPECT_THAT(pciDevices(), ElementsAre("PCI 0000:17:00.0|PCIe 1|Device on 11.2.4:PCIe 1|255|5",
                                          "PCI 0000:01:00.0|NIC 1|Ethernet on 7.1.0|2|2",
                                          "PCI 0000:01:00.1|Video|Video on 7.1.0|3|3"));
    MemoryRow* memory = nullptr;
    ASSERT_EQ(db_get_memory(handle.get(), &memory), 0);
    ASSERT_NE(memory, nullptr);
    EXPECT_EQ(memory->size, std::int64_t{6144} * 1024 * 1024);
    EXPECT_EQ(memory->capacity, std::int64_t{1} << 30);
    EXPECT_EQ(memory->sockets, 3);
    EXPECT_STREQ(memory->errorMethodology, "Multi-bit ECC");
    std::free(memory);
}

// A slot's type tells which cards it takes, its width how wide the link is (DSP0134, 7.10.1 and 7.10.2).
TEST(SlotShape, isThatOfTheCardsThatItTakes) {
    const struct {
        std::uint8_t type, width;
        std::uint16_t layout, linkWidth, dataWidth;
        const char* text;
    } slots[] = {
        {0xB6, 0x0B, 23, 5, 0, "PCI Express Gen 3 x8 in x16"},
        {0xB5, 0x0B, 22, 5, 0, "PCI Express Gen 3 x8"},
        {0xB8, 0x0D, 23, 7, 0, "PCI Express Gen 4 x16"}, // of any size
        {0xA6, 0x05, 19, 0, 32, "PCI Express x1"},       // firmware that gives a width of PCI
        {0xC4, 0x0D, 23, 7, 0, "PCI Express Gen 6 x16"},
        {0x20, 0x0A, 1, 4, 0, "PCI Express Gen 3 SFF-8639 x4"},
        {0x12, 0x06, 17, 0, 64, "PCI-X"},
        {0x01, 0x0B, 1, 5, 0, "x8"},
        {0x02, 0x02, 1, 0, 0, ""},
    };
    for (const auto& each : slots) {
        const smash::SlotShape shape = smash::slotShapeOf(each.type, each.width);
        EXPECT_EQ(shape.text, each.text);
        EXPECT_EQ(shape.layout, each.layout) << each.text;
        EXPECT_EQ(shape.linkWidth, each.linkWidth) << each.text;
        EXPECT_EQ(shape.dataWidth, each.dataWidth) << each.text;
    }
}

TEST_F(SyncHardware, namesWhatItLeavesOut) {
    createBmc("{}");
    SmbiosBuilder table;
    table.add(16, 0x1000, 0x0F, {{5, 5}}); // flash memory
    addModule(table, 0x1000, "ROM", 1);
    addModule(table, 0x1234, "Stray", 2);
    addModule(table, 0x1234, "Empty", 0);
    table
        .add(4, 4, 0x30,
             {{4, 1}, {0x18, 0x41}, {0x23, 0xFF}, {0x24, 0xFF}, {0x2A, 60000, 2}, {0x2C, 60000, 2}}, {"CPU"})
        .add(41, 5, 0x0B, {{4, 1}, {5, 0x85}, {9, 0xFF}, {10, 0xFF}}, {"Absent"})
        .add(41, 6, 0x0B, {{4, 1}, {5, 0x85}}, {"First"})
        .add(41, 7, 0x0B, {{4, 9}, {5, 0x85}}, {"Second"});
    sync(table);
    EXPECT_THAT(
        remarks(),
        ElementsAre(
            "SMBIOS structure 0x0007 (onboard device): it has no string 9",
            "SMBIOS processor 1: its 60000 cores are more than a processor has",
            "SMBIOS memory device ROM: it is no system memory",
            "SMBIOS memory array 0x1234: it is not there, and taken for system memory: 2 devices name it",
            "SMBIOS device Absent: it has no PCI address",
            "SMBIOS device : there is another one at its PCI address"));
    EXPECT_THAT(processors(), ElementsAre("1 0/0"));
    EXPECT_THAT(modules(), ElementsAre("1 2"));
}

TEST_F(SyncHardware, takes255ProcessorsAndNoMore) {
    createBmc("{}");
    SmbiosBuilder table;
    for (std::uint16_t i = 0; i < 255; ++i)
        addProcessor(table, i, "CPU");
    sync(table);
    EXPECT_THAT(processors(), SizeIs(255));
    EXPECT_THAT(remarks(), IsEmpty());
    addProcessor(table, 255, "CPU");
    sync(table);
    EXPECT_THAT(processors(), SizeIs(255));
    EXPECT_THAT(remarks(), ElementsAre("SMBIOS processors: 1 are left out: there are more than 255 (loss)"));
}

TEST_F(SyncHardware, readsWhatTheBmcHasOfItsHost) {
    createBmc(R"({"device": {"systemGuid": "d83a7e04-52c9-4b1d-a6f8-0c94e71b3f25"},
                  "smbios": {"system": {"uuid": "d83a7e04-52c9-4b1d-a6f8-0c94e71b3f25"},
                             "processors": [{"socket": "CPU1", "cores": 300, "enabledCores": 280}, {"socket": "CPU2", "installed": false}],
                             "memory": {"capacity": 2097152, "modules": [{"socket": "DIMM", "size": 65536}]}}})");
    sync();
    EXPECT_EQ(report.hardwareSource, "the BMC");
    EXPECT_THAT(remarks(), IsEmpty());
    EXPECT_THAT(processors(), ElementsAre("1 280/300"));
    EXPECT_THAT(modules(), ElementsAre("1 65536"));

    // A BMC of another maker is not asked.
    createBmc(R"({"device": {"productId": 1}, "smbios": {"processors": [{"socket": "CPU1"}]}})");
    vbmc::VirtualBmc(stateFile).recordMessages(100);
    sync();
    EXPECT_EQ(report.hardwareSource, "");
    EXPECT_THAT(processors(), IsEmpty());
    for (const vbmc::Message& message : vbmc::VirtualBmc(stateFile).recordedMessages())
        EXPECT_NE(message.netFn, 0x30);

    for (const vbmc::Fault::Kind kind : {vbmc::Fault::CompletionCode, vbmc::Fault::ShortAnswer}) {
        createBmc(R"({"smbios": {"processors": [{"socket": "CPU1"}]}})");
        vbmc::VirtualBmc(stateFile).addFault(
            {.netFn = 0x30, .command = ipmi::oem::readSmbiosTable.number, .kind = kind, .value = 3});
        sync();
        EXPECT_THAT(remarks(), ElementsAre(HasSubstr("(loss)")));
        EXPECT_THAT(processors(), IsEmpty());
    }
}

TEST_F(SyncHardware, keepsTheFileThatItWasGiven) {
    createBmc(R"({"device": {"systemGuid": "d83a7e04-52c9-4b1d-a6f8-0c94e71b3f25"}})");
    SmbiosBuilder table;
    addProcessor(table, 1, "CPU");
    table.add(1, 2, 0x1B, {{8, 0x0102030405060708, 8}, {16, 1, 8}});
    const fs::path file = save(table.end().version2());
    sync(file);
    EXPECT_EQ(report.hardwareSource, file.string());
    EXPECT_THAT(remarks(), ElementsAre(HasSubstr("is not the GUID")));
    const fs::path kept = sysroot.place("/conf/smbios.bin");
    EXPECT_EQ(fs::status(kept).permissions(), fs::perms::owner_read | fs::perms::owner_write);

    sync();
    EXPECT_EQ(report.hardwareSource, kept.string());
    EXPECT_THAT(processors(), SizeIs(1));
    sync(kept);
    EXPECT_THAT(processors(), SizeIs(1));

    // One that is of no use changes nothing.
    std::ofstream(file) << "no table";
    EXPECT_THROW(sync(file), std::runtime_error);
    EXPECT_THROW(sync(sysroot.place("/tmp/missing")), std::runtime_error);
    handle = openDatabase(db_init);
    EXPECT_THAT(processors(), SizeIs(1));
    sync();
    EXPECT_THAT(processors(), SizeIs(1));
}

} // namespace
