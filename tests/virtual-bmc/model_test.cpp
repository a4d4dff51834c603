// Making a machine from a model, and what a model may not say.
#include "virtual_bmc_fixture.h"

#include <sys/stat.h>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;
using testing::ThrowsMessage;

class Model : public VirtualBmcFixture {};

TEST_F(Model, refusesWhatMakesNoSense) {
    const struct {
        const char* model;
        const char* error; // behind the model's name
    } cases[] = {
        {"", "parse error at line 1, column 1"},
        {"{\n  \"users\": [}\n", "parse error at line 2, column 13"},
        {"[]", "a model is an object"},
        {R"({"senors": []})", "'senors' is no part of a model"},
        {R"({"device": 1})", "device: an object is expected, not number"},
        {R"({"device": {"firmwareMinor": 100}})", "device.firmwareMinor: 100 is not allowed: 0 to 99"},
        {R"({"device": {"productId": 1.5}})", "device.productId: an integer is expected: 0 to 65535"},
        {R"({"device": {"productId": 18446744073709551615}})", "device.productId: an integer is expected"},
        {R"({"device": {"deviceGuid": "01020304-0506-0708-090a-0b0c0d0e0f1"}})", "device.deviceGuid: "},
        {R"({"device": {"auxiliaryRevision": "010203"}})", "device.auxiliaryRevision: 4 bytes"},
        {R"({"device": {"colour": 1}})", "device: 'colour' is unknown here"},
        {R"({"users": [{"id": 1}, {"id": 17}]})", "users[1].id: 17 is not allowed: 1 to 16"},
        {R"({"users": [{"id": 1}, {"id": 1}]})", "users: there are two users 1"},
        {R"({"users": [{"id": 1, "name": "seventeen letters"}]})", "users[0].name: "},
        {R"({"users": [{"id": 1, "privilege": "king"}]})",
         "users[0].privilege: 'king' is unknown; known are callback"},
        {R"({"sensors": [{"name": "A"}]})", "sensors[0]: 'number' is missing"},
        {R"({"sensors": [{"number": 255, "name": "A"}]})", "sensors[0].number: sensor numbers end at 254"},
        {R"({"sensors": [{"number": 1, "name": "seventeen letters"}]})",
         "sensors[0].name: it has more than 16"},
        {R"({"sensors": [{"number": 1, "name": "5 \u00b0C"}]})", "sensors[0].name: it has other than"},
        {R"({"sensors": [{"number": 1, "name": "A", "analog": {"max": 256}}]})",
         "sensors[0].analog.max: the sensor has no reading for 256"},
        {R"({"sensors": [{"number": 1, "name": "A", "thresholds": {"upperCritical": -1}}]})",
         "sensors[0].thresholds.upperCritical: the sensor has no reading for -1"},
        {R"({"sensors": [{"number": 1, "name": "A", "reading": 1e999}]})", "number overflow"},
        {R"({"sensors": [{"number": 1, "name": "A", "states": [0, 15]}]})",
         "sensors[0].states[1]: 15 is not allowed: 0 to 14"},
        {R"({"sensors": [{"number": 1, "name": "A", "sharing": {"count": 2}}]})", "sensors[0].sharing: "},
        {R"({"sensors": [{"number": 254, "name": "A", "record": "compact", "sharing": {"count": 2}}]})",
         "sensors[0].number: "},
        {R"({"sensors": [{"number": 1, "name": "A", "record": "compact", "thresholds": {"upperCritical": 1}}]})",
         "sensors[0]: a compact record has no analog values"},
        {R"({"sensors": [{"number": 1, "name": "A"}, {"number": 1, "name": "B", "readingType": "state"}]})",
         "sensors[1]: sensor 1 has another kind of reading in an earlier record"},
        {R"({"sensors": [{"number": 1, "name": "A", "record": "compact", "sharing": {"count": 2}, "live": [{}]}]})",
         "sensors[0].live: there is not one for each of the 2"},
        {R"({"frus": [{"id": 0, "name": "A", "data": "0"}]})", "frus[0].data: two hexadecimal digits"},
        {R"({"frus": [{"id": 0, "name": "A", "data": "00", "board": {}}]})", "frus[0].data: "},
        {R"({"frus": [{"id": 0, "name": "A", "board": {"manufactured": "1995-12-31"}}]})",
         "frus[0].board.manufactured: '1995-12-31' is no date"},
        {R"({"frus": [{"id": 0, "name": "A"}, {"id": 0, "name": "B"}]})",
         "frus: there are two FRU devices 0"},
        {R"({"sdrRepository": {"rawRecords": ["51", "5"]}})", "sdrRepository.rawRecords[1]: "},
        {R"({"users": [{"id": 2, "email": "a\nb"}]})", "users[0].email"},
        {R"({"alertDestinations": [{"channel": 1, "selector": 16}]})", "alertDestinations[0].selector"},
        {R"({"alertDestinations": [{"channel": 1, "selector": 1}, {"channel": 1, "selector": 1}]})",
         "alertDestinations"},
        {R"({"mail": {"servers": [{"channel": 1}, {"channel": 1}]}})", "mail.servers"},
        {R"({"pef": {"filters": [{"number": 1, "bytes": "00"}]}})", "pef.filters[0].bytes"},
        {R"({"pef": {"policies": [{"number": 21, "bytes": "00 00 00"}]}})", "pef.policies[0]"},
    };
    for (const auto& item : cases)
        EXPECT_THAT([&] { vbmc::createFromText(stateFile, item.model, "a.json"); },
                    ThrowsMessage<vbmc::Error>(StartsWith(std::string("a.json: ") + item.error)))
            << item.model;
    EXPECT_FALSE(exists(stateFile.parent_path())) << "a wrong model leaves something behind";
}

