#include "state.h"

#include "object.h"
#include "tables.h"

namespace broker {

namespace {

thread_local Scope* innermostScope = nullptr;

} // namespace

void Arena::adopt(Object& object) {
    const std::lock_guard lock(mutex_);
    object.arena_ = this;
    object.next_ = first_;
    if (first_ != nullptr)
        first_->previous_ = &object;
    first_ = &object;
    if (this == &object.state.root)
        object.keepsState_.reset(); // they would keep each other
}

void Arena::disown(Object& object) {
    const std::lock_guard lock(mutex_);
    (object.previous_ != nullptr ? object.previous_->next_ : first_) = object.next_;
    if (object.next_ != nullptr)
        object.next_->previous_ = object.previous_;
    object.arena_ = nullptr;
}

void Arena::clear() {
    while (first_ != nullptr)
        first_->destroy();
}

Object::Object(State& objectState) : state(objectState), keepsState_(objectState.shared_from_this()) {
    ++state.liveObjects;
}

Object::~Object() {
    --state.liveObjects;
}

void Object::destroy() {
    if (arena_ != nullptr)
        arena_->disown(*this);
    delete this;
}

Scope::Scope(std::shared_ptr<State> scopeState) : state(std::move(scopeState)), outer_(innermostScope) {
    innermostScope = this;
}

Scope::~Scope() {
    for (Scope** scope = &innermostScope; *scope != nullptr; scope = &(*scope)->outer_)
        if (*scope == this) {
            *scope = outer_;
            break;
        }
}

Scope* Scope::innermost() {
    return innermostScope;
}

State::State() : handle{this, &requestTable, &factoryTable, &servicesTable, &memoryTable} {}

void State::count(Call call) {
    Counter& counter = counters[static_cast<size_t>(call)];
    if (++counter.calls == counter.failAt)
        throw Failure{CMPI_RC_ERR_FAILED, "injected failure"};
}

Arena& State::arena() {
    Scope* scope = Scope::innermost();
    return scope != nullptr ? scope->arena : root;
}

CMPIStatus currentFailure(State* state) noexcept {
    CMPIStatus status{CMPI_RC_ERR_FAILED, nullptr};
    std::string message;
    try {
        throw;
    } catch (const Failure& failure) {
        status.rc = failure.code;
        message = failure.message;
    } catch (const std::exception& error) {
        message = error.what();
    } catch (...) {
        message = "unknown exception";
    }
    try {
        if (state != nullptr && !message.empty())
            status.msg = make<CMPIString>(*state, message);
    } catch (...) { // no memory for the message: the code has to do
    }
    return status;
}

} // namespace broker
