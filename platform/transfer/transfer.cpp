#include "transfer/transfer.h"

#include <cerrno>

namespace transfer {

Handle make(const char* protocols) {
    // The first thread that needs it does this once. It is never undone, because other users of libcurl may
    // be in the process.
    static const CURLcode started = curl_global_init(CURL_GLOBAL_DEFAULT);
    if (started != CURLE_OK)
        throw std::runtime_error(curl_easy_strerror(started));
    Handle handle(curl_easy_init());
    if (!handle)
        throw std::runtime_error("no transfer");
    renew(handle, protocols);
    return handle;
}

void renew(const Handle& handle, const char* protocols) {
    curl_easy_reset(handle.get());
    set(handle, CURLOPT_PROTOCOLS_STR, protocols);
    set(handle, CURLOPT_FOLLOWLOCATION, 0L);
    set(handle, CURLOPT_PROXY, "");
    set(handle, CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);
    set(handle, CURLOPT_NOSIGNAL,
        1L); // the process is an object manager's, with threads and handlers of its own
    set(handle, CURLOPT_SSLVERSION, CURL_SSLVERSION_TLSv1_2 + 0L);
}

bool hasWaited(const Handle& handle, CURLcode failure) {
    long error = 0;
    curl_easy_getinfo(handle.get(), CURLINFO_OS_ERRNO, &error);
    return failure == CURLE_OPERATION_TIMEDOUT || (failure == CURLE_COULDNT_CONNECT && error != ECONNREFUSED);
}

void Lines::add(const std::string& line) {
    curl_slist* longer = curl_slist_append(list_, line.c_str());
    if (longer == nullptr)
        throw std::bad_alloc();
    list_ = longer;
}

} // namespace transfer
