// The files that object managers are given.
#include "paths.h"
#include "schema/class_schema.h"

#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

using testing::Contains;
using testing::IsSupersetOf;

std::string content(const std::string& name, const std::string& directory = paths::schemaFiles) {
    std::ifstream file(directory + '/' + name);
    EXPECT_TRUE(file) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

// What the first group of each match says, in the order of the text.
std::vector<std::string> matches(const std::string& text, const char* pattern) {
    const std::regex expression(pattern);
    std::vector<std::string> all;
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end; ++match)
        all.push_back((*match)[1]);
    return all;
}

std::set<std::string> servedNames() {
    std::set<std::string> names;
    for (const schema::Class& each : schema::servedClasses())
        names.emplace(each.name);
    return names;
}

TEST(SchemaFiles, theFullOneNeedsNoOther) {
    const std::string mof = content("ProviderHelperFull.mof");
    const auto declared = matches(mof, "\nclass (\\w+)");
    EXPECT_THAT(declared, IsSupersetOf(servedNames()));
    EXPECT_EQ(std::set<std::string>(declared.begin(), declared.end()).size(), declared.size());
    for (const auto& each : matches(mof, "(\\w+) REF "))
        EXPECT_THAT(declared, Contains(each));
    for (const auto& each : matches(mof, "EmbeddedInstance \\(\"(\\w+)\""))
        EXPECT_THAT(declared, Contains(each));
    std::set<std::string> before;
    const auto heads = matches(mof, "\nclass (\\w+(?: : \\w+)?) \\{");
    ASSERT_EQ(heads.size(), declared.size());
    for (std::size_t i = 0; i < heads.size(); ++i) {
        const std::size_t colon = heads[i].find(" : ");
        if (colon != std::string::npos) {
            EXPECT_THAT(before, Contains(heads[i].substr(colon + 3))) << heads[i];
        }
        before.insert(declared[i]);
    }
    EXPECT_EQ(matches(mof, "Version \\(\"([\\d.]+)\"\\)\\]\nclass").size(), declared.size());
    // Every qualifier has a type.
    const auto types = matches(content("ProviderHelperQualifiers.mof"), "Qualifier (\\w+) :");
    for (const auto& each : matches(mof, "[\\[,] ?\n? *([A-Z][A-Za-z]+)(?= ?[(\\{,\\]])"))
        EXPECT_THAT(types, Contains(each));
}

TEST(SchemaFiles, theExtensionHasWhatDmtfLacks) {
    std::set<std::string> ours;
    for (const schema::Class& each : schema::servedClasses())
        if (each.isOurs)
            ours.emplace(each.name);
    const auto declared = matches(content("ProviderHelper.mof"), "\nclass (\\w+)");
    EXPECT_EQ(std::set<std::string>(declared.begin(), declared.end()), ours);
}

TEST(SchemaFiles, areDescribedInTheDocuments) {
    EXPECT_TRUE(content("classes.md") == content("classes.md", paths::documents))
        << "docs/classes.md is not what the build wrote: copy " << paths::schemaFiles
        << "/classes.md over it.";
}

TEST(SchemaFiles, registerEveryClass) {
    const auto sections = matches(content("ProviderHelper.reg"), "\\[(\\w+)\\]");
    EXPECT_EQ(std::set<std::string>(sections.begin(), sections.end()), servedNames());
    const std::string module = content("ProviderHelperModule.mof");
    const auto classes = matches(module, "ClassName = \"(\\w+)\"");
    EXPECT_EQ(std::set<std::string>(classes.begin(), classes.end()), servedNames());
    EXPECT_EQ(matches(module, " Version = \"([0-9.]+)\""), std::vector<std::string>{PH_VERSION});
}

} // namespace
