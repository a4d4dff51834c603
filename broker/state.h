// What a broker is inside: its CMPI handle, settings and counters, and the arenas that own objects.
#pragma once

#include "broker/broker.h"
#include "calls.h"

#include <array>
#include <atomic>
#include <mutex>
#include <string>

namespace broker {

class Object;
class Provider;

// Thrown by a CMPI function that cannot do what it is asked.
class Failure : public std::runtime_error {
public:
    explicit Failure(CMPIrc failureCode, const std::string& message = {})
        : std::runtime_error(message), code(failureCode) {}
    CMPIrc code;
};

// Owns objects until it ends or they are released.
class Arena {
public:
    // Objects that go with the state, or with an object that keeps it, need not keep it themselves.
    enum class Keeping { State, Nothing };
    explicit Arena(Keeping keeping = Keeping::State) : keeping_(keeping) {}
    ~Arena() { clear(); }
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    void adopt(Object& object);
    void disown(Object& object);
    void clear();

private:
    const Keeping keeping_; // what its objects keep
    std::mutex mutex_;
    Object* first_ = nullptr;
};

// Objects that a thread makes while a frame is its innermost go with the frame.
class Frame {
public:
    explicit Frame(std::shared_ptr<State> state);
    ~Frame();
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    static Frame* innermost(); // of this thread

    const std::shared_ptr<State> state;
    Arena arena;

private:
    Frame* outer_;
};

class State : public std::enable_shared_from_this<State> {
public:
    State();
    ~State();

    // Counts a call; throws Failure when this is the one that is to fail.
    void count(Call call);

    // Returns where objects go: to the object that the thread is asking for a part of itself, to the thread's
    // innermost frame, or to what lasts as long as the broker.
    Arena& arena();

    // Answers a request with these context entries.
    Reply execute(const Request& request, const NamedValues& entries);
    // The entries of a request's context that comes from outside.
    NamedValues contextEntries(const std::string& requester = {}) const;

    bool isStrict() const { return declaredType != nullptr; }
    // Throws Failure where a strict broker refuses the value.
    void requireDeclared(const std::string& className, std::string_view name, CMPIType type) const;

    struct Counter {
        std::atomic<unsigned> calls{0};
        std::atomic<unsigned> failAt{0}; // 0: never
    };

    CMPIBroker handle;
    std::array<Counter, std::size(callNames)> counters;
    std::atomic<size_t> liveObjects{0};
    std::atomic<size_t> usualProperties{16}; // as many as the last instance had that a provider returned
    Broker::Router router;
    Broker::IndicationHandler indicationHandler;
    Broker::LogHandler logHandler;
    Broker::DeclaredType declaredType; // of a strict broker
    std::string user;
    std::vector<std::unique_ptr<Provider>> providers;
    Arena root{Arena::Keeping::Nothing};
};

} // namespace broker
