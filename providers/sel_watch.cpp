#include "sel_watch.h"

#include "cmpi_objects.h"
#include "provider_helper/alert_delivery.h"
#include "sel_follower.h"

#include <algorithm>
#include <chrono>
#include <platform/sel_record.h>
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

void SelWatch::follow(const CMPIContext* context) {
    constexpr std::chrono::seconds patience{2};
    std::unique_lock lock(mutex_);
    if (!isWanted())
        return;
    if (!thread_.joinable()) {
        context_ = CBPrepareAttachThread(broker_, context);
        thread_ = std::thread([this] { run(); });
    }
    following_.wait_for(lock, patience, [this] { return isFollowing_ || !isWanted(); });
}

void SelWatch::addFilter(const CMPIContext* context) {
    change([this] { ++filters_; });
    follow(context);
}

void SelWatch::enable(const CMPIContext* context) {
    change([this] { isEnabled_ = true; });
    follow(context);
}

void SelWatch::disable() {
    change([this] { isEnabled_ = false; });
}

void SelWatch::removeFilter() {
    change([this] {
        filters_ -= filters_ > 0 ? 1 : 0;
        isForgotten_ = isForgotten_ || filters_ == 0;
        isFollowing_ = isFollowing_ && !isForgotten_;
    });
}

void SelWatch::deliver(const std::uint8_t (&record)[16]) {
    SelEventMessage message{};
    std::copy(std::begin(record), std::end(record), message.record);
    AlertRecord alert{};
    CMPIInstance* made = nullptr;
    if (SelToAlert(&message, &alert, message.destination, message.channel) != 0)
        return;
    // Where a system event has the sensor's number, an OEM record has data of its own.
    if (!PH_IsSelSystemEvent(record))
        alert.AlertingManagedElement[0] = alert.MessageArguments[0][0] = '\0';
    if (Create_AlertIndication_Instance(broker_, context_, &alert, &made, &message) != 0)
        return;
    objects::Owned<CMPIInstance> indication(made);
    if (!offerIndication(broker_, context_, PH_INTEROP_NAMESPACE, indication.get()))
        pending_.add(context_, std::move(indication));
}

PendingDeliveries::Clock::time_point SelWatch::turn(SelFollower& follower) {
    follower.poll([this](const auto& record) { deliver(record); });
    return std::min(pending_.offer(context_), PendingDeliveries::Clock::now() + interval());
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
            pending_.clear();
            changed_.wait(lock);
            continue;
        }
        lock.unlock();
        const auto next = turn(follower);
        lock.lock();
        isFollowing_ = !isForgotten_;
        following_.notify_all();
        changed_.wait_until(lock, next, [this] { return isEnding_ || isForgotten_ || !isWanted(); });
    }
    lock.unlock();
    follower.close();
    pending_.clear();
    CBDetachThread(broker_, context_);
}
