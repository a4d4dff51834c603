// SMBIOS tables as dmidecode reads them.
#include "bmc_session.h"
#include "ipmi/command.h"
#include "ipmi/oem_commands.h"
#include "paths.h"
#include "smbios/hardware.h"
#include "smbios/names.h"
#include "smbios_builder.h"
#include "sysroot_fixture.h"
#include "virtual-bmc/virtual_bmc.h"

#include <cstdio>
#include <fstream>
#include <gmock/gmock.h>
#include <map>
#include <memory>
#include <strings.h>

namespace {

namespace fs = std::filesystem;

using Bytes = SmbiosBuilder::Bytes;

class PeerSmbios : public testing::Test {
protected:
    // One line for each structure of the type, of the values behind these labels.
    std::vector<std::string> witnessed(int type, std::initializer_list<const char*> labels) const {
        const std::string command =
            "/usr/sbin/dmidecode --from-dump " + file.string() + " -t " + std::to_string(type) + " 2>&1";
        const std::unique_ptr<FILE, int (*)(FILE*)> output(popen(command.c_str(), "r"), pclose);
        std::vector<std::map<std::string, std::string>> structures;
        for (char line[512]; std::fgets(line, sizeof line, output.get()) != nullptr;) {
            const std::string text(line, strcspn(line, "\n"));
            const auto colon = text.find(": ");
            if (text.starts_with("Handle "))
                structures.emplace_back();
            else if (text.starts_with("\t") && colon != text.npos && !structures.empty())
                structures.back()[text.substr(1, colon - 1)] = text.substr(colon + 2);
        }
        std::vector<std::string> lines;
        for (auto& structure : structures) {
            std::string& all = lines.emplace_back();
            for (const char* label : labels)
                all += structure[label] + "|";
        }
        return lines;
    }

