#include "smbios/names.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace smbios {
namespace {

struct Name {
    std::uint8_t code;
    const char* text;
};

const char* find(std::span<const Name> names, std::uint8_t code, const char* other) {
    const auto found = std::ranges::find(names, code, &Name::code);
    return found != names.end() ? found->text : other;
}

constexpr Name structureTypes[] = {
    {1, "system"},         {2, "baseboard"},      {3, "chassis"},
    {4, "processor"},      {8, "port"},           {9, "system slot"},
    {16, "memory array"},  {17, "memory device"}, {41, "onboard device"},
    {127, "end of table"},
};

// 7.5.1
constexpr Name processorTypes[] = {{0x03, "Central Processor"},
                                   {0x04, "Math Processor"},
                                   {0x05, "DSP Processor"},
                                   {0x06, "Video Processor"}};

// 7.17.3
constexpr Name corrections[] = {
    {0x03, "None"}, {0x04, "Parity"}, {0x05, "Single-bit ECC"}, {0x06, "Multi-bit ECC"}, {0x07, "CRC"}};

// 7.9.3
constexpr Name portTypes[] = {
    {0x01, "Parallel Port XT/AT"},
    {0x02, "Parallel Port PS/2"},
    {0x03, "Parallel Port ECP"},
    {0x04, "Parallel Port EPP"},
    {0x05, "Parallel Port ECP/EPP"},
    {0x06, "Serial Port XT/AT"},
    {0x07, "Serial Port 16450"},
    {0x08, "Serial Port 16550"},
    {0x09, "Serial Port 16550A"},
    {0x0A, "SCSI Port"},
    {0x0B, "MIDI Port"},
    {0x0C, "Joystick Port"},
    {0x0D, "Keyboard Port"},
    {0x0E, "Mouse Port"},
    {0x0F, "SSA SCSI"},
    {0x10, "USB"},
    {0x11, "FireWire"},
    {0x12, "PCMCIA Type I"},
    {0x13, "PCMCIA Type II"},
    {0x14, "PCMCIA Type III"},
    {0x15, "CardBus"},
    {0x16, "Access Bus Port"},
    {0x17, "SCSI II"},
    {0x18, "SCSI Wide"},
    {0x1C, "Video Port"},
    {0x1D, "Audio Port"},
    {0x1E, "Modem Port"},
    {0x1F, "Network Port"},
    {0x20, "SATA"},
    {0x21, "SAS"},
    {0x22, "Multi-Function Display Port"},
    {0x23, "Thunderbolt"},
    {0xA0, "8251"},
    {0xA1, "8251 FIFO"},
};

// 7.9.2
constexpr Name connectorTypes[] = {
    {0x01, "Centronics"},
    {0x02, "Mini Centronics"},
    {0x03, "Proprietary"},
    {0x04, "DB-25 pin male"},
    {0x05, "DB-25 pin female"},
    {0x06, "DB-15 pin male"},
    {0x07, "DB-15 pin female"},
    {0x08, "DB-9 pin male"},
    {0x09, "DB-9 pin female"},
    {0x0A, "RJ-11"},
    {0x0B, "RJ-45"},
    {0x0C, "50-pin MiniSCSI"},
    {0x0D, "Mini-DIN"},
    {0x0E, "Micro-DIN"},
    {0x0F, "PS/2"},
    {0x10, "Infrared"},
    {0x11, "HP-HIL"},
    {0x12, "Access Bus (USB)"},
    {0x13, "SSA SCSI"},
    {0x14, "Circular DIN-8 male"},
    {0x15, "Circular DIN-8 female"},
    {0x16, "On Board IDE"},
    {0x17, "On Board Floppy"},
    {0x18, "9-pin Dual Inline"},
    {0x19, "25-pin Dual Inline"},
    {0x1A, "50-pin Dual Inline"},
    {0x1B, "68-pin Dual Inline"},
    {0x1C, "On Board Sound Input"},
    {0x1D, "Mini-Centronics Type-14"},
    {0x1E, "Mini-Centronics Type-26"},
    {0x1F, "Mini-jack"},
    {0x20, "BNC"},
    {0x21, "1394"},
    {0x22, "SAS/SATA Plug Receptacle"},
    {0x23, "USB Type-C Receptacle"},
};

// 7.10.1. PCI Express has a range of codes for each generation: any size, and one for each.
struct Generation {
    std::uint8_t first, last;
    const char* text;
};
constexpr Generation generations[] = {
    {0xA5, 0xAA, "PCI Express"},       {0xAB, 0xB0, "PCI Express Gen 2"}, {0xB1, 0xB6, "PCI Express Gen 3"},
    {0xB8, 0xBD, "PCI Express Gen 4"}, {0xBE, 0xC3, "PCI Express Gen 5"}, {0xC4, 0xC4, "PCI Express Gen 6"},
};
constexpr Name slotTypes[] = {
    {0x03, "ISA"},
    {0x04, "MCA"},
    {0x05, "EISA"},
    {0x06, "PCI"},
    {0x07, "PC Card"},
    {0x08, "VL-VESA"},
    {0x09, "Proprietary"},
    {0x0A, "Processor Card"},
    {0x0B, "Proprietary Memory Card"},
    {0x0C, "I/O Riser Card"},
    {0x0D, "NuBus"},
    {0x0E, "PCI 66 MHz"},
    {0x0F, "AGP"},
    {0x10, "AGP 2X"},
    {0x11, "AGP 4X"},
    {0x12, "PCI-X"},
    {0x13, "AGP 8X"},
    {0x14, "M.2 Socket 1-DP"},
    {0x15, "M.2 Socket 1-SD"},
    {0x16, "M.2 Socket 2"},
    {0x17, "M.2 Socket 3"},
    {0x18, "MXM Type I"},
    {0x19, "MXM Type II"},
    {0x1A, "MXM Type III"},
    {0x1B, "MXM Type III-HE"},
    {0x1C, "MXM Type IV"},
    {0x1D, "MXM 3.0 Type A"},
    {0x1E, "MXM 3.0 Type B"},
    {0x1F, "PCI Express Gen 2 SFF-8639"},
    {0x20, "PCI Express Gen 3 SFF-8639"},
    {0x21, "PCI Express Mini 52-pin"},
    {0x22, "PCI Express Mini 52-pin"},
    {0x23, "PCI Express Mini 76-pin"},
    {0x24, "PCI Express Gen 4 SFF-8639"},
    {0x25, "PCI Express Gen 5 SFF-8639"},
    {0x26, "OCP NIC 3.0 Small Form Factor"},
    {0x27, "OCP NIC 3.0 Large Form Factor"},
    {0x28, "OCP NIC Prior to 3.0"},
    {0x30, "CXL Flexbus 1.0"},
    {0xC5, "EDSFF E1"},
    {0xC6, "EDSFF E3"},
};

// 7.42.1
constexpr Name deviceTypes[] = {
    {0x03, "Video"},
    {0x04, "SCSI Controller"},
    {0x05, "Ethernet"},
    {0x06, "Token Ring"},
    {0x07, "Sound"},
    {0x08, "PATA Controller"},
    {0x09, "SATA Controller"},
    {0x0A, "SAS Controller"},
    {0x0B, "Wireless LAN"},
    {0x0C, "Bluetooth"},
    {0x0D, "WWAN"},
    {0x0E, "eMMC"},
    {0x0F, "NVMe Controller"},
    {0x10, "UFS Controller"},
};

} // namespace

const char* typeName(std::uint8_t structureType) {
    return find(structureTypes, structureType, "other");
}
const char* processorTypeName(std::uint8_t type) {
    return find(processorTypes, type, "");
}
const char* correctionName(std::uint8_t errorCorrection) {
    return find(corrections, errorCorrection, "");
}
const char* portTypeName(std::uint8_t type) {
    return find(portTypes, type, "");
}
const char* connectorTypeName(std::uint8_t type) {
    return find(connectorTypes, type, "");
}
const char* slotTypeName(std::uint8_t type) {
    for (const Generation& each : generations)
        if (type >= each.first && type <= each.last)
            return each.text;
    return find(slotTypes, type, "");
}
std::uint8_t slotSize(std::uint8_t type) {
    constexpr std::uint8_t sizes[] = {0, 0x08, 0x09, 0x0A, 0x0B, 0x0D}; // x1, x2, x4, x8, x16
    for (const Generation& each : generations)
        if (type >= each.first && type <= each.last)
            return sizes[type - each.first];
    return 0;
}
const char* deviceTypeName(std::uint8_t type) {
    return find(deviceTypes, type, "Device");
}

} // namespace smbios
