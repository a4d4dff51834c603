#include "ipmi/message.h"

#include <gmock/gmock.h>

namespace {

using ipmi::Reader;
using ipmi::Writer;
using testing::ElementsAre;

TEST(Reader, readsLittleEndianStraightDown) {
    const std::uint8_t message[] = {0x01, 0x02, 0x03, 0xFF, 0xFE, 0xFD, 0x78,
                                    0x56, 0x34, 0x92, 0xAA, 0xBB, 0xCC};
    Reader reader(message);
    EXPECT_EQ(reader.u8(), 0x01);
    EXPECT_EQ(reader.u16(), 0x0302);
    EXPECT_EQ(reader.u24(), 0xFDFEFFu);
    EXPECT_EQ(reader.u32(), 0x92345678u);
    EXPECT_THAT(reader.bytes(1), ElementsAre(0xAA));
    reader.skip(1);
    EXPECT_EQ(reader.left(), 1u);
    EXPECT_THAT(reader.rest(), ElementsAre(0xCC));
    EXPECT_TRUE(reader.ok());
    EXPECT_THAT(reader.rest(), ElementsAre());
    EXPECT_TRUE(reader.ok()) << "nothing left is no overrun";
}

struct Overrun {
    const char* name;
    std::size_t available;
    void (*read)(Reader&);
};

TEST(Reader, remembersItsFirstOverrunAndReadsNothingAfterIt) {
    constexpr std::uint8_t message[] = {0x11, 0x22, 0x33, 0x44};
    const Overrun cases[] = {
        {"u8", 0, [](Reader& r) { EXPECT_EQ(r.u8(), 0); }},
        {"u16", 1, [](Reader& r) { EXPECT_EQ(r.u16(), 0); }},
        {"u24", 2, [](Reader& r) { EXPECT_EQ(r.u24(), 0u); }},
        {"u32", 3, [](Reader& r) { EXPECT_EQ(r.u32(), 0u); }},
        {"bytes", 3, [](Reader& r) { EXPECT_TRUE(r.bytes(4).empty()); }},
        {"skip", 3, [](Reader& r) { r.skip(4); }},
        {"a count near the end of size_t", 3, [](Reader& r) { r.skip(SIZE_MAX); }},
    };
    for (const auto& overrun : cases) {
        SCOPED_TRACE(overrun.name);
        Reader reader{std::span(message).first(overrun.available)};
        overrun.read(reader);
        EXPECT_FALSE(reader.ok());
        EXPECT_EQ(reader.left(), 0u);
        EXPECT_EQ(reader.u8(), 0) << "bytes that a wider read left over must not be taken for the next field";
        EXPECT_TRUE(reader.rest().empty());
        reader.skip(0);
        EXPECT_FALSE(reader.ok());
    }
}

TEST(Writer, writesLittleEndian) {
    std::uint8_t storage[16] = {};
    Writer writer(storage);
    writer.u8(1).u16(0x0302).u24(0x060504).u32(0x0A090807).bytes({0x0B, 0x0C}).fill(2, 0xFF);
    EXPECT_TRUE(writer.ok());
    EXPECT_EQ(writer.room(), 2u);
    EXPECT_THAT(writer.written(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 0xFF, 0xFF));
}

TEST(Writer, leavesOutWhatDoesNotFitAndAllAfterIt) {
    std::uint8_t storage[4] = {};
    Writer writer{std::span(storage).first(3)};
    writer.u8(1).u32(0xFFFFFFFF).u8(2).fill(1, 3);
    EXPECT_FALSE(writer.ok());
    EXPECT_EQ(writer.room(), 0u);
    EXPECT_THAT(writer.written(), ElementsAre(1));
    EXPECT_THAT(storage, ElementsAre(1, 0, 0, 0));
}

} // namespace
