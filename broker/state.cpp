#include "state.h"

#include "object.h"
#include "provider.h"
#include "tables.h"

#include <utility>

namespace broker {

namespace {

thread_local Frame* innermostFrame = nullptr;
thread_local Object* asked = nullptr;

} // namespace

void Arena::adopt(Object& object) {
    const std::lock_guard lock(mutex_);
    object.arena_ = this;
    object.next_ = first_;
    if (first_ != nullptr)
        first_->previous_ = &object;
    first_ = &object;
    if (keeping_ == Keeping::Nothing)
        object.keepsState_.reset();
}

void Arena::disown(Object& object) {
    const std::lock_guard lock(mutex_);
    (object.previous_ != nullptr ? object.previous_->next_ : first_) = object.next_;
    if (object.next_ != nullptr)
        object.next_->previous_ = object.previous_;
    object.arena_ = nullptr;
}

void Arena::clear() {
    for (Object* object = std::exchange(first_, nullptr); object != nullptr;)
        delete std::exchange(object, object->next_);
}

Object::Object(State& objectState) : state(objectState), keepsState_(objectState.shared_from_this()) {
    ++state.liveObjects;
}

Object::~Object() {
    delete parts_.load();
    --state.liveObjects;
}

Arena& Object::parts() {
    Arena* parts = parts_;
    if (parts == nullptr) {
        auto made = std::make_unique<Arena>(Arena::Keeping::Nothing);
        if (parts_.compare_exchange_strong(parts, made.get()))
            parts = made.release();
    }
    return *parts;
}

Asking::Asking(Object* object) : before_(std::exchange(asked, object)) {}

Asking::~Asking() {
    asked = before_;
}

void Object::destroy() {
    if (arena_ != nullptr)
        arena_->disown(*this);
    delete this;
}

Frame::Frame(std::shared_ptr<State> frameState) : state(std::move(frameState)), outer_(innermostFrame) {
    innermostFrame = this;
}

Frame::~Frame() {
    for (Frame** frame = &innermostFrame; *frame != nullptr; frame = &(*frame)->outer_)
        if (*frame == this) {
            *frame = outer_;
            break;
        }
}

Frame* Frame::innermost() {
    return innermostFrame;
}

State::State() : handle{this, &requestTable, &factoryTable, &servicesTable, &memoryTable} {}

State::~State() = default;

void State::count(Call call) {
    Counter& counter = counters[static_cast<size_t>(call)];
    if (counter.calls.fetch_add(1, std::memory_order_relaxed) + 1 ==
        counter.failAt.load(std::memory_order_relaxed))
        throw Failure{CMPI_RC_ERR_FAILED}; // without a message, which would be an object more
}

Arena& State::arena() {
    if (asked != nullptr)
        return asked->parts();
    Frame* frame = Frame::innermost();
    return frame != nullptr ? frame->arena : root;
}

CMPIStatus currentFailure(State* state) noexcept {
    CMPIStatus status{CMPI_RC_ERR_FAILED, nullptr};
    std::string message;
    try {
        throw;
    } catch (const Failure& failure) {
        status.rc = failure.code;
        message = failure.what();
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
