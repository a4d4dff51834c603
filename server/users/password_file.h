// Users whose passwords are in a file.
#pragma once

#include "http/authentication.h"

namespace server {

// A line for each user: "name:hash:access". The hash is one of crypt(5), as `openssl passwd -6` makes it; the
// access is read, operate or administer. Lines with '#' are comments. The file is read at each log-in.
class PasswordFile : public Authentication {
public:
    // Throws std::runtime_error for a file that cannot be read, or has a line that is none.
    explicit PasswordFile(std::string file);

    Access check(const std::string& user, const std::string& password) override;

private:
    const std::string file_;
};

} // namespace server
