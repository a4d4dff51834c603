// Those who listen to indications, over HTTP.
#pragma once

namespace interop {

// Posts an export message. Returns whether the listener took it, with an HTTP status of 2xx and without a CIM
// error. One that kept an attempt waiting in vain less than a minute ago is not asked. Throws
// std::runtime_error.
bool deliver(const char* url, const char* message);

} // namespace interop
