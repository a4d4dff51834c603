// One machine in a file, for any number of processes.
#include "virtual_bmc_fixture.h"

#include <fstream>
#include <sstream>
#include <sys/inotify.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

constexpr std::uint8_t setSensorThresholds = 0x26;
constexpr std::uint8_t getSensorThresholds = 0x27;

constexpr char someSensors[] = R"({"sensors": [
    {"number": 1, "name": "Inlet", "thresholds": {"lowerCritical": 0, "upperCritical": 50}, "reading": 20},
    {"number": 2, "name": "Door", "readingType": "state", "supportedStates": [0, 1]},
    {"number": 3, "name": "Drive", "record": "compact", "readingType": "presence", "supportedStates": [0, 1],
     "sharing": {"count": 2}},
    {"number": 5, "name": "Twin"}, {"number": 6, "name": "Twin"},
    {"number": 1, "name": "Inlet again", "analog": {"m": 2}}]})";

class StateFile : public VirtualBmcFixture {
protected:
    void SetUp() override { create(someSensors); }

    std::string contents() const {
        std::ifstream file(stateFile);
        std::stringstream text;
        text << file.rdbuf();
        return text.str();
    }
};

TEST_F(StateFile, isSeenByAllSessions) {
    const auto first = open();
    const auto second = open();
    EXPECT_THAT(ask(*first, sensorEvent, getSensorReading, {1}), ElementsAre(0, 20, 0xC0, 0xC0));
    vbmc::VirtualBmc bmc(stateFile);
    bmc.setReading("Inlet", 50);
    bmc.setStates(2, 0x0002);
    for (const auto* const session : {&first, &second}) {
        EXPECT_THAT(ask(**session, sensorEvent, getSensorReading, {1}), ElementsAre(0, 50, 0xC0, 0xD0));
        EXPECT_THAT(ask(**session, sensorEvent, getSensorReading, {2}), ElementsAre(0, 0, 0xC0, 0x02, 0x80));
    }
    ask(*first, sensorEvent, setSensorThresholds, {1, 0x10, 0, 0, 0, 0, 60, 0});
    EXPECT_THAT(ask(*second, sensorEvent, getSensorReading, {1}), ElementsAre(0, 50, 0xC0, 0xC0));
    EXPECT_EQ(bmc.describe()["sensors"][0]["crossed"].size(), 0u);
}

TEST_F(StateFile, takesNewReadingsOfEachKind) {
    vbmc::VirtualBmc bmc(stateFile);
    const auto session = open();
    bmc.setRawReading(1, 0);
    EXPECT_THAT(ask(*session, sensorEvent, getSensorReading, {1}), ElementsAre(0, 0, 0xC0, 0xC2));
    EXPECT_THAT(bmc.describe()["sensors"][0]["crossed"].dump(), R"(["lowerCritical"])");
    bmc.setAvailability("0x01", vbmc::Availability::Unavailable);
    EXPECT_THAT(ask(*session, sensorEvent, getSensorReading, {1}), ElementsAre(0, 0, 0xE0, 0xC0));
    bmc.setAvailability("1", vbmc::Availability::Unreadable);
    EXPECT_THAT(ask(*session, sensorEvent, getSensorReading, {1}), ElementsAre(0xCB));
    bmc.setStates("Drive 1", 0x0001);
    EXPECT_THAT(ask(*session, sensorEvent, getSensorReading, {3}), ElementsAre(0, 0, 0xC0, 0x00, 0x80));
    EXPECT_THAT(ask(*session, sensorEvent, getSensorReading, {4}), ElementsAre(0, 0, 0xC0, 0x01, 0x80));
    bmc.setRawReading(1, 7);
    bmc.setAvailability(1, vbmc::Availability::Available);
    const auto described = bmc.describe()["sensors"];
    EXPECT_EQ(described.back()["name"], "Inlet again");
    EXPECT_EQ(described.back()["value"], 14.0) << "the reading of its number, with its own factors";

    const std::string before = contents();
    const struct {
        void (*act)(vbmc::VirtualBmc&);
        const char* error;
    } refusals[] = {
        {[](auto& machine) { machine.setReading("Outlet", 1); }, "there is no sensor 'Outlet'"},
        {[](auto& machine) { machine.setReading(300, 1); }, "there is no sensor 300"},
        {[](auto& machine) { machine.setReading("0x", 1); }, "there is no sensor '0x'"},
        {[](auto& machine) { machine.setReading("Twin", 1); }, "several sensors are named 'Twin': 5 and 6"},
        {[](auto& machine) { machine.setReading(1, 256); }, "sensor 'Inlet': it has no reading for 256"},
        {[](auto& machine) { machine.setReading("Door", 1); }, "sensor 'Door': it has no analog reading"},
        {[](auto& machine) { machine.setStates("Inlet", 1); }, "sensor 'Inlet': its states follow"},
        {[](auto& machine) { machine.setStates("Door", 0x8000); }, "sensor 'Door': state offsets end at 14"},
    };
    for (const auto& item : refusals)
        EXPECT_THAT([&] { item.act(bmc); }, ThrowsMessage<vbmc::Error>(HasSubstr(item.error)));
    EXPECT_EQ(contents(), before);
}

