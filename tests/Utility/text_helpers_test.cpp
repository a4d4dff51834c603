// Addresses, identifiers and lists as text.
#include "provider_helper/utility.h"

#include <cstdlib>
#include <cstring>
#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using List = std::vector<std::string>;

constexpr const char* none = "(none)"; // a slot without a text

List split(const char* text) {
    char** texts = nullptr;
    int count = -1;
    EXPECT_EQ(PH_GetArrayCount(text, &texts, &count), 0);
    List list;
    for (int i = 0; i < count; ++i) {
        list.emplace_back(texts[i] != nullptr ? texts[i] : none);
        std::free(texts[i]);
    }
    std::free(texts);
    return list;
}

TEST(ArrayCount, SplitsAtCommas) {
    const struct {
        const char* text;
        List fields;
    } cases[] = {
        {"a", {"a"}},
        {"a,b", {"a", "b"}},
        {" a,,b", {"a", "b", none}},
        {" \ta b ,\tc ", {"a b ", "c "}},
        {",,", {none, none, none}},
        {"a,", {"a", none}},
        {" ,x", {"", "x"}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(split(c.text), c.fields) << c.text;
}

TEST(ArrayCount, NothingLeavesTheListAlone) {
    char* const unused = nullptr;
    for (const char* text : {static_cast<const char*>(nullptr), ""}) {
        char** list = const_cast<char**>(&unused);
        int count = 7;
        EXPECT_EQ(PH_GetArrayCount(text, &list, &count), 0);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(list, &unused);
    }
}

TEST(ArrayCount, LooksAt255CharactersOnly) {
    const std::string text = std::string(253, 'x') + ",bcd,e";
    EXPECT_THAT(split(text.c_str()), ElementsAre(std::string(253, 'x'), "b"));
}

TEST(Addresses, IsValidIP) {
    const char* dots = "Enter 4 bytes each separated by a dot.";
    const char* count = "Too few/ too many bytes";
    const char* range = "Address must be between 0.0.0.0 and 255.255.255.255";
    const struct {
        const char* address;
        const char* message; // nullptr: valid
    } cases[] = {
        {"10.0.0.1", nullptr},
        {"0.0.0.0", nullptr},
        {"255.255.255.255", nullptr},
        {"10.0.0.256", range},
        {"1234.1.1.1", range},
        {"1.2.3.999", range},
        {"10..0.1", dots},
        {"10.0.0.1.", dots},
        {"", dots},
        {nullptr, dots},
        {"1.2.3.4a", dots},
        {"1.2.3.-4", dots},
        {" 1.2.3.4", dots},
        {"255.255.255.2555", dots},
        {"1.2.3", count},
        {"1.2.3.4.5", count},
        {"7", count},
        {".1.2.3", count},
    };
    for (const auto& c : cases) {
        ::testing::internal::CaptureStdout();
        const int result = IsValidIP(c.address);
        const std::string output = ::testing::internal::GetCapturedStdout();
        const char* shown = c.address != nullptr ? c.address : "NULL";
        EXPECT_EQ(result, c.message == nullptr ? 0 : -1) << shown;
        if (c.message == nullptr)
            EXPECT_EQ(output, "") << shown;
        else
            EXPECT_THAT(output, HasSubstr(c.message)) << shown;
    }
}

TEST(Addresses, Ipv4FromText) {
    uint8_t address[4];
    EXPECT_EQ(PH_ConvertStrToIP("192.168.300.4", address), 0);
    EXPECT_THAT(address, ElementsAre(192, 168, 44, 4)); // 300 cut to 8 bits
    EXPECT_EQ(PH_ConvertStrToIP("192.168.1", address), -1);
    EXPECT_EQ(PH_ConvertStrToIP(nullptr, address), -1);
}

TEST(Addresses, Mac) {
    uint8_t mac[6] = {9, 9, 9, 9, 9, 9};
    EXPECT_EQ(ConvertStrToMAC("00:1a:FF:03:04", mac), -1);
    GetMACAddress(nullptr, mac);
    GetMACAddress("001aff", mac);
    EXPECT_THAT(mac, ElementsAre(9, 9, 9, 9, 9, 9));
    EXPECT_EQ(ConvertStrToMAC("00:1a:FF:03:04:05", mac), 0);
    EXPECT_THAT(mac, ElementsAre(0x00, 0x1a, 0xff, 0x03, 0x04, 0x05));
    GetMACAddress("a0b1c2d3e4f5", mac);
    char text[18];
    EXPECT_EQ(ConvertMACNumToMACFormatStr(mac, text), 17);
    EXPECT_STREQ(text, "A0:B1:C2:D3:E4:F5");
}

TEST(Addresses, SeparatorChoosesTheForm) {
    const uint8_t bytes[] = {192, 168, 1, 20, 0xab, 0xcd};
    const struct {
        const char* separator;
        const char* text;
    } cases[] = {{":", "C0A80114ABCD"},
                 {".", "192.168.1.20"},
                 {"-", "untouched"},
                 {"", "untouched"},
                 {nullptr, "untouched"}};
    for (const auto& c : cases) {
        char text[16] = "untouched";
        ConvertIPorMACnumToStr(bytes, 0, text, c.separator);
        EXPECT_STREQ(text, c.text);
    }
}

TEST(DeviceId, FirstTwoFields) {
    const struct {
        const char* text;
        int result;
        int first;
        int second;
    } cases[] = {
        {"::12:34:more", 0, 12, 34}, {"7::8", 0, 7, 8}, {"5:x", 0, 5, 0}, {"5", -1, 5, -7},
        {"5::", -1, 5, -7},          {"", -1, -7, -7},
    };
    for (const auto& c : cases) {
        int first = -7;
        int second = -7;
        EXPECT_EQ(ParseDeviceId(c.text, &first, &second), c.result) << c.text;
        EXPECT_EQ(first, c.first) << c.text;
        EXPECT_EQ(second, c.second) << c.text;
    }
    int second = 0;
    EXPECT_EQ(ParseDeviceId("1:2", nullptr, &second), 0);
    EXPECT_EQ(second, 2);
    EXPECT_EQ(ParseDeviceId("1:2", nullptr, nullptr), -1);
    const std::string longField = std::string(260, ':') + "1:2"; // only 255 characters are looked at
    EXPECT_EQ(ParseDeviceId(longField.c_str(), nullptr, &second), -1);
}

TEST(PropertyLists, DefaultListRowsAreBounded) {
    char table[2][80];
    std::memset(table, 'x', sizeof(table));
    AddTo_DefaultList(table, "ElementName", 1);
    EXPECT_STREQ(table[1], "ElementName");
    EXPECT_EQ(table[1][63], '\0');
    const std::string tooLong(90, 'n');
    AddTo_DefaultList(table, tooLong.c_str(), 0);
    EXPECT_EQ(std::string(table[0], 66), std::string(64, 'n') + "xx");
    EXPECT_STREQ(table[1], "ElementName");
}

} // namespace
