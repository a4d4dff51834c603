// What clients send to the CIM-XML server's port: heads, credentials, bodies in one piece or in chunks, several
// requests in a row. Whatever comes, answers are HTTP, each input is done with in time, and the limits hold.
#include "target.h"

#include "http/http_server.h"

#include <arpa/inet.h>
#include <chrono>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

struct AnybodyReads : server::Authentication {
    server::Access check(const std::string&, const std::string&) override { return server::Access::Read; }
};

// With limits that inputs reach. It serves as long as the process lasts.
class Served {
public:
    Served() : server_(service_, options()) {
        broker_.setRouter([](const broker::Request&) { return broker::Reply{}; });
        std::thread([this] { server_.run(); }).detach();
    }
    int port() const { return server_.port(); }

    static constexpr std::size_t largest = 4096;

private:
    static server::HttpOptions options() {
        server::HttpOptions options{.port = 0, .requestSize = largest};
        options.limits = {.idle = 500ms, .request = 500ms, .write = 500ms};
        options.authentication = std::make_shared<AnybodyReads>();
        return options;
    }

    broker::Broker broker_;
    server::Service service_{broker_};
    server::HttpServer server_;
};

// All that the server answers until it closes.
std::string exchange(int port, std::string_view bytes) {
    const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    require(connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0,
            "the server takes connections");
    (void)!send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL); // it may have closed before the end
    shutdown(connection, SHUT_WR);
    std::string answer;
    char part[4096];
    for (ssize_t size; (size = recv(connection, part, sizeof part, 0)) > 0;)
        answer.append(part, static_cast<std::size_t>(size));
    close(connection);
    return answer;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Served& served = *new Served;
    const auto start = std::chrono::steady_clock::now();
    const std::string answer = exchange(served.port(), {reinterpret_cast<const char*>(data), size});
    require(std::chrono::steady_clock::now() - start < 10s, "an input is done with in time");
    require(answer.empty() || answer.starts_with("HTTP/1."), "an answer is HTTP");
    return 0;
}
