#include "operations/open_enumerations.h"

#include "cimxml/cim_error.h"

#include <algorithm>
#include <iterator>
#include <random>

namespace server {
namespace {

using cimxml::CimError;
using cimxml::ErrorCode;

// Nobody must be able to guess the enumeration of another client.
std::string newContext() {
    std::random_device random;
    std::string context;
    for (int i = 0; i < 4; ++i) {
        char digits[9];
        std::snprintf(digits, sizeof digits, "%08x", random());
        context += digits;
    }
    return context;
}

template <class Item>
std::vector<Item> takeFrom(std::vector<Item>& all, std::size_t next, std::size_t count) {
    const auto first = all.begin() + static_cast<std::ptrdiff_t>(std::min(next, all.size()));
    const auto last =
        first + static_cast<std::ptrdiff_t>(std::min(count, static_cast<std::size_t>(all.end() - first)));
    return {std::make_move_iterator(first), std::make_move_iterator(last)};
}

} // namespace

Items OpenEnumerations::take(Enumeration& enumeration, std::size_t count) {
    Items piece{.instances = takeFrom(enumeration.items.instances, enumeration.next, count),
                .paths = takeFrom(enumeration.items.paths, enumeration.next, count)};
    enumeration.next += std::max(piece.instances.size(), piece.paths.size());
    return piece;
}

Piece OpenEnumerations::open(Items items, bool areInstances, const std::string& nameSpace,
                             const Caller& caller, std::chrono::seconds timeout, std::size_t count) {
    if (timeout > longestTimeout || timeout <= std::chrono::seconds(0))
        throw CimError(ErrorCode::InvalidOperationTimeout,
                       "OperationTimeout is 1 to " + std::to_string(longestTimeout.count()) + " seconds");
    const std::size_t size = std::max(items.instances.size(), items.paths.size());
    Enumeration enumeration{std::move(items), 0,       areInstances,          nameSpace,
                            caller.user,      timeout, Clock::now() + timeout};
    Piece piece{.items = take(enumeration, std::min(count, largestPiece)), .context = {}};
    if (enumeration.next == size)
        return piece;
    piece.context = newContext();
    const std::lock_guard lock(mutex_);
    dropExpired();
    if (all_.size() >= mostOpen)
        throw CimError(ErrorCode::ServerLimitsExceeded,
                       std::to_string(mostOpen) + " enumerations are open already");
    all_.emplace(piece.context, std::move(enumeration));
    return piece;
}

Piece OpenEnumerations::pull(const std::string& context, bool areInstances, const std::string& nameSpace,
                             const Caller& caller, std::size_t count) {
    const std::lock_guard lock(mutex_);
    const auto found = find(context, nameSpace, caller);
    Enumeration& enumeration = found->second;
    if (enumeration.areInstances != areInstances)
        throw CimError(ErrorCode::InvalidEnumerationContext, enumeration.areInstances
                                                                 ? "the enumeration is one of instances"
                                                                 : "the enumeration is one of paths");
    Piece piece{.items = take(enumeration, std::min(count, largestPiece)), .context = {}};
    if (enumeration.next == std::max(enumeration.items.instances.size(), enumeration.items.paths.size())) {
        all_.erase(found);
    } else {
        piece.context = context;
        enumeration.end = Clock::now() + enumeration.timeout;
    }
    return piece;
}

void OpenEnumerations::close(const std::string& context, const std::string& nameSpace, const Caller& caller) {
    const std::lock_guard lock(mutex_);
    all_.erase(find(context, nameSpace, caller));
}

void OpenEnumerations::dropExpired() {
    std::erase_if(all_, [now = Clock::now()](const auto& entry) { return entry.second.end < now; });
}

OpenEnumerations::All::iterator OpenEnumerations::find(const std::string& context,
                                                       const std::string& nameSpace, const Caller& caller) {
    dropExpired();
    const auto found = all_.find(context);
    if (found == all_.end() || found->second.nameSpace != nameSpace || found->second.user != caller.user)
        throw CimError(ErrorCode::InvalidEnumerationContext, "there is no open enumeration of this context");
    return found;
}

} // namespace server