// Each process counts its own threshold up; both are in the one state.
TEST_F(StateFile, losesNoChangeOfTwoProcesses) {
    constexpr std::uint8_t rounds = 100;
    const auto count = [&](std::uint8_t mask, std::size_t place) {
        const auto session = open();
        for (std::uint8_t i = 1; i <= rounds; ++i) {
            Bytes request{1, mask, 0, 0, 0, 0, 0, 0};
            request[2 + place] = i;
            if (ask(*session, sensorEvent, setSensorThresholds, request) != Bytes{0} ||
                ask(*session, sensorEvent, getSensorThresholds, {1})[2 + place] != i)
                return false;
        }
        return true;
    };
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0)
        _exit(count(0x10, 4) ? 0 : 1);
    EXPECT_TRUE(count(0x02, 1));
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_THAT(ask(*open(), sensorEvent, getSensorThresholds, {1}),
                ElementsAre(0, 0x12, 0, rounds, 0, 0, rounds, 0));
}

// What happens to files of a folder.
class Watch {
public:
    explicit Watch(const std::filesystem::path& folder)
        : descriptor_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        if (inotify_add_watch(descriptor_, folder.c_str(),
                              IN_OPEN | IN_ACCESS | IN_MODIFY | IN_CREATE | IN_MOVE) < 0)
            ADD_FAILURE() << "cannot watch " << folder;
    }
    ~Watch() { close(descriptor_); }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    bool sawAnything() const {
        char buffer[4096];
        return read(descriptor_, buffer, sizeof buffer) > 0;
    }

private:
    int descriptor_;
};

TEST_F(StateFile, isNotTouchedByCommandsThatReadAnUnchangedMachine) {
    std::string sensors;
    for (int i = 0; i < 1000; ++i)
        sensors += (i > 0 ? "," : "") + std::string(R"({"number": )") + std::to_string(i % 250) +
                   R"(, "name": "Sensor )" + std::to_string(i) + R"(", "reading": 5})";
    create(R"({"sensors": [)" + sensors + "]}");
    const auto session = open();
    Watch watch(stateFile.parent_path());
    for (std::uint8_t number = 0; number < 250; ++number)
        for (int i = 0; i < 4; ++i)
            ASSERT_THAT(ask(*session, sensorEvent, getSensorReading, {number}),
                        ElementsAre(0, 5, 0xC0, 0xC0));
    ask(*session, sensorEvent, getSensorReading, {251});
    ask(*session, 0x06, 0x01, {});
    EXPECT_FALSE(watch.sawAnything());
    vbmc::VirtualBmc(stateFile).setRawReading(0, 6);
    EXPECT_TRUE(watch.sawAnything()) << "the watch works";
    EXPECT_THAT(ask(*session, sensorEvent, getSensorReading, {0}), ElementsAre(0, 6, 0xC0, 0xC0));
}

TEST_F(StateFile, isNamedWhenItIsDamaged) {
    const std::string good = contents();
    const auto line = 1 + std::count(good.begin(), good.begin() + good.find("{\"frus\""), '\n');
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"empty", "", "its end is missing"},
        {"foreign", "#!/bin/sh\n", "it is no state file of a virtual BMC"},
        {"foreign JSON", "{}\n", "it is no state file of a virtual BMC"},
        {"later version", "{\"virtualBmcState\":2,\"parts\":0}\n", "2 is not allowed"},
        {"cut between lines", good.substr(0, good.find("\n{\"frus\"") + 1), "parts of"},
        {"cut within a line", good.substr(0, good.size() - 20), "its end is missing"},
        {"not of its JSON", std::string(good).replace(good.find("\"number\""), 3, "!!!"), "parse error"},
        {"value out of range", std::string(good).replace(good.find("\"number\":1"), 10, "\"number\":-1"),
         "sensors[0].number: -1 is not allowed"},
        {"unknown part", std::string(good).replace(good.find("{\"frus\""), 7, "{\"frog\""),
         "line " + std::to_string(line) + ": it is no part"},
    };
    const auto session = open();
    for (const auto& [name, text, reason] : cases) {
        std::ofstream(stateFile, std::ios::trunc) << text;
        const auto names = AllOf(HasSubstr(stateFile.string() + ": "), HasSubstr(reason));
        EXPECT_THAT([&] { open(); }, ThrowsMessage<ipmi::TransportError>(names)) << name;
        EXPECT_THAT([&] { ask(*session, sensorEvent, getSensorReading, {1}); },
                    ThrowsMessage<ipmi::TransportError>(names))
            << name;
        EXPECT_THAT([&] { vbmc::VirtualBmc bmc(stateFile); }, ThrowsMessage<vbmc::Error>(names)) << name;
    }
    create(someSensors);
    EXPECT_THAT(ask(*session, sensorEvent, getSensorReading, {1}), ElementsAre(0, 20, 0xC0, 0xC0))
        << "mended";

    std::filesystem::remove(stateFile);
    EXPECT_THAT([&] { ask(*session, sensorEvent, getSensorReading, {1}); },
                ThrowsMessage<ipmi::TransportError>(HasSubstr(stateFile.string())));
    std::filesystem::remove_all(stateFile.parent_path());
    EXPECT_THAT([&] { open(); }, ThrowsMessage<ipmi::TransportError>(HasSubstr(stateFile.string())));
    EXPECT_FALSE(exists(stateFile.parent_path()));
}

} // namespace
