// The CMPI objects: a handle with its function table over a C++ value, and what their functions have in
// common.
#pragma once

#include "state.h"

#include <cmpift.h>
#include <type_traits>
#include <utility>

namespace broker {

class Object {
public:
    explicit Object(State& objectState);
    virtual ~Object();
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    virtual const char* type() const = 0;     // "CMPIString", …
    virtual std::string describe() const = 0; // for toString()
    void destroy();
    // Holds what the object was asked for, such as a property's text, which lasts as long as the object.
    Arena& parts();

    State& state;
    bool preparedForThread = false; // a context that goes with detachThread

private:
    friend class Arena;
    std::shared_ptr<State> keepsState_;  // unless the state's own arena owns the object
    std::atomic<Arena*> parts_{nullptr}; // made when there are some
    Arena* arena_ = nullptr;             // none: a clone, its owner releases it
    Object* previous_ = nullptr;
    Object* next_ = nullptr;
};

// While it lives, what the thread makes is a part of this object; with nullptr, of none.
class Asking {
public:
    explicit Asking(Object* object);
    ~Asking();
    Asking(const Asking&) = delete;
    Asking& operator=(const Asking&) = delete;

private:
    Object* before_;
};

struct PropertyFilter {
    std::vector<std::string> properties, keys;
};

// An instance is shared by what it was given to (clones, arrays, results) until one of them changes it.
class InstanceContent {
public:
    explicit InstanceContent(Instance instance) { own(std::move(instance)); }
    explicit InstanceContent(Value::Embedded instance) : shared_(std::move(instance)) {}

    const Instance& get() const { return *shared_; }
    const Value::Embedded& share() const { return shared_; }
    Instance& change() {
        if (!exclusive())
            own(Instance(*shared_));
        return *own_;
    }
    Instance take() && {
        if (exclusive())
            return std::move(*own_);
        return *shared_;
    }

    std::optional<PropertyFilter> filter;

private:
    bool exclusive() const { return own_ != nullptr && shared_.use_count() == 1; }
    void own(Instance&& instance) {
        auto copy = std::make_shared<Instance>(std::move(instance));
        own_ = copy.get();
        shared_ = std::move(copy);
    }

    Value::Embedded shared_;
    Instance* own_ = nullptr; // the same, when it was made here
};

struct ResultContent {
    std::vector<InstanceContent> instances;
    std::vector<ObjectPath> paths;
    std::vector<Value> values;
    bool done = false;
    std::function<void(const Instance&)> take; // see Request::takeInstance
    std::size_t taken = 0;
};

// Makes a reply of what was returned. Instances that nobody else has are moved.
Reply takeReply(ResultContent content);

struct EnumerationContent {
    CMPIType type; // of the items
    std::vector<Value> items;
    size_t next = 0;
};

struct SelectExpression {
    std::string query;
};

// What an object of each kind holds, and its function table.
template <class Handle>
struct Traits;

#define BROKER_TRAITS(Handle, ContentType)                                                                   \
    template <>                                                                                              \
    struct Traits<Handle> {                                                                                  \
        using Content = ContentType;                                                                         \
        static const Handle##FT table;                                                                       \
        static constexpr const char* name = #Handle;                                                         \
    }

BROKER_TRAITS(CMPIString, std::string);
BROKER_TRAITS(CMPIDateTime, DateTime);
BROKER_TRAITS(CMPIArray, Value); // its type has CMPI_ARRAY
BROKER_TRAITS(CMPIObjectPath, ObjectPath);
BROKER_TRAITS(CMPIInstance, InstanceContent);
BROKER_TRAITS(CMPIArgs, NamedValues);
BROKER_TRAITS(CMPIContext, NamedValues);
BROKER_TRAITS(CMPIResult, ResultContent);
BROKER_TRAITS(CMPIEnumeration, EnumerationContent);
BROKER_TRAITS(CMPISelectExp, SelectExpression);
#undef BROKER_TRAITS

inline std::string description(const std::string& text) {
    return text;
}
inline std::string description(const DateTime& time) {
    return time.text();
}
inline std::string description(const Value& value) {
    return toText(value);
}
inline std::string description(const ObjectPath& path) {
    return toText(path);
}
inline std::string description(const InstanceContent& content) {
    return "instance of " + toText(content.get().path);
}
template <class Content>
std::string description(const Content&) {
    return {};
}

template <class Handle>
class ObjectOf final : public Object {
public:
    using Content = typename Traits<Handle>::Content;

