#include "firmware/http_image.h"

#include "transfer/transfer.h"

#include <unistd.h>

namespace {

constexpr long connectSeconds = 10;
constexpr long stallSeconds = 20; // without a byte
constexpr long okStatus = 200;

struct Target {
    int file;
    std::uint64_t room;
};

std::size_t take(char* bytes, std::size_t size, std::size_t count, void* context) {
    auto& target = *static_cast<Target*>(context);
    const std::size_t length = size * count;
    if (length > target.room)
        return 0; // ends the transfer
    target.room -= length;
    for (std::size_t written = 0; written < length;) {
        const ssize_t part = write(target.file, bytes + written, length - written);
        if (part <= 0)
            return 0;
        written += static_cast<std::size_t>(part);
    }
    return length;
}

void fetch(const char* url, int file, std::uint32_t largest, int timeout) {
    Target target{file, largest};
    const auto http = transfer::make("http");
    set(http, CURLOPT_URL, url);
    set(http, CURLOPT_FAILONERROR, 1L);
    set(http, CURLOPT_CONNECTTIMEOUT, connectSeconds);
    set(http, CURLOPT_TIMEOUT, timeout + 0L);
    set(http, CURLOPT_LOW_SPEED_LIMIT, 1L);
    set(http, CURLOPT_LOW_SPEED_TIME, stallSeconds);
    set(http, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(largest));
    set(http, CURLOPT_WRITEFUNCTION, take);
    set(http, CURLOPT_WRITEDATA, &target);
    if (const CURLcode code = curl_easy_perform(http.get()); code != CURLE_OK)
        throw std::runtime_error(curl_easy_strerror(code));
    long status = 0;
    curl_easy_getinfo(http.get(), CURLINFO_RESPONSE_CODE, &status);
    if (status != okStatus) // as a redirection, which is not followed
        throw std::runtime_error("the server gives no file");
}

} // namespace

int PH_FetchOverHttp(const char* url, int file, std::uint32_t largest, int timeout) {
    try {
        fetch(url, file, largest, timeout);
        return 0;
    } catch (...) {
        return -1;
    }
}
