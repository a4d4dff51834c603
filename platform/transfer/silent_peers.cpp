#include "transfer/silent_peers.h"

namespace transfer {
namespace {

constexpr std::chrono::minutes rest{1};

} // namespace

bool SilentPeers::contains(const std::string& peer, Clock::time_point now) {
    const std::lock_guard lock(mutex_);
    const auto found = leftAloneUntil_.find(peer);
    return found != leftAloneUntil_.end() && now < found->second;
}

void SilentPeers::add(const std::string& peer, Clock::time_point now) {
    const std::lock_guard lock(mutex_);
    std::erase_if(leftAloneUntil_, [&](const auto& entry) { return entry.second <= now; });
    leftAloneUntil_[peer] = now + rest;
}

} // namespace transfer