    void write(const Bytes& bytes) const {
        std::ofstream(file, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }

    // Our words for codes begin theirs. A code that one of the two does not know tells nothing.
    void expectTheSameWords(int type, const char* label, const char* (*wordOf)(std::uint8_t),
                            const std::string& none) {
        const auto theirs = witnessed(type, {label});
        ASSERT_EQ(theirs.size(), 256U);
        unsigned count = 0;
        for (unsigned code = 0; code < 256; ++code) {
            const std::string ours = wordOf(static_cast<std::uint8_t>(code));
            if (ours == none || theirs[code].starts_with("<OUT OF SPEC>"))
                continue;
            EXPECT_EQ(strncasecmp(theirs[code].c_str(), ours.c_str(), ours.size()), 0)
                << code << ": " << ours << ", " << theirs[code];
            ++count;
        }
        EXPECT_GT(count, 10U);
    }

    void expectTheSame(const Bytes& bytes) {
        write(bytes);
        const smbios::Hardware hardware = smbios::readHardware(smbios::readTable(file));
        EXPECT_TRUE(hardware.problems.empty());

        const auto orElse = [](const std::string& text, const char* other) {
            return text.empty() ? other : text;
        };
        const auto unit = [](auto value, const char* name) {
            return value == 0 ? std::string("Unknown") : std::to_string(value) + " " + name;
        };
        std::vector<std::string> processors, modules, slots;
        for (const smbios::Processor& each : hardware.processors)
            processors.push_back(each.socket + "|" +
                                 (each.isInstalled ? "Populated, Enabled" : "Unpopulated") + "|" +
                                 orElse(each.identity.product, "Not Specified") + "|" +
                                 unit(each.maxSpeed, "MHz") + "|" + unit(each.currentSpeed, "MHz") + "|" +
                                 (each.cores != 0 ? std::to_string(each.cores) : "") + "|");
        EXPECT_EQ(processors, witnessed(4, {"Socket Designation", "Status", "Version", "Max Speed",
                                            "Current Speed", "Core Count"}));
        EXPECT_FALSE(processors.empty());

        for (const smbios::MemoryDevice& each : hardware.memoryDevices) {
            const std::uint64_t mebibytes = each.size >> 20U;
            modules.push_back(each.socket + "|" + orElse(each.bank, "Not Specified") + "|" +
                              (!each.isInstalled       ? "No Module Installed"
                               : mebibytes % 1024 == 0 ? std::to_string(mebibytes / 1024) + " GB"
                                                       : std::to_string(mebibytes) + " MB") +
                              "|");
        }
        EXPECT_EQ(modules, witnessed(17, {"Locator", "Bank Locator", "Size"}));
        EXPECT_FALSE(modules.empty());

        for (const smbios::Slot& each : hardware.slots) {
            char address[32] = "";
            if (each.address)
                std::snprintf(address, sizeof address, "%04x:%02x:%02x.%x", each.address->segment,
                              each.address->bus, each.address->device, each.address->function);
            slots.push_back(each.name + "|" + (each.usage == 4 ? "In Use" : "Available") + "|" + address +
                            "|");
        }
        EXPECT_EQ(slots, witnessed(9, {"Designation", "Current Usage", "Bus Address"}));
        EXPECT_FALSE(slots.empty());
    }

    const Sysroot sysroot;
    const fs::path file = sysroot.place("/tmp/dmi.bin");
};

TEST_F(PeerSmbios, ofTheSampleServer) {
    const fs::path stateFile = sysroot.place("/tmp/bmc.state");
    vbmc::create(stateFile, paths::sampleServer);
    const auto bmc = ipmi::openTransport(virtualBmc(stateFile));
    Bytes table;
    for (std::size_t size = 1; table.size() < size;) {
        std::uint8_t request[5];
        ipmi::Writer(request).u32(static_cast<std::uint32_t>(table.size())).u8(200);
        const auto answer = ipmi::run(*bmc, ipmi::oem::readSmbiosTable, request);
        auto reader = answer.reader();
        size = reader.u32();
        const auto part = reader.rest();
        ASSERT_FALSE(part.empty());
        table.insert(table.end(), part.begin(), part.end());
    }
    expectTheSame(table);
}

TEST_F(PeerSmbios, ofEveryCode) {
    SmbiosBuilder table;
    for (std::uint16_t code = 0; code < 256; ++code)
        table.add(8, code, 9, {{8, code}})
            .add(41, static_cast<std::uint16_t>(0x100 + code), 0x0B, {{5, code}});
    write(table.end().version3());
    expectTheSameWords(8, "Port Type", smbios::portTypeName, "");
    expectTheSameWords(
        41, "Type", [](std::uint8_t code) { return smbios::deviceTypeName(code & 0x7F); }, "Device");
}

// Processors and modules of SMBIOS 2.0 to 2.8, behind an entry point of that time.
TEST_F(PeerSmbios, ofOldFirmware) {
    SmbiosBuilder table;
    table.add(4, 4, 0x1A, {{4, 1}, {5, 3}, {0x14, 133, 2}, {0x18, 0x41}}, {"ZIF"})
        .add(
            4, 5, 0x28,
            {{4, 1}, {5, 3}, {0x10, 2}, {0x14, 2000, 2}, {0x16, 1800, 2}, {0x18, 0x41}, {0x23, 4}, {0x24, 4}},
            {"CPU 2", "CPU Two"})
        .add(4, 6, 0x28, {{4, 1}, {5, 3}}, {"CPU 3"})
        .add(16, 0x1000, 0x0F, {{4, 3}, {5, 3}, {6, 3}, {0x0D, 4, 2}})
        .add(17, 0x1100, 0x15, {{4, 0x1000, 2}, {0x0C, 512, 2}, {0x10, 1}, {0x11, 2}}, {"DIMM 0", "Bank 0"})
        .add(17, 0x1101, 0x15, {{4, 0x1000, 2}, {0x10, 1}}, {"DIMM 1"})
        .add(17, 0x1102, 0x22, {{4, 0x1000, 2}, {0x0C, 0x7FFF, 2}, {0x1C, 65536, 4}, {0x10, 1}}, {"DIMM 2"})
        .add(9, 9, 0x0C, {{4, 1}, {5, 6}, {6, 5}, {7, 3}}, {"PCI 1"})
        .add(9, 10, 0x11, {{4, 1}, {5, 0xA5}, {6, 0x0B}, {7, 4}, {0x0F, 4}, {0x10, 0x10}}, {"PCIE 2"})
        .end();
    expectTheSame(table.version2());
    expectTheSame(table.version3());
}

} // namespace
