// Structures of whole tables and of broken ones.
#include "smbios/table.h"
#include "smbios_builder.h"

#include <gmock/gmock.h>

namespace {

using Bytes = SmbiosBuilder::Bytes;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

SmbiosBuilder twoStructures() {
    SmbiosBuilder table;
    table.add(1, 0x0001, 8, {{4, 1}, {5, 2}}, {"Maker", "  Model 7 "}).add(16, 0x1000, 15).end();
    return table;
}

std::vector<int> typesOf(const smbios::Table& table) {
    std::vector<int> types;
    for (const auto& structure : table.structures())
        types.push_back(structure.type());
    return types;
}

std::vector<std::string> problemsOf(const smbios::Table& table) {
    std::vector<std::string> texts;
    for (const auto& [place, reason, isLoss] : table.problems())
        texts.push_back(place + ": " + reason + (isLoss ? "" : " (no loss)"));
    return texts;
}

TEST(SmbiosTable, isReadInEveryFormThatItComesIn) {
    const SmbiosBuilder builder = twoStructures();
    Bytes dmiOnly = builder.version2();
    dmiOnly.erase(dmiOnly.begin(), dmiOnly.begin() + 16);
    dmiOnly[8] = 16; // the table's place moves with the entry point
    dmiOnly[5] = static_cast<std::uint8_t>(dmiOnly[5] + 16);
    for (const Bytes& bytes : {builder.bare(), builder.version2(), builder.version3(), dmiOnly}) {
        const smbios::Table table(bytes);
        EXPECT_THAT(typesOf(table), ElementsAre(1, 16));
        EXPECT_THAT(problemsOf(table), IsEmpty());
        EXPECT_EQ(table.structures()[0].string(4), "Maker");
        EXPECT_EQ(table.structures()[0].string(5), "Model 7");
        EXPECT_EQ(table.find(0x1000, 16), &table.structures()[1]);
        EXPECT_EQ(table.find(0x1000, 17), nullptr) << "another type";
        EXPECT_EQ(table.find(0x1001, 16), nullptr);
    }
}

TEST(SmbiosTable, isRefusedWhenItIsNone) {
    const auto refusal = [](Bytes bytes) -> std::string {
        try {
            const smbios::Table table(std::move(bytes));
            return "none";
        } catch (const smbios::NoTable& error) {
            return error.what();
        }
    };
    const SmbiosBuilder builder = twoStructures();
    EXPECT_THAT(refusal({}), HasSubstr("no structures"));
    EXPECT_THAT(refusal({'h', 'e', 'l', 'l', 'o'}), HasSubstr("no structures: it is cut short"));
    EXPECT_THAT(refusal(Bytes(smbios::largestTable + 1)), HasSubstr("more than"));
    for (const Bytes& whole : {builder.version2(), builder.version3()}) {
        Bytes changed = whole;
        ++changed[9];
        EXPECT_THAT(refusal(changed), HasSubstr("checksum"));
        for (std::size_t size : {4, 5, 12, 20})
            EXPECT_THAT(refusal(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))),
                        HasSubstr("cut short"));
        EXPECT_THAT(refusal(Bytes(whole.begin(), whole.begin() + 32)), HasSubstr("not in it"));
    }
}

TEST(SmbiosTable, isReadAsFarAsItIsWhole) {
    const auto problems = [](const SmbiosBuilder& builder) {
        return problemsOf(smbios::Table(builder.bare()));
    };
    SmbiosBuilder begin;
    begin.add(2, 0x0002, 8);

    EXPECT_THAT(problems(SmbiosBuilder(begin).raw({17, 40, 0x11, 0x00, 1, 2})),
                ElementsAre("structure 0x0011 (memory device): it is cut short"));
    EXPECT_THAT(problems(SmbiosBuilder(begin).raw({17, 6, 0x11, 0x00, 1, 2, 'A', 'B'})),
                ElementsAre("structure 0x0011 (memory device): its strings have no end"));
    EXPECT_THAT(problems(SmbiosBuilder(begin).raw({17, 6, 0x11, 0x00, 1, 2, 'A', 'B', 0})),
                ElementsAre("structure 0x0011 (memory device): its strings have no end"));
    EXPECT_THAT(problems(SmbiosBuilder(begin).raw({17, 2, 0x11, 0x00, 0, 0})),
                ElementsAre("byte 10: no structure begins here: what follows is lost"));
    EXPECT_THAT(problems(begin),
                ElementsAre("the table: it has no end mark: structures may be missing (no loss)"));
    EXPECT_THAT(problems(SmbiosBuilder(begin).end().raw({17, 2, 1, 1})), IsEmpty()) << "behind the end";

    Bytes counted = begin.version2();
    counted[16 + 12] = 9; // structures
    counted[16 + 5] = static_cast<std::uint8_t>(counted[16 + 5] - 8);
    EXPECT_THAT(problemsOf(smbios::Table(counted)), ElementsAre("the table: it has 1 structures of 9"));
}

// However short a table is cut, what is before the cut is read, and the cut is told.
TEST(SmbiosTable, losesNoMoreThanWasCut) {
    const Bytes whole = twoStructures().bare();
    for (std::size_t size = 1; size < whole.size(); ++size) {
        SCOPED_TRACE(size);
        const std::size_t first = 8 + sizeof "Maker" + sizeof "  Model 7 " + 1;
        try {
            const smbios::Table table(
                Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
            EXPECT_EQ(table.structures().size(), size >= first + 17 ? 2U : 1U);
            EXPECT_GE(size, first);
            EXPECT_EQ(table.problems().empty(), size >= whole.size() - 2)
                << "only the end mark's strings are missing";
        } catch (const smbios::NoTable&) {
            EXPECT_LT(size, first);
        }
    }
}

TEST(SmbiosStructure, hasNoMoreThanItsLength) {
    SmbiosBuilder builder;
    builder.add(17, 0x0011, 9, {{4, 0x1234, 2}, {6, 3}, {7, 0xBEEF, 2}}, {"only"}).end();
    const smbios::Table table(builder.bare());
    const smbios::Structure& structure = table.structures()[0];
    EXPECT_EQ(structure.u16(4), 0x1234);
    EXPECT_EQ(structure.u16(7), 0xBEEF);
    EXPECT_EQ(structure.u16(8, 7), 7) << "half of it is there";
    EXPECT_EQ(structure.u32(9, 8), 8U);
    EXPECT_EQ(structure.string(6), std::nullopt) << "there is no third string";
    EXPECT_EQ(structure.string(40), "");
}

} // namespace