TEST_F(Model, doesNotReplaceAMachineUnasked) {
    create(R"({"users": [{"id": 1, "name": "first"}]})");
    EXPECT_THAT([&] { vbmc::createFromText(stateFile, "{}", "a.json"); },
                ThrowsMessage<vbmc::Error>(AllOf(StartsWith(stateFile.string()), HasSubstr("exists"))));
    EXPECT_THROW(create("{\"users\": 1}"), vbmc::Error);
    EXPECT_EQ(vbmc::VirtualBmc(stateFile).describe()["users"][0]["name"], "first");
    create("{}");
    EXPECT_TRUE(vbmc::VirtualBmc(stateFile).describe()["users"].empty());
}

TEST_F(Model, isReadFromAFile) {
    write("/conf/model.json", R"({"users": [{"id": 1, "name": 1}]})");
    const auto modelFile = sysroot.place("/conf/model.json");
    EXPECT_THAT([&] { vbmc::create(stateFile, modelFile); },
                ThrowsMessage<vbmc::Error>(modelFile.string() + ": users[0].name: a text is expected"));
    EXPECT_THAT([&] { vbmc::create(stateFile, sysroot.place("/conf/other.json")); },
                ThrowsMessage<vbmc::Error>(AllOf(HasSubstr("other.json: "), HasSubstr("No such file"))));
    write("/conf/model.json", "{}");
    vbmc::create(stateFile, modelFile);
    for (const char* const suffix : {"", ".lock"}) {
        struct stat status = {};
        ASSERT_EQ(stat((stateFile.string() + suffix).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0600u) << suffix;
    }
}

TEST_F(Model, namesTheFileThatCannotBeMade) {
    write("/var/lib/file", "");
    const auto below = sysroot.place("/var/lib/file/bmc.state");
    EXPECT_THAT([&] { vbmc::createFromText(below, "{}", "a.json"); },
                ThrowsMessage<vbmc::Error>(StartsWith(below.string() + ": ")));
    const auto folder = sysroot.place("/var/lib/folder");
    std::filesystem::create_directory(folder);
    EXPECT_THAT([&] { vbmc::createFromText(folder, "{}", "a.json", vbmc::Existing::Replace); },
                ThrowsMessage<vbmc::Error>(StartsWith(folder.string() + ": ")));
    EXPECT_FALSE(std::filesystem::exists(folder.string() + ".new"));
}

} // namespace
