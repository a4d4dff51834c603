// Log-ins that are not asked for again at each request.
#pragma once

#include "http/authentication.h"

#include <array>
#include <chrono>
#include <map>
#include <memory>
#include <mutex>

namespace server {

// Remembers who logged in for a short time, by a salted digest of the password. A password that does not fit
// is answered late: guessing takes its time.
class RememberedLogins : public Authentication {
public:
    static constexpr std::chrono::seconds remembered{10}, delay{1};

    explicit RememberedLogins(std::unique_ptr<Authentication> asked);

    Access check(const std::string& user, const std::string& password) override;

private:
    using Clock = std::chrono::steady_clock;
    using Digest = std::array<unsigned char, 32>;
    struct Login {
        Access access;
        Clock::time_point end;
    };

    Digest digestOf(const std::string& user, const std::string& password) const;

    const std::unique_ptr<Authentication> asked_;
    Digest salt_{};
    std::mutex mutex_;
    std::map<Digest, Login> logins_;
};

} // namespace server
