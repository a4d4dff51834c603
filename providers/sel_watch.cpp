#include "sel_watch.h"

#include "cmpi_objects.h"
#include "provider_helper/alert_delivery.h"
#include "sel_follower.h"

#include <algorithm>
#include <chrono>
#include <platform/support.h>

namespace {

// The platform's configuration says how often; by default every five seconds, as a poll is a message to the
// BMC.
std::chrono::seconds interval() {
    constexpr int day = 24 * 60 * 60;
    return std::chrono::seconds(std::clamp(GetMacrodefine_getint("SEL_POLL_SECONDS", 5), 1, day));
}

} // namespace

SelWatch::~SelWatch() {
    change([this] { isEnding_ = true; });
    if (thread_.joinable())
        thread_.join();
}

template <class Change>
void SelWatch::change(Change change) {
    const std::lock_guard lock(mutex_);
    change();
    changed_.notify_one();
}

void SelWatch::startIfWanted(const CMPIContext* context) {
    if (!isWanted() || thread_.joinable())
        return;
    context_ = CBPrepareAttachThread(broker_, context);
    thread_ = std::thread([this] { run(); });
}

void SelWatch::addFilter(const CMPIContext* context) {
    change([&] {
        ++filters_;
        startIfWanted(context);
    });
}

void SelWatch::enable(const CMPIContext* context) {
    change([&] {
        isEnabled_ = true;
        startIfWanted(context);
    });
}

void SelWatch::disable() {
    change([this] { isEnabled_ = false; });
}

void SelWatch::removeFilter() {
    change([this] {
        filters_ -= filters_ > 0 ? 1 : 0;
        isForgotten_ = isForgotten_ || filters_ == 0;
    });
}

void SelWatch::deliver(const std::uint8_t (&record)[16]) const {
    SelEventMessage message{};
    std::copy(std::begin(record), std::end(record), message.record);
    AlertRecord alert{};
    CMPIInstance* made = nullptr;
    if (SelToAlert(&message, &alert, message.destination, message.channel) != 0 ||
        Create_AlertIndication_Instance(broker_, context_, &alert, &made, &message) != 0)
        return;
    const objects::Owned<CMPIInstance> indication(made);
    Deliver_SEL_Indication(broker_, context_, indication.get());
}

void SelWatch::run() {
    CBAttachThread(broker_, context_);
    SelFollower follower;
    std::unique_lock lock(mutex_);
    while (!isEnding_) {
        if (isForgotten_)
            follower.forget();
        isForgotten_ = false;
        if (!isWanted()) {
            follower.close();
            changed_.wait(lock);
            continue;
        }
        lock.unlock();
        follower.poll([this](const auto& record) { deliver(record); });
        lock.lock();
        changed_.wait_for(lock, interval(), [this] { return isEnding_ || isForgotten_ || !isWanted(); });
    }
    lock.unlock();
    follower.close();
    CBDetachThread(broker_, context_);
}