    ObjectOf(State& objectState, Content objectContent)
        : Object(objectState),
          handle{static_cast<Object*>(this), &Traits<Handle>::table},
          content(std::move(objectContent)) {}
    const char* type() const override { return Traits<Handle>::name; }
    std::string describe() const override { return description(content); }

    Handle handle;
    Content content;
};

template <class Handle>
ObjectOf<Handle>& objectOf(const Handle* handle) {
    if (handle == nullptr || handle->hdl == nullptr)
        throw Failure{CMPI_RC_ERR_INVALID_HANDLE};
    return *static_cast<ObjectOf<Handle>*>(static_cast<Object*>(const_cast<void*>(handle->hdl)));
}

inline State& objectOf(const CMPIBroker* broker) {
    if (broker == nullptr || broker->hdl == nullptr)
        throw Failure{CMPI_RC_ERR_INVALID_HANDLE};
    return *static_cast<State*>(const_cast<void*>(broker->hdl));
}

inline State& stateOf(State& state) {
    return state;
}
inline State& stateOf(Object& object) {
    return object.state;
}

inline Object* askedFor(State&) {
    return nullptr;
}
inline Object* askedFor(Object& object) {
    return &object;
}

// Makes an object of this arena.
template <class Handle>
Handle* make(State& state, Arena& arena, typename Traits<Handle>::Content content) {
    auto object = std::make_unique<ObjectOf<Handle>>(state, std::move(content));
    arena.adopt(*object);
    return &object.release()->handle;
}

// Makes an object of the request.
template <class Handle>
Handle* make(State& state, typename Traits<Handle>::Content content) {
    return make<Handle>(state, state.arena(), std::move(content));
}

// Turns the exception into a status; for catch blocks.
CMPIStatus currentFailure(State* state) noexcept;

// The value that a failing function returns.
template <class Result>
Result failed() {
    if constexpr (std::is_same_v<Result, CMPIData>)
        return {CMPI_null, CMPI_nullValue | CMPI_notFound, {}};
    else
        return {};
}

// Runs body(object) as the CMPI function `call` that reports through `status`.
template <class Handle, class Body>
auto obtain(const Handle* handle, Call call, CMPIStatus* status, Body body) noexcept
    -> decltype(body(objectOf(handle))) {
    State* state = nullptr;
    CMPIStatus outcome{CMPI_RC_OK, nullptr};
    auto result = failed<decltype(body(objectOf(handle)))>();
    try {
        auto& object = objectOf(handle);
        state = &stateOf(object);
        state->count(call);
        const Asking parts(askedFor(object));
        result = body(object);
    } catch (...) {
        outcome = currentFailure(state);
    }
    if (status != nullptr)
        *status = outcome;
    return result;
}

// Does the same for a function that returns its status.
template <class Handle, class Body>
CMPIStatus perform(const Handle* handle, Call call, Body body) noexcept {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    obtain(handle, call, &status, [&](auto& object) {
        body(object);
        return true;
    });
    return status;
}

template <class Handle>
CMPIStatus release(Handle* handle) {
    return perform(handle, Call::release, [](Object& object) { object.destroy(); });
}

// Makes an object that the caller owns.
template <class Handle>
Handle* clone(const Handle* handle, CMPIStatus* status) {
    return obtain(handle, Call::clone, status, [](const ObjectOf<Handle>& object) {
        return &(new ObjectOf<Handle>(object.state, object.content))->handle;
    });
}

inline void report(CMPIStatus& status) {
    status = {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}
inline void report(CMPIStatus* status) {
    if (status != nullptr)
        report(*status);
}
template <class Argument>
void report(const Argument&) {}

// Stands in any table for a function that this broker does not have.
template <class Result, class... Arguments>
Result unsupported(Arguments... arguments) {
    (report(arguments), ...);
    if constexpr (std::is_same_v<Result, CMPIStatus>)
        return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    else
        return failed<Result>();
}

} // namespace broker
