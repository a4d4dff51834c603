#include "users/remembered_logins.h"

#include <openssl/evp.h>
#include <openssl/rand.h>
#include <stdexcept>
#include <thread>

namespace server {

RememberedLogins::RememberedLogins(std::unique_ptr<Authentication> asked) : asked_(std::move(asked)) {
    if (RAND_bytes(salt_.data(), static_cast<int>(salt_.size())) != 1)
        throw std::runtime_error("no random numbers");
}

RememberedLogins::Digest RememberedLogins::digestOf(const std::string& user,
                                                    const std::string& password) const {
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
    Digest digest{};
    const auto size = user.size(); // tells where the name ends
    if (context == nullptr || EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr) != 1 ||
        EVP_DigestUpdate(context.get(), salt_.data(), salt_.size()) != 1 ||
        EVP_DigestUpdate(context.get(), &size, sizeof size) != 1 ||
        EVP_DigestUpdate(context.get(), user.data(), user.size()) != 1 ||
        EVP_DigestUpdate(context.get(), password.data(), password.size()) != 1 ||
        EVP_DigestFinal_ex(context.get(), digest.data(), nullptr) != 1)
        throw std::runtime_error("no digest");
    return digest;
}

Access RememberedLogins::check(const std::string& user, const std::string& password) {
    const Digest digest = digestOf(user, password);
    {
        const std::lock_guard lock(mutex_);
        std::erase_if(logins_, [now = Clock::now()](const auto& entry) { return entry.second.end < now; });
        if (const auto found = logins_.find(digest); found != logins_.end())
            return found->second.access;
    }
    const Access access = asked_->check(user, password);
    if (access == Access::None) {
        std::this_thread::sleep_for(delay);
        return access;
    }
    const std::lock_guard lock(mutex_);
    logins_.insert_or_assign(digest, Login{access, Clock::now() + remembered});
    return access;
}

} // namespace server
