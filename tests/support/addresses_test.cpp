#include <platform/support.h>

#include <gmock/gmock.h>

namespace {

TEST(Addresses, areWrittenAsText) {
    char text[46];
    const std::uint8_t address4[] = {192, 0, 2, 1};
    ASSERT_EQ(ConvertIPnumToStr(address4, text), 0);
    EXPECT_STREQ(text, "192.0.2.1");

    const std::uint8_t address6[16] = {0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x2A};
    ASSERT_EQ(ConvertIP6numToStr(address6, text), 0);
    EXPECT_STREQ(text, "2001:db8::2a");
    EXPECT_EQ(ConvertIPnumToStr(nullptr, text), -1);
    EXPECT_EQ(ConvertIPnumToStr(address4, nullptr), -1);
    EXPECT_EQ(ConvertIP6numToStr(nullptr, text), -1);
    EXPECT_EQ(ConvertIP6numToStr(address6, nullptr), -1);
}

} // namespace
