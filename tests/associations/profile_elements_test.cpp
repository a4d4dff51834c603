// What the registered profiles call mandatory (docs/profile-elements.txt) is what the module serves of the sample server.
#include "association_fixture.h"
#include "associations/profiles.h"
#include "paths.h"
#include "sampling.h"
#include "schema/class_schema.h"

#include <fstream>
#include <sstream>

namespace {

using broker::ObjectPath;
using testing::Contains;

struct Line {
    std::string kind;
    std::vector<std::string> words;
};

struct Profile {
    std::string number, name;
    std::vector<Line> lines;
};

std::vector<Profile> readProfiles() {
    std::ifstream file(std::string(paths::documents) + "/profile-elements.txt");
    EXPECT_TRUE(file.is_open());
    std::vector<Profile> profiles;
    for (std::string text; std::getline(file, text);) {
        std::istringstream words(text);
        Line line;
        if (!(words >> line.kind) || line.kind.starts_with('#'))
            continue;
        for (std::string word; words >> word;)
            line.words.push_back(word);
        if (line.kind != "profile") {
            profiles.at(profiles.size() - 1).lines.push_back(line);
            continue;
        }
        std::string name;
        for (std::size_t i = 1; i < line.words.size(); ++i)
            name += (i > 1 ? " " : "") + line.words[i];
        profiles.push_back({line.words.at(0), name, {}});
    }
    return profiles;
}

class ProfileElements : public Associations {
protected:
    void SetUp() override {
        Associations::SetUp();
        const std::uint8_t record[16] = {0, 0, 0x02, 0, 0, 0, 0, 0x20, 0, 4, 1, 1, 1, 0, 0, 0};
        if (broker.enumerateInstanceNames(path("CIM_LogEntry")).paths.empty())
            vbmc::VirtualBmc(stateFile()).addSelRecord(record);
    }

    static ObjectPath pathOf(const std::string& className) {
        return path(className, {}, className == "CIM_RegisteredProfile" ? "root/interop" : "root/cimv2");
    }

    // Each of these says what is missing.
    void checkCentral(const Profile& given, const std::vector<std::string>& classes) {
        const auto found = classesOf(
            broker
                .associatorNames(profile(given.number),
                                 {.assocClass = "CIM_ElementConformsToProfile", .role = "ConformantStandard"})
                .paths);
        EXPECT_THAT(found, testing::UnorderedElementsAreArray(classes));
    }
    void checkClass(const std::vector<std::string>& words) {
        const auto instances = broker.enumerateInstances(pathOf(words[0])).instances;
        EXPECT_FALSE(instances.empty()) << words[0];
        for (std::size_t i = 1; i < words.size(); ++i) {
            const bool mayBeWithout = words[i].ends_with('?');
            const std::string name = words[i].substr(0, words[i].size() - (mayBeWithout ? 1 : 0));
            bool isServed = false;
            if (mayBeWithout)
                for (const auto& property : schema::find(words[0])->servedProperties())
                    isServed = isServed || property.name == name;
            for (const auto& instance : instances) {
                const broker::Value* value = broker::find(instance.properties, name);
                isServed = isServed || (value != nullptr && !value->isNull());
            }
            EXPECT_TRUE(isServed) << words[0] << '.' << name;
        }
    }
    void checkAssociation(const std::vector<std::string>& words, bool everyOne) {
        // A sensor that cannot be read has a name, but takes no part.
        const auto sources = broker.enumerateInstances(pathOf(words[1]), {{}}).instances;
        const std::size_t step = everyOne ? 1 + sources.size() * sampling() / 24 : 1;
        std::size_t count = 0, found = 0;
        for (std::size_t i = 0; i < sources.size() && (everyOne || found == 0); i += step, ++count)
            found +=
                !broker.associatorNames(sources[i].path, {.assocClass = words[0], .resultClass = words[2]})
                     .paths.empty();
        EXPECT_TRUE(everyOne ? count > 0 && found == count : found > 0)
            << words[0] << " leads from " << found << " of " << count << ' ' << words[1] << " to "
            << words[2];
    }
    static void checkMethods(const std::vector<std::string>& words) {
        const schema::Class* served = schema::find(words[0]);
        ASSERT_NE(served, nullptr) << words[0];
        std::vector<std::string> methods;
        for (const auto& method : served->servedMethods())
            methods.emplace_back(method.name);
        for (std::size_t i = 1; i < words.size(); ++i)
            EXPECT_THAT(methods, Contains(words[i])) << words[0];
    }
};

TEST_F(ProfileElements, areServed) {
    for (const Profile& given : readProfiles()) {
        SCOPED_TRACE(given.number);
        for (const Line& line : given.lines) {
            ASSERT_GE(line.words.size(), line.kind == "association" || line.kind == "some" ? 3U : 1U);
            if (line.kind == "central")
                checkCentral(given, line.words);
            else if (line.kind == "class")
                checkClass(line.words);
            else if (line.kind == "association" || line.kind == "some")
                checkAssociation(line.words, line.kind == "association");
            else if (line.kind == "method")
                checkMethods(line.words);
            else
                ADD_FAILURE() << line.kind << " is no kind of line";
        }
    }
}

TEST_F(ProfileElements, areListedForEachRegisteredProfile) {
    std::vector<std::string> listed, registered;
    for (const Profile& given : readProfiles())
        listed.push_back("provider-helper:" + given.number + ' ' + given.name);
    for (const auto& each : associations::profiles())
        registered.push_back(std::string(each.instanceId) + ' ' + each.name);
    EXPECT_THAT(listed, testing::UnorderedElementsAreArray(registered));
}

} // namespace
