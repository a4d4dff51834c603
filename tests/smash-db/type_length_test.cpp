#include "smash-db/sync/type_length.h"

#include <gmock/gmock.h>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

struct Case {
    const char* name;
    Bytes field; // type/length byte first
    const char* text;
};

TEST(TypeLength, decodesTheFourCodesOfIdStrings) {
    const Case cases[] = {
        {"nothing", {0xC0}, ""},
        {"8-bit", {0xC5, 'C', 'P', 'U', ' ', '1'}, "CPU 1"},
        {"Latin-1", {0xC2, 0xB0, 'C'}, "\xC2\xB0\x43"},
        {"padded with blanks", {0xC4, 'F', 'A', 'N', ' '}, "FAN"},
        {"padded with NULs", {0xC4, 'F', 'A', 0, 0}, "FA"},
        {"control characters", {0xC4, 'A', 0x07, 0x9B, 'B'}, "A__B"},
        {"BCD plus", {0x43, 0x12, 0xAB, 0xCD}, "12 -.:"},
        {"packed", {0x83, 0x29, 0xDC, 0xA6}, "IPMI"}, // the example of IPMI 2.0 43.16
        {"packed, two characters", {0x82, 0x29, 0x0C}, "IP"},
        {"UTF-16", {0x06, 'V', 0, 0xA9, 0x03, 0xAC, 0x20}, "V\xCE\xA9\xE2\x82\xAC"},
        {"UTF-16 pair", {0x04, 0x3D, 0xD8, 0x00, 0xDE}, "\xF0\x9F\x98\x80"},
        {"UTF-16 half pair", {0x04, 0x3D, 0xD8, 'A', 0}, "\xEF\xBF\xBD\x41"},
        {"UTF-16 odd length", {0x03, 'A', 0, 'B'}, "A"},
    };
    for (const Case& item : cases) {
        ipmi::Reader reader(item.field);
        EXPECT_EQ(smash::readIdString(reader), item.text) << item.name;
        EXPECT_TRUE(reader.ok() && reader.left() == 0) << item.name;
    }
}

TEST(TypeLength, tellsAnIdStringThatIsCutShort) {
    for (const Bytes& field : {Bytes{}, Bytes{0xC3, 'A', 'B'}}) {
        ipmi::Reader reader(field);
        EXPECT_EQ(smash::readIdString(reader), "");
        EXPECT_FALSE(reader.ok());
    }
}

TEST(TypeLength, decodesFruFields) {
    constexpr std::uint8_t english = 25;
    constexpr std::uint8_t other = 2;
    const Bytes area = {0xC2, 'A', 'B', 0x02, 0x0F, 0xA0, 0xC4, 'A', 0, 'B', 0, 0xC1, 'x'};
    for (const std::uint8_t language : {english, other}) {
        ipmi::Reader reader(area);
        const auto first = smash::readFruField(reader, language);
        EXPECT_EQ(first, language == english ? "AB" : "\xE4\x89\x81") << "one UTF-16 character";
        EXPECT_EQ(smash::readFruField(reader, language), "0FA0") << "binary";
        EXPECT_EQ(smash::readFruField(reader, language), language == english ? "A" : "AB");
        EXPECT_EQ(smash::readFruField(reader, language), std::nullopt) << "end mark";
    }
}

} // namespace
