#include "operations/request_origin.h"

#include "cimxml/cim_error.h"

#include <platform/shared_file.h>

namespace server {
namespace {

constexpr const char* file = "/tmp/current_req";

// The file's two words are user and address: a name with a blank would be read as both.
bool canWrite(const Caller& caller) {
    return !caller.user.empty() && caller.user.find_first_of(" \t\r\n\v\f") == std::string::npos &&
           caller.address.find(':') == std::string::npos;
}

bool replace(const std::string& text) {
    const int descriptor = PH_OpenSharedFile(file, O_WRONLY | (text.empty() ? 0 : O_CREAT));
    if (descriptor == -1)
        return text.empty() && errno == ENOENT;
    const bool isWritten = ftruncate(descriptor, 0) == 0 &&
                           ::write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    return close(descriptor) == 0 && isWritten;
}

} // namespace

void RequestOrigin::enter(const Caller& caller) {
    const std::string text = canWrite(caller) ? caller.user + ' ' + caller.address + '\n' : "";
    std::unique_lock lock(mutex_);
    const std::uint64_t place = arrived_++;
    changed_.wait(lock, [&] { return place == next_ && (entered_ == 0 || text == current_); });
    ++next_;
    changed_.notify_all();
    if (entered_ == 0 && !replace(text) && !caller.user.empty())
        throw cimxml::CimError(cimxml::ErrorCode::Failed, std::string("cannot write ") + file);
    current_ = text;
    ++entered_;
}

void RequestOrigin::leave() {
    const std::lock_guard lock(mutex_);
    if (--entered_ == 0)
        changed_.notify_all();
}

} // namespace server
