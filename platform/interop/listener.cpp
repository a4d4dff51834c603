#include "interop/listener.h"

#include "transfer/silent_peers.h"
#include "transfer/transfer.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <strings.h>

namespace interop {
namespace {

// Indications go out one after the other: one listener may not keep those of the others waiting for long.
// Their network is the BMC's management LAN, where a connection that takes seconds takes for ever.
constexpr long connectSeconds = 4;
constexpr long totalSeconds = 10;
// An export response is a few hundred bytes.
constexpr std::size_t longestAnswer = 64 * 1024;

struct Answer {
    std::string body;
    bool hasErrorHeader = false;
};

std::size_t takeBody(char* data, std::size_t size, std::size_t count, void* answer) noexcept {
    auto& body = static_cast<Answer*>(answer)->body;
    if (size * count > longestAnswer - body.size())
        return 0; // ends the transfer
    try {
        body.append(data, size * count);
    } catch (...) {
        return 0;
    }
    return size * count;
}

std::size_t takeHeader(char* data, std::size_t size, std::size_t count, void* answer) noexcept {
    static constexpr std::string_view name = "CIMError:"; // DSP0200, 6.3.5
    if (size * count >= name.size() && strncasecmp(data, name.data(), name.size()) == 0)
        static_cast<Answer*>(answer)->hasErrorHeader = true;
    return size * count;
}

// A body without an error may be anything: some listeners only take note, and say nothing.
bool hasErrorElement(const std::string& body) {
    pugi::xml_document document;
    document.load_buffer(body.data(), body.size(), pugi::parse_minimal);
    return !document
                .find_node([](const pugi::xml_node& node) { return std::strcmp(node.name(), "ERROR") == 0; })
                .empty();
}

// A destination was checked as an address and a port with a path behind them:
// "http://<address>:<port><path>". To a URL's reader a path with an '@' in it could make the two a user and a
// password, and what follows the host.
std::string withPathApart(const char* url) {
    char host[64] = "";
    int portStart = 0;
    if (std::sscanf(url, "http://%63[^:]:%n", host, &portStart) != 1 || portStart == 0)
        return url;
    char* path = nullptr;
    const long port = std::strtol(url + portStart, &path, 10);
    if (path == url + portStart)
        return url;
    const bool isApart = *path == '\0' || std::strchr("/?#", *path) != nullptr;
    return "http://" + std::string(host) + ':' + std::to_string(port) + (isApart ? "" : "/") + path;
}

// "http://<address>:<port>"
std::string peerOf(const std::string& url) {
    constexpr std::string_view separator = "://";
    const std::size_t host = url.find(separator);
    return host != std::string::npos ? url.substr(0, url.find_first_of("/?#", host + separator.size())) : url;
}

// A thread keeps its connections to listeners that keep theirs: a new one for each alert would cost more than
// the alert.
const transfer::Handle& connection() {
    constexpr const char* protocols = "http,https";
    thread_local const transfer::Handle own = transfer::make(protocols);
    transfer::renew(own, protocols);
    return own;
}

} // namespace

bool deliver(const char* url, const char* message) {
    static auto& silentListeners = *new transfer::SilentPeers; // the monitor thread sees the process end
    const std::string target = withPathApart(url);
    const std::string peer = peerOf(target);
    if (silentListeners.contains(peer))
        return false;
    Answer answer;
    transfer::Lines headers;
    headers.add("Content-Type: application/xml; charset=utf-8");
    headers.add("CIMExport: MethodRequest");
    headers.add("CIMExportMethod: ExportIndication");
    headers.add("Expect:"); // do not ask first

    const auto& http = connection();
    set(http, CURLOPT_URL, target.c_str());
    set(http, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1 + 0L);
    set(http, CURLOPT_CONNECTTIMEOUT, connectSeconds);
    set(http, CURLOPT_TIMEOUT, totalSeconds);
    set(http, CURLOPT_HTTPHEADER, headers.list());
    set(http, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(std::strlen(message)));
    set(http, CURLOPT_POSTFIELDS, message);
    set(http, CURLOPT_WRITEFUNCTION, takeBody);
    set(http, CURLOPT_WRITEDATA, &answer);
    set(http, CURLOPT_HEADERFUNCTION, takeHeader);
    set(http, CURLOPT_HEADERDATA, &answer);
    if (const CURLcode code = curl_easy_perform(http.get()); code != CURLE_OK) {
        if (transfer::hasWaited(http, code))
            silentListeners.add(peer);
        return false;
    }
    long status = 0;
    curl_easy_getinfo(http.get(), CURLINFO_RESPONSE_CODE, &status);
    return status / 100 == 2 && !answer.hasErrorHeader && !hasErrorElement(answer.body);
}

} // namespace interop
