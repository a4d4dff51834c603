#include "http/http_server.h"

#include "http/connection.h"
#include "http/endpoint.h"
#include "http/tls.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <ctime>
#include <stdexcept>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace server {
namespace {

// The size of a request's head, which comes with a body of the largest size.
constexpr std::size_t headSize = 64 * 1024;
constexpr std::size_t requestsOfConnection = 10'000;

constexpr std::string_view busy =
    "HTTP/1.1 503 Service Unavailable\r\nRetry-After: 5\r\nContent-Length: 0\r\n"
    "Connection: close\r\n\r\n";

// A client's text must not make lines of its own in the log.
std::string printable(std::string text) {
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
            c = '?';
    return text.empty() ? "-" : text;
}

// The connection whose request this thread answers.
thread_local Connection* current = nullptr;
thread_local bool isTooMany = false;

// A thread for each connection, and a limit on them.
class ConnectionThreads : public httplib::TaskQueue {
public:
    explicit ConnectionThreads(std::size_t limit) : limit_(limit), pool_(limit) {}

    void enqueue(std::function<void()> serve) override {
        if (open_ >= limit_) {
            isTooMany = true;
            serve();
            isTooMany = false;
            return;
        }
        ++open_;
        pool_.enqueue([this, serve = std::move(serve)] {
            serve();
            --open_;
        });
    }
    void shutdown() override { pool_.shutdown(); }

private:
    const std::size_t limit_;
    std::atomic<std::size_t> open_{0};
    httplib::ThreadPool pool_;
};

} // namespace

class HttpServer::Listener : public httplib::Server {
public:
    Listener(Service& service, HttpOptions options)
        : options_(std::move(options)),
          endpoint_(service, options_.authentication, options_.metrics),
          stopping_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
        if (stopping_ == -1)
            throw std::runtime_error("eventfd failed");
        options_.limits.requestSize = options_.requestSize + headSize;
        set_payload_max_length(options_.requestSize);
        // The library would share the port with another server.
        set_socket_options([](int socket) {
            const int yes = 1;
            setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        });
        new_task_queue = [this] { return new ConnectionThreads(options_.connections); };
        Post("/cimom/?", [this](const httplib::Request& request, httplib::Response& response,
                                const httplib::ContentReader& content) {
            endpoint_.answer(request, response, content);
            // The library itself compares no more than a Content-Length with what a body may have.
            if (current->isTooLarge())
                response.status = 413;
        });
        if (options_.metrics)
            Get("/metrics", [this](const httplib::Request& request, httplib::Response& response) {
                endpoint_.answerMetrics(request, response);
            });
        // A client that has not logged in is not told what went wrong, as with a BMC that is asked for its
        // users.
        set_exception_handler(
            [this](const httplib::Request&, httplib::Response& response, const std::exception_ptr& problem) {
                response.status = 500;
                logProblem(problem);
            });
        // On 32-bit ARM the library's time_t is another one: nothing that takes one is called.
        set_keep_alive_max_count(requestsOfConnection);
        set_logger([this](const httplib::Request& request, const httplib::Response& response) {
            log(request, response);
            // What follows a request that was not understood, or not read to its end, is no request.
            constexpr int unread[] = {400, 413, 414};
            if (current != nullptr &&
                std::find(std::begin(unread), std::end(unread), response.status) != std::end(unread))
                current->finish();
        });
        port_ = options_.port != 0 ? (bind_to_port(options_.address, options_.port) ? options_.port : -1)
                                   : bind_to_any_port(options_.address);
        if (port_ <= 0) {
            ::close(stopping_);
            throw std::runtime_error("cannot listen at " + options_.address + " port " +
                                     std::to_string(options_.port));
        }
    }
    ~Listener() override { ::close(stopping_); }

    int port() const { return port_; }
    void answer() {
        state_ = State::Running;
        if (!isEnding_)
            listen_after_bind();
        state_ = State::Ended;
    }
    void end() {
        isEnding_ = true;
        eventfd_write(stopping_, 1);
        while (state_ == State::Running && !is_running())
            std::this_thread::sleep_for(std::chrono::milliseconds(1)); // it has not begun to listen
        stop();
    }

private:
    // This replaces the library's own, which has no deadline for a request.
    bool process_and_close_socket(int socket) override {
        try {
            serve(socket);
        } catch (...) {
            logProblem(std::current_exception());
        }
        return true;
    }

    void logProblem(const std::exception_ptr& problem) const {
        try {
            std::rethrow_exception(problem);
        } catch (const std::exception& error) {
            if (options_.log)
                options_.log(printable(error.what()));
        }
    }

    void serve(int socket) {
        if (isTooMany) {
            Connection connection(socket, stopping_, options_.limits);
            if (options_.tls == nullptr)
                connection.write(busy.data(), busy.size());
            return;
        }
        const auto connection = options_.tls != nullptr
                                    ? options_.tls->accept(socket, stopping_, options_.limits)
                                    : std::make_unique<Connection>(socket, stopping_, options_.limits);
        if (connection == nullptr)
            return;
        current = connection.get();
        for (std::size_t left = requestsOfConnection; left != 0 && connection->awaitRequest(); --left) {
            bool isClosed = false;
            Endpoint::notes() = {};
            if (!process_request(*connection, left == 1, isClosed, nullptr) || isClosed ||
                connection->isFinished())
                break;
        }
        current = nullptr;
    }

    void log(const httplib::Request& request, const httplib::Response& response) const {
        if (!options_.log || current == nullptr)
            return;
        const std::time_t now = std::time(nullptr);
        std::tm utc{};
        char time[32], end[96];
        std::strftime(time, sizeof time, "%Y-%m-%dT%H:%M:%SZ", gmtime_r(&now, &utc));
        const std::chrono::duration<double, std::milli> duration =
            std::chrono::steady_clock::now() - current->requestStart();
        std::snprintf(end, sizeof end, "%d %zu bytes %.1f ms", response.status, current->written(),
                      duration.count());
        // A request that was not understood has none of its own.
        std::string address;
        int port = 0;
        current->get_remote_ip_and_port(address, port);
        const RequestNotes& notes = Endpoint::notes();
        options_.log(std::string(time) + ' ' + address + ' ' + printable(notes.user) + ' ' +
                     printable(request.method) + ' ' + printable(request.path.substr(0, 100)) + ' ' +
                     printable(notes.call) + ' ' + end);
    }

    enum class State { New, Running, Ended };
    std::atomic<State> state_{State::New};
    std::atomic<bool> isEnding_{false};
    HttpOptions options_;
    Endpoint endpoint_;
    const int stopping_;
    int port_ = 0;
};

HttpServer::HttpServer(Service& service, HttpOptions options)
    : listener_(std::make_unique<Listener>(service, std::move(options))) {}

HttpServer::~HttpServer() = default;

int HttpServer::port() const {
    return listener_->port();
}

void HttpServer::run() {
    listener_->answer();
}

void HttpServer::stop() {
    listener_->end();
}

} // namespace server
