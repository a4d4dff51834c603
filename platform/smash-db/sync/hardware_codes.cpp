#include "smash-db/sync/hardware_codes.h"

#include "smbios/names.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>

namespace smash {
namespace {

struct Code {
    std::uint8_t smbios;
    std::uint16_t cim;
};

std::uint16_t find(std::span<const Code> codes, std::uint8_t smbios, std::uint16_t other) {
    const auto found = std::ranges::find(codes, smbios, &Code::smbios);
    return found != codes.end() ? found->cim : other;
}

constexpr std::uint16_t unknown = 0, otherThanThese = 1;

// DSP0134, 7.18.1. An FB-DIMM has the form of a DIMM.
constexpr Code formFactors[] = {{0x02, unknown}, {0x03, 7}, {0x04, 2},  {0x06, 3},  {0x07, 4},  {0x08, 6},
                                {0x09, 8},       {0x0A, 9}, {0x0C, 11}, {0x0D, 12}, {0x0E, 13}, {0x0F, 8}};

// 7.18.2; CIM 2.41 has no DDR5.
constexpr Code memoryTypes[] = {
    {0x02, unknown}, {0x03, 2},  {0x04, 6},  {0x05, 7},  {0x06, 8},  {0x07, 9},  {0x08, 10},
    {0x09, 11},      {0x0A, 12}, {0x0B, 13}, {0x0C, 14}, {0x0D, 15}, {0x0E, 16}, {0x0F, 17},
    {0x10, 18},      {0x11, 19}, {0x12, 20}, {0x13, 21}, {0x14, 23}, {0x18, 24}, {0x19, 25},
    {0x1A, 26},      {0x1B, 27}, {0x1C, 28}, {0x1D, 29}, {0x1E, 30},
};

// 7.9.2
constexpr std::uint16_t db9 = 6, ribbon = 10;
constexpr Code portLayouts[] = {{0x00, unknown}, {0x08, db9},    {0x09, db9},    {0x0A, 4},
                                {0x0B, 5},       {0x0C, 8},      {0x16, ribbon}, {0x17, ribbon},
                                {0x18, ribbon},  {0x19, ribbon}, {0x1A, ribbon}, {0x1B, ribbon},
                                {0x20, 3}};
constexpr std::uint16_t male = 2, female = 3;
constexpr Code genders[] = {{0x04, male},   {0x05, female}, {0x06, male},   {0x07, female}, {0x08, male},
                            {0x09, female}, {0x14, male},   {0x15, female}, {0x22, female}, {0x23, female}};

// 7.42.1
constexpr std::uint16_t massStorage = 1, network = 2, display = 3, multimedia = 4, wireless = 13,
                        otherClass = 255;
constexpr Code classCodes[] = {
    {0x03, display},     {0x04, massStorage}, {0x05, network},     {0x06, network},    {0x07, multimedia},
    {0x08, massStorage}, {0x09, massStorage}, {0x0A, massStorage}, {0x0B, wireless},   {0x0C, wireless},
    {0x0D, wireless},    {0x0E, massStorage}, {0x0F, massStorage}, {0x10, massStorage}};

// 7.10.2: the widths that are links.
struct LinkWidth {
    std::uint8_t smbios;
    std::uint16_t link, layout;
    const char* text;
};
constexpr LinkWidth linkWidths[] = {{0x08, 2, 19, " x1"}, {0x09, 3, 20, " x2"},  {0x0A, 4, 21, " x4"},
                                    {0x0B, 5, 22, " x8"}, {0x0C, 6, 18, " x12"}, {0x0D, 7, 23, " x16"},
                                    {0x0E, 8, 24, " x32"}};
constexpr Code dataWidths[] = {{0x03, 8}, {0x04, 16}, {0x05, 32}, {0x06, 64}, {0x07, 128}};

} // namespace

std::uint16_t formFactorOf(std::uint8_t code) {
    return find(formFactors, code, otherThanThese);
}

std::uint16_t memoryTypeOf(std::uint8_t code) {
    return find(memoryTypes, code, otherThanThese);
}

std::uint16_t portLayoutOf(std::uint8_t code) {
    return find(portLayouts, code, otherThanThese);
}

std::uint16_t genderOf(std::uint8_t code) {
    return find(genders, code, unknown);
}

std::uint8_t classCodeOf(std::uint8_t deviceType) {
    return static_cast<std::uint8_t>(find(classCodes, deviceType, otherClass));
}

SlotShape slotShapeOf(std::uint8_t type, std::uint8_t width) {
    constexpr std::uint16_t pci = 16, pciX = 17, pciExpress = 18;
    constexpr LinkWidth none{0, 0, pciExpress, ""};
    const auto widthOf = [&](std::uint8_t code) {
        const auto* const found = std::ranges::find(linkWidths, code, &LinkWidth::smbios);
        return found != std::end(linkWidths) ? *found : none;
    };
    const std::string_view name = smbios::slotTypeName(type);
    const LinkWidth link = widthOf(width);
    const LinkWidth size = smbios::slotSize(type) != 0 ? widthOf(smbios::slotSize(type)) : link;
    SlotShape shape{otherThanThese, link.link, find(dataWidths, width, 0), std::string(name)};
    if (link.smbios != size.smbios && link.smbios != 0)
        shape.text.append(link.text).append(" in");
    shape.text += size.text;
    if (name.empty() && !shape.text.empty())
        shape.text.erase(0, 1); // the blank before the width
    if (name == "PCI" || name == "PCI 66 MHz")
        shape.layout = pci;
    else if (name == "PCI-X")
        shape.layout = pciX;
    else if (name.starts_with("PCI Express") && name.find(" Mini ") == std::string_view::npos &&
             name.find("SFF") == std::string_view::npos)
        shape.layout = size.layout;
    return shape;
}

} // namespace smash
