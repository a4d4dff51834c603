#include "http/endpoint.h"

#include "cimxml/cim_error.h"

#include <algorithm>
#include <charconv>
#include <openssl/evp.h>

namespace server {
namespace {

using cimxml::BadRequest;

struct ClientIsGone : std::exception {};

constexpr const char* xmlType = "application/xml; charset=\"utf-8\"";

struct Credentials {
    std::string user, password;

    ~Credentials() { explicit_bzero(password.data(), password.size()); }
};

// Reads an Authorization header; false for another scheme, or for what is none.
bool readCredentials(const std::string& header, Credentials& credentials) {
    constexpr std::string_view scheme = "Basic ";
    if (!broker::sameName(header.substr(0, scheme.size()), scheme))
        return false;
    const std::string coded = header.substr(header.find_last_of(' ') + 1);
    std::string text(coded.size(), '\0');
    const int size =
        EVP_DecodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                        reinterpret_cast<const unsigned char*>(coded.data()), static_cast<int>(coded.size()));
    const auto padding = static_cast<std::size_t>(std::count(coded.begin(), coded.end(), '='));
    if (size < 0 || static_cast<std::size_t>(size) < padding)
        return false;
    text.resize(static_cast<std::size_t>(size) - padding);
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos)
        return false;
    credentials.user = text.substr(0, colon);
    credentials.password = text.substr(colon + 1);
    explicit_bzero(text.data(), text.size());
    return true;
}

// A name or an address, with or without a port: it becomes part of paths.
bool isHost(const std::string& host) {
    return !host.empty() && host.size() <= 261 &&
           host.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-_:[]") ==
               std::string::npos;
}

bool isLoopback(const std::string& host) {
    for (const char* name : {"localhost", "127.", "[::1]"})
        if (host.starts_with(name))
            return true;
    return false;
}

// Returns the names of a message's calls, as far as a line has place.
std::string describe(const cimxml::Message& message) {
    std::string text;
    for (const cimxml::Call& call : message.calls) {
        text += (text.empty() ? "" : ",") + call.name;
        if (text.size() > 80)
            return text.substr(0, 80) + "…";
    }
    return text;
}

void refuse(httplib::Response& response, int status, const char* cimError, const std::string& text) {
    response.status = status;
    if (cimError != nullptr)
        response.set_header("CIMError", cimError);
    response.set_content(text + "\n", "text/plain; charset=utf-8");
}

// Checks headers that a page in somebody's browser cannot send, and that have to agree with the message.
void checkHeaders(const httplib::Request& request, const cimxml::Message* message) {
    const auto mismatch = [](const std::string& text) { throw BadRequest(400, "header-mismatch", text); };
    if (message == nullptr) {
        if (!broker::sameName(request.get_header_value("CIMOperation"), "MethodCall"))
            mismatch("the header CIMOperation is not MethodCall");
        const std::string type = request.get_header_value("Content-Type");
        if (!type.starts_with("application/xml") && !type.starts_with("text/xml"))
            mismatch("the header Content-Type is not application/xml");
        return;
    }
    const std::string method = request.get_header_value("CIMMethod");
    if (!message->isMultiple && !method.empty() &&
        !broker::sameName(httplib::detail::decode_url(method, false), message->calls.front().name))
        mismatch("the header CIMMethod is another method than the message's");
}

// Prometheus says how long it waits. The answer has to be there a little earlier.
std::chrono::milliseconds patienceOf(const httplib::Request& request) {
    using std::chrono::milliseconds;
    constexpr double margin = 500, longest = 3'600'000;
    const std::string header = request.get_header_value("X-Prometheus-Scrape-Timeout-Seconds");
    double seconds = 0;
    const auto [end, error] = std::from_chars(header.data(), header.data() + header.size(), seconds);
    if (error != std::errc{} || !(seconds > 0))
        return milliseconds::max();
    const double whole = std::min(seconds * 1000, longest);
    return milliseconds(static_cast<std::int64_t>(std::max(whole - margin, whole / 2)));
}

} // namespace

RequestNotes& Endpoint::notes() {
    static thread_local RequestNotes notes;
    return notes;
}

bool Endpoint::identify(const httplib::Request& request, httplib::Response& response, Caller& caller) const {
    caller.address = request.remote_addr;
    caller.host = request.get_header_value("Host");
    if (!isHost(caller.host))
        caller.host = "localhost";
    if (authentication_ == nullptr) {
        caller.access = Access::Administer;
        // A foreign name for this machine is that of somebody's page, not of a client here.
        if (isLoopback(caller.host))
            return true;
        refuse(response, 403, nullptr, "Without authentication this server is called localhost");
        return false;
    }
    Credentials credentials;
    if (readCredentials(request.get_header_value("Authorization"), credentials)) {
        caller.user = credentials.user;
        notes().user = caller.user;
        caller.access = authentication_->check(credentials.user, credentials.password);
        if (caller.access != Access::None)
            return true;
    }
    response.set_header("WWW-Authenticate", "Basic realm=\"cimom\"");
    refuse(response, 401, nullptr, "A user's name and password are needed");
    return false;
}

void Endpoint::answerMetrics(const httplib::Request& request, httplib::Response& response) const {
    Caller caller;
    if (!identify(request, response, caller))
        return;
    const bool isOpenMetrics =
        request.get_header_value("Accept").find("application/openmetrics-text") != std::string::npos;
    response.set_content(
        metrics_(isOpenMetrics ? MetricsFormat::OpenMetrics : MetricsFormat::Prometheus, patienceOf(request)),
        isOpenMetrics ? "application/openmetrics-text; version=1.0.0; charset=utf-8"
                      : "text/plain; version=0.0.4; charset=utf-8");
}

void Endpoint::answer(const httplib::Request& request, httplib::Response& response,
                      const httplib::ContentReader& content) {
    std::string body;
    const auto append = [&](const char* data, std::size_t size) {
        body.append(data, size);
        return true;
    };
    Caller caller;
    if (!content(append) || !identify(request, response, caller)) // the response says why
        return;
    try {
        checkHeaders(request, nullptr);
        auto message = std::make_shared<const cimxml::Message>(cimxml::readMessage(body));
        notes().call = describe(*message);
        checkHeaders(request, message.get());
        response.set_header("CIMOperation", "MethodResponse");
        const auto write = [this, message, caller](const cimxml::XmlWriter::Sink& sink) {
            cimxml::XmlWriter xml(sink);
            cimxml::writeMessage(xml, *message,
                                 [&](const cimxml::Call& call) { return service_.answer(call, caller); });
        };
        if (request.version == "HTTP/1.0") {
            std::string text;
            write([&](std::string_view part) { text += part; });
            response.set_content(text, xmlType);
            return;
        }
        response.set_chunked_content_provider(xmlType, [write](std::size_t, httplib::DataSink& sink) {
            try {
                write([&](std::string_view part) {
                    if (!sink.write(part.data(), part.size()))
                        throw ClientIsGone();
                });
                sink.done();
                return true;
            } catch (const std::exception&) {
                return false; // the answer ends without its last part, which the client notices
            }
        });
    } catch (const BadRequest& error) {
        refuse(response, error.status, error.error, error.what());
    }
}

} // namespace server
