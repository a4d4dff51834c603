// Transfers over libcurl, set up alike.
#pragma once

#include <curl/curl.h>
#include <memory>
#include <stdexcept>
#include <string>

namespace transfer {

struct CloseTransfer {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
using Handle = std::unique_ptr<CURL, CloseTransfer>;

// A transfer that speaks only these protocols (libcurl's names, separated by commas), follows no
// redirections, takes no user from a URL, goes through no proxy of the environment, uses no signals, and
// trusts verified peers of TLS 1.2 and later only. Its user sets what else there is to set, time-outs above
// all. Throws std::runtime_error.
Handle make(const char* protocols);

// Makes a transfer like a new one, but for its open connections: the next one to the same peer goes over them.
void renew(const Handle& handle, const char* protocols);

// Throws std::runtime_error for an option or a value that libcurl does not take.
template <class Value>
void set(const Handle& handle, CURLoption option, Value value) {
    const CURLcode code = curl_easy_setopt(handle.get(), option, value);
    if (code != CURLE_OK)
        throw std::runtime_error(curl_easy_strerror(code));
}

// Tells whether a failed transfer waited in vain: no machine is at the address, or it does not answer. One where
// nobody listens refuses the connection at once.
bool hasWaited(const Handle& handle, CURLcode failure);

// A list of header lines or addresses.
class Lines {
public:
    Lines() = default;
    ~Lines() { curl_slist_free_all(list_); }
    Lines(const Lines&) = delete;
    Lines& operator=(const Lines&) = delete;

    void add(const std::string& line);
    curl_slist* list() const { return list_; }

private:
    curl_slist* list_ = nullptr;
};

} // namespace transfer
