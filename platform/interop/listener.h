// Those who listen to indications, over HTTP.
#pragma once

namespace interop {

// Posts an export message. Whether the listener took it: with an HTTP status of 2xx, and without an error of
// CIM. Throws std::runtime_error.
bool deliver(const char* url, const char* message);

} // namespace interop
