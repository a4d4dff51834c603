#include "ipmi/reading_factors.h"

#include <gmock/gmock.h>

namespace {

using ipmi::AnalogFormat;
using ipmi::ReadingFactors;

constexpr std::uint8_t naturalLogarithm = 0x01;
constexpr std::uint8_t reciprocal = 0x07;
constexpr std::uint8_t squareRoot = 0x0A;

struct Reading {
    const char* name;
    ReadingFactors factors;
    std::uint8_t raw;
    double value;
};

TEST(ReadingFactors, convertBothWays) {
    const Reading cases[] = {
        {"unsigned", {}, 0xFF, 255},
        {"one's complement", {AnalogFormat::OnesComplement, 0, 1}, 0xFE, -1},
        {"one's complement, least", {AnalogFormat::OnesComplement, 0, 1}, 0x80, -127},
        {"two's complement", {AnalogFormat::TwosComplement, 0, 1}, 0xFF, -1},
        {"two's complement, least", {AnalogFormat::TwosComplement, 0, 1}, 0x80, -128},
        {"exponents and offset", {AnalogFormat::Unsigned, 0, 6, -16, 2, -2}, 67, -11.98},
        {"raw 0 with an offset", {AnalogFormat::Unsigned, 0, 2, 3, 1, -1}, 0, 3},
        {"more than 32 bits hold", {AnalogFormat::Unsigned, 0, 500, 0, 0, 6}, 250, 125e9},
        {"logarithm", {AnalogFormat::Unsigned, naturalLogarithm, 1}, 1, 0},
        {"negative factor", {AnalogFormat::Unsigned, 0, -2, 5, 2, 0}, 202, 96},
        {"reciprocal", {AnalogFormat::Unsigned, reciprocal, 2, 0, 0, -6}, 100, 5000},
        {"square root", {AnalogFormat::Unsigned, squareRoot, 100, 0, 0, 0}, 64, 80},
    };
    for (const auto& item : cases) {
        EXPECT_DOUBLE_EQ(item.factors.value(item.raw), item.value) << item.name;
        EXPECT_EQ(item.factors.raw(item.value), item.raw) << item.name;
    }
}

TEST(ReadingFactors, findTheNearestReadingWithinTheRange) {
    const ReadingFactors tens{AnalogFormat::Unsigned, 0, 10};
    EXPECT_EQ(tens.raw(14.9), 1);
    EXPECT_EQ(tens.raw(15.1), 2);
    EXPECT_EQ(tens.raw(2550), 255);
    EXPECT_EQ(tens.raw(2550.1), std::nullopt);
    EXPECT_EQ(tens.raw(-0.1), std::nullopt);
    EXPECT_EQ(tens.raw(std::numeric_limits<double>::quiet_NaN()), std::nullopt);
    const ReadingFactors constant{AnalogFormat::Unsigned, 0, 0, 7};
    EXPECT_EQ(constant.raw(7), 0);
    EXPECT_EQ(constant.raw(8), std::nullopt);
}

} // namespace
