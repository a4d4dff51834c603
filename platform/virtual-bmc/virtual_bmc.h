// A BMC in the process: an IPMI controller whose whole state is a file, so that separate processes see the
// same machine. Behind a session it is ipmi::openTransport with SessionSettings::VirtualBmc; here is what
// operates the machine from outside: making it, looking at it, turning its sensors, making its commands fail.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vbmc {

// The text names the file, the place in it ("sensors[3].m") and the reason.
struct Error : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The machine that sessions reach whose settings name no file: "/var/lib/virtual-bmc/bmc.state" below
// PH_SYSROOT.
std::filesystem::path defaultStateFile();

enum class Existing { Refuse, Replace };

// Makes the state file (mode 0600; missing folders above it too) of the server that a model describes
// (docs/virtual-bmc.md). Throws Error and leaves no file, or the former one, when the model is wrong or the
// file exists and shall not be replaced.
void create(const std::filesystem::path& stateFile, const std::filesystem::path& modelFile,
            Existing existing = Existing::Refuse);
// The same from the model's text, which errors call `modelName`.
void createFromText(const std::filesystem::path& stateFile, std::string_view model,
                    const std::string& modelName, Existing existing = Existing::Refuse);

// Names a sensor by its number, or by its name. A text that is no sensor's name may be a number, decimal or
// with 0x before it.
class SensorRef {
public:
    SensorRef(int number) : number_(number) {}
    SensorRef(std::string_view text) : text_(text) {}
    SensorRef(const std::string& text) : text_(text) {}
    SensorRef(const char* text) : text_(text) {}

    int number() const { return number_; } // -1: by text
    const std::string& text() const { return text_; }

private:
    int number_ = -1;
    std::string text_;
};

enum class Availability {
    Available,
    Unavailable, // Get Sensor Reading answers with its "reading/state unavailable" bit
    Unreadable,  // Get Sensor Reading fails with CBh
};

// Describes what goes wrong with one command.
struct Fault {
    enum Kind {
        CompletionCode, // `value` is the answer, the command has no effect
        ShortAnswer,    // the answer is cut to `value` bytes, completion code included, 1 at least
        Late,   // the answer comes after `value` milliseconds, or not at all if the session's time-out
                // passes before
        Silent, // no answer and no effect; the session's time-out is not waited for
    };
    std::uint8_t netFn = 0;
    std::uint8_t command = 0;
    Kind kind = CompletionCode;
    unsigned value = 0;
    unsigned skip = 0;  // so many calls go well before the first that does not
    unsigned calls = 0; // how many calls it then strikes; 0: until it is cleared
};

// A message that the BMC received and its answer; `answer` is empty where it gave none.
struct Message {
    std::uint8_t netFn = 0;
    std::uint8_t command = 0;
    std::vector<std::uint8_t> request; // after the command
    std::vector<std::uint8_t> answer;  // completion code first
};

class StateFile;

// The outcome of platform event filtering for an event (IPMI 2.0, 17).
struct Alert {
    std::uint8_t policy = 0; // number of the alert policy
    std::uint8_t channel = 0;
    std::uint8_t selector = 0; // of the alert destination
    std::uint8_t type = 0;     // of the alert destination, as in LAN parameter 18
};
struct EventMatch {
    std::vector<std::uint8_t> filters; // numbers of those that match
    std::vector<Alert> alerts;         // in the order of sending; each destination once
};

// Every call is one transaction on the state file, like an IPMI command. All throw Error when the file is
// missing, of something else or damaged, and for arguments that the machine does not have.
class VirtualBmc {
public:
    explicit VirtualBmc(std::filesystem::path stateFile);
    ~VirtualBmc();

    // The machine as it is now: an object with a member per part of it ("device", "sensors", "users", …). An
    // array of objects is a table; what is named "...Text" or "value" is meant for people. Sensors have
    //   number, name, type, readingType, availability,
    //   threshold sensors: raw, value, unit, crossed (names of the thresholds the reading is beyond)
    //   discrete sensors: states (bits), statesText (their offsets)
    nlohmann::ordered_json describe();

    // Threshold sensors. The comparison status bits of the answer follow from the reading and the thresholds.
    void setReading(const SensorRef& sensor, double value); // in the sensor's unit, to the nearest raw value
    void setRawReading(const SensorRef& sensor, std::uint8_t raw);
    // Discrete sensors: bit n is state offset n, 0 to 14.
    void setStates(const SensorRef& sensor, std::uint16_t states);
    void setAvailability(const SensorRef& sensor, Availability availability);

    // The event log. A record of 16 bytes gets an ID from the BMC, and the present time where it is 0 and the
    // record's type has a time. Throws Error when the log is full and does not wrap.
    std::uint16_t addSelRecord(std::span<const std::uint8_t, 16> record);
    // The same of an event of a sensor, which comes into the state with this offset (0 to 14), or leaves it.
    std::uint16_t addSensorEvent(const SensorRef& sensor, std::uint8_t offset, bool isDeassertion);
    std::vector<std::array<std::uint8_t, 16>> selRecords(); // oldest first
    // Appends so many records, events of the machine's sensors and OEM records in turn. Returns how many
    // there was room for.
    std::size_t fillSel(std::size_t count);
    void clearSel();
    void setSelWraps(bool wraps); // a full log drops its oldest record, not the new event

    // Tells the alerts of this record, whether or not it is in the log.
    EventMatch matchEvent(std::span<const std::uint8_t, 16> record);

    // Tells whether a session over LAN would be opened for this user and password.
    bool letsIn(std::string_view userName, std::string_view password);

    // Where alerts go. `changes` has members of a model's object of the kind; what it does not name stays.
    void setAlertDestination(std::uint8_t channel, std::uint8_t selector,
                             const nlohmann::ordered_json& changes);
    void setMailServer(std::uint8_t channel, bool isSecondary, const nlohmann::ordered_json& changes);
    void setUserEmail(std::uint8_t userId, const std::string& address); // empty: none
    // Writes an entry of the alert policy table: PEF parameter 9 without its selector.
    void setAlertPolicy(std::uint8_t number, std::span<const std::uint8_t, 3> entry);

    // LANs, by the name of their interface. Switching the bond is refused (Error) as the controller refuses
    // it.
    void setLink(const std::string& interfaceName, bool isUp, std::uint16_t speed); // Mb/s
    void setDhcpLease(const std::string& interfaceName, const std::string& address,
                      const std::string& netmask, const std::string& gateway);
    void setBond(bool isEnabled);

    void addFault(const Fault& fault);
    std::vector<Fault> faults(); // those that can still strike; skip and calls count down
    void clearFaults();

    // Records the next `limit` messages, those of other processes too, after forgetting earlier ones; 0 ends
    // the recording and forgets.
    void recordMessages(std::size_t limit);
    std::vector<Message> recordedMessages();

private:
    std::unique_ptr<StateFile> file_;
};

} // namespace vbmc
