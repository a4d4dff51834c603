// Clients that take too long.
#include "broker/broker.h"
#include "http/http_server.h"

#include <arpa/inet.h>
#include <chrono>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

class Client {
public:
    explicit Client(int port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const timeval patience{.tv_sec = 30, .tv_usec = 0};
        setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        const int small = 4096;
        setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &small, sizeof small);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    ~Client() { close(socket_); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    bool send(std::string_view text) const {
        return ::send(socket_, text.data(), text.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(text.size());
    }
    // All until the server closes.
    std::string receive() const {
        std::string all;
        char part[4096];
        for (ssize_t size; (size = recv(socket_, part, sizeof part, 0)) > 0;)
            all.append(part, static_cast<std::size_t>(size));
        return all;
    }

private:
    const int socket_;
};

class HttpLimits : public testing::Test {
protected:
    HttpLimits() {
        broker_.setRouter([](const broker::Request& request) {
            broker::Reply reply;
            reply.instances.resize(2000, {.path = request.path, .properties = {}});
            for (broker::Instance& each : reply.instances)
                each.properties.push_back({"Name", {CMPI_string, std::string(4000, 'x')}});
            return reply;
        });
    }
    ~HttpLimits() override { server_.stop(); }

    static server::HttpOptions options() {
        server::HttpOptions options{.port = 0};
        options.limits = {.idle = 300ms, .request = 300ms, .write = 300ms};
        return options;
    }

    static std::string request() {
        const std::string body =
            R"(<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEREQ>)"
            R"(<IMETHODCALL NAME="EnumerateInstances"><LOCALNAMESPACEPATH><NAMESPACE NAME="root"/>)"
            R"(<NAMESPACE NAME="cimv2"/></LOCALNAMESPACEPATH><IPARAMVALUE NAME="ClassName">)"
            R"(<CLASSNAME NAME="Other_Class"/></IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>)";
        return "POST /cimom HTTP/1.1\r\nHost: localhost\r\nCIMOperation: MethodCall\r\n"
               "Content-Type: application/xml\r\nContent-Length: " +
               std::to_string(body.size()) + "\r\n\r\n" + body;
    }

    broker::Broker broker_;
    server::Service service_{broker_};
    server::HttpServer server_{service_, options()};
    std::jthread answering_{[this] { server_.run(); }};
};

TEST_F(HttpLimits, RequestThatDripsInIsCut) {
    const Client client(server_.port());
    const auto start = std::chrono::steady_clock::now();
    bool isOpen = true;
    for (int i = 0; i < 400 && isOpen; ++i) { // a byte each time: no pause is long
        isOpen = client.send(i == 0 ? "POST /cimom HTTP/1.1\r\nX: " : "x");
        std::this_thread::sleep_for(20ms);
    }
    EXPECT_FALSE(isOpen);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
}

TEST_F(HttpLimits, IdleConnectionIsClosed) {
    const Client client(server_.port());
    EXPECT_EQ(client.receive(), "");
}

TEST_F(HttpLimits, WhoReadsGetsAllAndWhoDoesNotIsCut) {
    const Client reader(server_.port());
    ASSERT_TRUE(reader.send(request()));
    EXPECT_THAT(reader.receive(), testing::EndsWith("</CIM>\r\n0\r\n\r\n"));

    const Client client(server_.port());
    ASSERT_TRUE(client.send(request()));
    std::this_thread::sleep_for(2s); // the answer is larger than what buffers take
    EXPECT_THAT(client.receive(), testing::Not(testing::EndsWith("0\r\n\r\n")));
}

} // namespace
