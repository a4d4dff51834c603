#include <platform/support.h>

#include <sysroot_fixture.h>

namespace {

constexpr char features[] = "/conf/features.ini";

class Features : public SysrootFixture {
protected:
    static std::uint32_t coreWord(int word) {
        CoreFeatures core;
        std::fill(std::begin(core.words), std::end(core.words), 0xDEADBEEF);
        EXPECT_EQ(RetrieveCoreFeatures(&core), 0);
        return core.words[word];
    }
};

TEST_F(Features, readsItsThreeSections) {
    write(features, "[core]\n63 = 1\n127 = 0xFFFFFFFF\n128 = 7\n2 = many\n"
                    "[enabled]\nCONFIG_ON = yes\nCONFIG_OFF = no\nCONFIG_EMPTY =\n"
                    "[numbers]\nMAX_USERS = 0x10\nOFFSET = -3\nWORD = ten\nHUGE = 99999999999\n");
    EXPECT_EQ(coreWord(CORE_FEATURE_INSTANCE_ARRAY_CACHE), 1u);
    EXPECT_EQ(coreWord(127), 0xFFFFFFFFu);
    EXPECT_EQ(coreWord(2), 0u) << "no number";
    EXPECT_EQ(coreWord(0), 0u) << "not named";

    const std::tuple<const char*, int> switches[] = {
        {"CONFIG_ON", 1}, {"CONFIG_OFF", 0}, {"CONFIG_EMPTY", 0}, {"CONFIG_OTHER", 0}, {"", 0}, {nullptr, 0}};
    for (const auto& [name, expected] : switches)
        EXPECT_EQ(IsFeatureEnabled(name), expected) << (name != nullptr ? name : "NULL");

    const std::tuple<const char*, int> numbers[] = {{"MAX_USERS", 16}, {"OFFSET", -3}, {"WORD", 42},
                                                    {"HUGE", 42},      {"OTHER", 42},  {nullptr, 42}};
    for (const auto& [name, expected] : numbers)
        EXPECT_EQ(GetMacrodefine_getint(name, 42), expected) << (name != nullptr ? name : "NULL");
}

TEST_F(Features, areOffWithoutAFileOrWithABadOne) {
    const char* const contents[] = {nullptr, "", "[core\n63 = 1\n", "[core]\n63 = 1\nnonsense\n",
                                    "\x7F\x45LF\x01\x02\n"};
    for (const char* content : contents) {
        SCOPED_TRACE(content != nullptr ? content : "missing");
        if (content != nullptr)
            write(features, content);
        EXPECT_EQ(coreWord(CORE_FEATURE_INSTANCE_ARRAY_CACHE), 0u);
        EXPECT_EQ(IsFeatureEnabled("CONFIG_ON"), 0);
        EXPECT_EQ(GetMacrodefine_getint("MAX_USERS", 5), 5);
    }
}

TEST_F(Features, areReachedThroughTheFunctionTableToo) {
    write(features, "[enabled]\nCONFIG_ON = yes\n[numbers]\nMAX_USERS = 16\n");
    PlatformFunctions table = {};
    ASSERT_EQ(Get_Function_Pointer(&table), 0);
    EXPECT_EQ(table.isFeatureEnabled("CONFIG_ON"), 1);
    EXPECT_EQ(table.getMacrodefineInt("MAX_USERS", 0), 16);
    ASSERT_NE(table.debugOut, nullptr);
    ASSERT_NE(table.runtimeDebugOut, nullptr);
    EXPECT_EQ(Get_Function_Pointer(nullptr), -1);
    EXPECT_EQ(RetrieveCoreFeatures(nullptr), -1);
}

} // namespace
