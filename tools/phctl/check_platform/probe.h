// The side of a check that calls the platform. It runs in a process of its own, and tells the other side what it is about to
// do before it does it.
#pragma once

#include "check_platform/outcome.h"
#include "check_platform/output.h"
#include "check_platform/platform_libraries.h"
#include "hooks/session_row.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <platform/cim_hooks.h>
#include <platform/smash_db.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace phctl::check {

// Thrown where a check lacks what it needs, such as a session: nothing is called then.
struct NotPossible : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Sends an event, as a line, to the process that reports.
void tell(int channel, const nlohmann::ordered_json& event);

class Probe;

// One call that was made, until it is reported.
class Call {
public:
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
    ~Call(); // reports it

    // It was made and has succeeded: what it handed out may be looked at.
    explicit operator bool() const { return isMade_ && result_ == 0; }
    bool isMade() const { return isMade_; }
    void expect(bool holds, const std::string& fault);
    template <std::size_t size>
    void expectText(const char* name, const char (&field)[size]) {
        addFault(faultOfText(name, {field, size}));
    }
    // A failure is what the contract asks for.
    void expectFailure(const char* reason);
    void addFault(const std::string& fault); // nothing for an empty one
    // What is done next with what it handed out, should the process not come back from that.
    void enter(const char* step) const;
    // Says something of a call that is as it has to be.
    void remark(std::string text) { remark_ = std::move(text); }

private:
    friend class Probe;
    Call(Probe& probe, std::string arguments, std::vector<Output*> outputs, const std::function<int()>& work);

    Probe& probe_;
    std::string arguments_;
    bool isMade_ = false;
    bool isSkipped_ = false; // an earlier process has reported it
    bool isFailureExpected_ = false;
    int result_ = -1;
    std::int64_t milliseconds_ = 0;
    std::string remark_;
    std::vector<std::string> faults_;
};

class Probe {
public:
    struct Settings {
        int timeout = 30;   // seconds, that functions are given
        unsigned first = 0; // calls before this one were made by an earlier process
        int channel = -1;   // descriptor that reports are written to
    };
    Probe(const char* library, const char* function, const Settings& settings);
    ~Probe();
    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;

    int timeout() const { return settings_.timeout; }

    // The function that is checked is there, and no stub.
    bool isThere() const { return libraries_.find(function_) != nullptr; }
    // Reports one that is not.
    void reportMissing() const;

    // Calls the function that is checked. `words` tells its calls apart.
    template <class Function, class... Arguments>
    Call call(std::string words, Arguments&&... arguments) {
        auto* const function = find<Function>(function_);
        return Call(*this, std::move(words), {outputOf(arguments)...},
                    [&] { return function(arguments...); });
    }

    // Calls another function, which has a check of its own, on the way to this one. Throws NotPossible when
    // it fails or is not there.
    template <class Function, class... Arguments>
    void use(const char* name, Arguments... arguments) const {
        auto* const function = find<Function>(name);
        if (function == nullptr || function(arguments...) != 0)
            throw NotPossible(std::string(name) + (function == nullptr ? " is missing" : " fails"));
    }

    // These throw NotPossible.
    IPMI20_SESSION_T* session(); // open, with the settings of the database
    const IPMISessionInfo& sessionInfo();
    ipmi::SessionSettings sessionSettings() { return hooks::settingsOf(sessionInfo()); }
    // Calls open(arguments...) with those of CIM_Create_IPMI20_Session behind the session.
    template <class Open>
    auto openSession(Open open) {
        const ipmi::SessionSettings settings = sessionSettings();
        return open(settings.address.c_str(), settings.port, settings.userName.c_str(),
                    settings.password.c_str(), settings.interfaceType, settings.cipherSuite,
                    settings.workaroundFlags, settings.retransmission, settings.privilegeLevel, timeout());
    }
    SMASH_DB_HANDLE database(const char* opener = "db_init");

    struct Lan {
        std::uint8_t index;
        std::uint8_t channel;
        std::string words; // "LAN 1, channel 2"
    };
    std::vector<Lan> lans();

    // The call that follows may take so many seconds.
    void allow(int seconds) const;

private:
    friend class Call;
    template <class Argument>
    static Output* outputOf(Argument& argument) {
        if constexpr (std::is_base_of_v<Output, Argument>)
            return &argument;
        else
            return nullptr;
    }
    template <class Function>
    Function* find(const char* name) const {
        return reinterpret_cast<Function*>(libraries_.find(name));
    }
    void make(Call& call, std::vector<Output*> outputs, const std::function<int()>& work);
    void makeOnce(Call& call, const std::vector<Output*>& outputs, std::uint8_t pattern,
                  const std::function<int()>& work);
    void report(const Call& call);
    void tell(const nlohmann::ordered_json& event) const { check::tell(settings_.channel, event); }
    std::string reasonOfFailure();

    const char* library_;
    const char* function_;
    Settings settings_;
    Libraries libraries_;
    unsigned calls_ = 0;
    int log_; // what the platform writes to its debug log
    std::unique_ptr<Out<IPMI20_SESSION_T>> session_;
    std::unique_ptr<IPMISessionInfo> sessionInfo_;
    std::vector<SMASH_DB_HANDLE> databases_;
};

} // namespace phctl::check
