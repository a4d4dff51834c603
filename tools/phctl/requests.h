// Requests to the providers, through the embedded broker.
#pragma once

#include "broker/broker.h"
#include "command_line.h"
#include "exchange_watch.h"
#include "time_limit.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace phctl {

// Options of every command that asks the providers.
struct RequestOptions {
    bool json = false;
    bool words = false, wide = false;
    std::string nameSpace; // empty: the one that serves the class
    std::string module;    // empty: where the installation has it
    std::string user;
    unsigned timeout = 0; // seconds; 0: none

    void addTo(Command command);
    // --words and --wide, of commands that print instances.
    void addPresentationTo(Command command);
};

// Loads the provider module, after making sure that it works on the right machine. Throws Failure.
void loadProviders(broker::Broker& broker, const std::string& module);

// Puts the library where association providers look it up. Throws Failure.
void provideInstanceArrays();

// Tells what a request says of names that no class description has.
class Remarks {
public:
    // "CIM_X has no <kind> <name>; did you mean …?"
    void unknown(std::string_view className, const char* kind, const std::string& name,
                 const std::vector<std::string>& candidates);
    const std::string& text() const { return text_; }

private:
    std::string text_;
};

class Requester {
public:
    explicit Requester(const RequestOptions& options);

    // Executes the request, and shows progress where it waits or reads a long log. Remarks, and which sensors
    // could not be read, go to stderr; where it fails, with the error. Throws Failure.
    broker::Reply execute(const broker::Request& request, const Remarks& remarks = {});
    // The same without a word to stderr.
    broker::Reply ask(const broker::Request& request, const Remarks& remarks = {});

    // Tells which sensors the last request could not read; empty when it could all.
    const std::string& unreadableSensors() const { return unreadableSensors_; }

    // Returns when --timeout ends the command, if it does.
    std::optional<std::chrono::steady_clock::time_point> deadline() const {
        return limit_ ? std::optional(limit_->end()) : std::nullopt;
    }

    broker::Broker& broker() { return broker_; }

private:
    std::string failureText(const broker::Request& request, const broker::Reply& reply,
                            const Remarks& remarks) const;

    std::shared_ptr<ExchangeWatch> watch_;
    std::unique_ptr<TimeLimit> limit_;
    std::string unreadableSensors_;
    broker::Broker broker_;
};

} // namespace phctl
