// The monitor thread on a real pipe. A process has one, which never ends: all that it goes through is one
// test.
#include "broker/object_manager.h"
#include "delivery_fixture.h"
#include "paths.h"

#include <atomic>
#include <cmpimacs.h>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class EventMonitor : public DeliveryFixture {
protected:
    EventMonitor()
        : DeliveryFixture(R"({"users": [{"id": 3, "name": "admin", "email": "admin@example.org"}],
            "lans": [{"channel": 1, "name": "eth0"}],
            "alertDestinations": [{"channel": 1, "selector": 2, "kind": "e-mail", "user": 3}],
            "mail": {"servers": [{"channel": 1, "enabled": true, "ipv4": "192.0.2.1"}]}})") {
        sensors = {temperature("Inlet Temp")};
        platformCalls.records = false;
        PH_STAND_IN(db_get_MessageID, [](auto&&...) { return 1; });
        delivery.generate = [this](const CMPIInstance* indication, char** text) {
            const CMPIData id = CMGetProperty(indication, "EventID", nullptr);
            *text = strdup(CMGetCharsPtr(id.value.string, nullptr));
            return generateResult;
        };
        delivery.send = [this](const std::string& url, const std::string& text) {
            const std::lock_guard lock(mutex);
            sent.push_back(url + ' ' + text);
        };
        delivery.mail = [this](const AlertMailRequest& mail) {
            const std::lock_guard lock(mutex);
            mails.emplace_back(mail.recipient);
        };
        SMASH_DB_HANDLE database = nullptr;
        const CimxmlDestinationRow listener{"CIMXML-7", "http://192.0.2.1:5988/"};
        EXPECT_EQ(db_init(&database), 0);
        EXPECT_EQ(db_set_listener_destination(database, &listener), 0);
        EXPECT_EQ(db_close(database), 0);
    }
    static void writeTo(int pipe, const void* message, std::size_t size) {
        ASSERT_EQ(::write(pipe, message, size), static_cast<ssize_t>(size));
    }
    static SelEventMessage event(int id, int destination = 7, int kind = SEL_EVENT_TO_CIMXML) {
        SelEventMessage message = thresholdEvent();
        message.record[0] = static_cast<std::uint8_t>(id);
        message.record[1] = static_cast<std::uint8_t>(id >> 8);
        message.destination = destination;
        message.kind = kind;
        return message;
    }
    static std::string delivered(int id) {
        char text[64];
        std::snprintf(text, sizeof text, "http://192.0.2.1:5988/ %02x", static_cast<unsigned>(id));
        return text;
    }
    std::vector<std::string> takeSent(std::size_t wanted) {
        for (int i = 0; i < 6000; ++i) {
            {
                const std::lock_guard lock(mutex);
                if (sent.size() >= wanted)
                    return std::exchange(sent, {});
            }
            std::this_thread::sleep_for(10ms);
        }
        ADD_FAILURE() << "nothing was delivered";
        return {};
    }

    std::mutex mutex;
    std::vector<std::string> sent, mails;
    int generateResult = 0;
    const std::string pipe = sysroot.place(SEL_EVENT_PIPE);
};

// What a process prints on stderr, and how it ends.
std::pair<std::string, int> inProcess(const std::function<void()>& work) {
    int ends[2];
    EXPECT_EQ(::pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDERR_FILENO);
        work();
        _exit(3);
    }
    close(ends[1]);
    std::string text;
    char buffer[256];
    for (ssize_t size = 0; (size = read(ends[0], buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(size));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return {text, WIFEXITED(status) ? WEXITSTATUS(status) : -1};
}

TEST_F(EventMonitor, doesNotStartWithoutItsSurroundings) {
    // No interop library: nothing is linked, neither is the object manager.
    EXPECT_EQ(inProcess([] {
                  PH_Init_Indication();
                  ReadSELEvents_And_Deliver(nullptr);
              }),
              std::pair(std::string("QOM Linkage error - Unable to start indication monitor thread \n"), 3));
    install(paths::standInInterop, "/usr/local/lib/libinterop_provider.so");
    EXPECT_THAT(inProcess([] {
                    PH_Init_Indication(); // no broker yet
                    ReadSELEvents_And_Deliver(nullptr);
                }).first,
                HasSubstr("QOM Linkage error"));
    EXPECT_EQ(inProcess([&] {
                  const broker::ObjectManager objectManager(broker);
                  PH_Init_Indication();
                  GetHeap = [] { return static_cast<void*>(nullptr); };
                  ReadSELEvents_And_Deliver(nullptr);
              }),
              std::pair(std::string("Memory manager asociation failed  - Unable to start indication monitor "
                                    "thread \n"),
                        3));
    unlink(pipe.c_str());
    EXPECT_EQ(inProcess([] { ReadSELEvents_And_Deliver(nullptr); }), std::pair(std::string(), 3))
        << "no pipe";
    write(SEL_EVENT_PIPE, "");
    EXPECT_EQ(inProcess([] { ReadSELEvents_And_Deliver(nullptr); }), std::pair(std::string(), 3))
        << "a file in its place";
}

TEST_F(EventMonitor, endsTheProcessThatCannotHaveThePipe) {
    std::filesystem::remove(sysroot.place("/tmp"));
    EXPECT_EQ(inProcess([] { PH_Init_Indication(); }), std::pair(std::string(), 0));
}

TEST_F(EventMonitor, removesThePipe) {
    PH_Init_Indication();
    struct stat status {};
    ASSERT_EQ(stat(pipe.c_str(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
    PH_Init_Indication(); // there already
    PH_Delete_Pipe();
    EXPECT_NE(stat(pipe.c_str(), &status), 0);
}

TEST_F(EventMonitor, deliversWhateverThePipeHolds) {
    install(paths::standInInterop, "/usr/local/lib/libinterop_provider.so");
    const broker::ObjectManager objectManager(broker);
    PH_Init_Indication();
    ASSERT_NE(g_InteropLibHandle, nullptr);
    pthread_t monitor;
    ASSERT_EQ(pthread_create(&monitor, nullptr, ReadSELEvents_And_Deliver, nullptr), 0);
    const int writer = open(pipe.c_str(), O_WRONLY);
    const auto put = [&](const SelEventMessage& message) { writeTo(writer, &message, sizeof message); };
    // Each part ends with an event that is delivered: what came before is done with then.
    const auto awaitEmptyPipe = [&] {
        for (int left = 1; left > 0; std::this_thread::sleep_for(10ms))
            ASSERT_EQ(ioctl(writer, FIONREAD, &left), 0);
    };
    auto marker = [&, last = 1000]() mutable {
        put(event(++last));
        return delivered(last);
    };

    { // Destinations that are not there, kinds that are not known, and a listener that renders nothing.
        put(event(1, 8));
        put(event(2, 7, 3));
        put(event(3, 7, 0));
        put(event(4, 5, SEL_EVENT_TO_MAIL));
        const std::string end = marker();
        EXPECT_THAT(takeSent(1), ElementsAre(end));
        EXPECT_THAT(mails, IsEmpty());
    }
    { // A mail to selector 2: the low byte of what the message says.
        put(event(5, 0x102, SEL_EVENT_TO_MAIL));
        marker();
        takeSent(1);
        EXPECT_THAT(mails, ElementsAre("admin@example.org"));
    }
    { // A short message is filled up by the one before it.
        put(event(0x200));
        const std::uint8_t id[] = {0x77};
        takeSent(1);
        writeTo(writer, id, sizeof id);
        EXPECT_THAT(takeSent(1), ElementsAre(delivered(0x277)));
    }
    { // Garbage, and a writer that dies half way through its message.
        std::vector<std::uint8_t> garbage(28 * 40);
        for (std::size_t i = 0; i < garbage.size(); ++i)
            garbage[i] = static_cast<std::uint8_t>(i * 131 + (i >> 3));
        writeTo(writer, garbage.data(), garbage.size());
        const pid_t child = fork();
        if (child == 0) {
            const SelEventMessage message = event(6);
            const int own = open(pipe.c_str(), O_WRONLY);
            _exit(::write(own, &message, 9) == 9 ? 0 : 1);
        }
        int status = 1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
        // The rest of the pipe's content may be out of step until it is empty.
        awaitEmptyPipe();
        const std::string end = marker();
        while (true) {
            const auto last = takeSent(1);
            if (!last.empty() && last.back() == end)
                break;
            ASSERT_FALSE(last.empty());
        }
    }
    { // A rendering that fails, and sensors that cannot be read, cost their message only.
        generateResult = 1;
        put(event(7));
        awaitEmptyPipe();
        std::this_thread::sleep_for(50ms);
        generateResult = 0;
        const std::string end = marker();
        EXPECT_THAT(takeSent(1), ElementsAre(end));
    }
    {                               // A burst keeps its order; nothing is lost, and nothing is left behind.
        constexpr int burst = 3000; // more than a pipe holds
        const std::size_t objects = broker.liveObjects();
        std::thread burstWriter([&] {
            for (int i = 0; i < burst; ++i)
                put(event(i));
        });
        const auto all = takeSent(burst);
        burstWriter.join();
        ASSERT_EQ(all.size(), static_cast<std::size_t>(burst));
        for (int i = 0; i < burst; ++i)
            ASSERT_EQ(all[static_cast<std::size_t>(i)], delivered(i));
        for (int i = 0; i < 500 && broker.liveObjects() > objects; ++i)
            std::this_thread::sleep_for(10ms);
        EXPECT_LE(broker.liveObjects(), objects);
    }
    close(writer);
    keptFiles = 1; // the monitor's end
    PH_Delete_Pipe();
    EXPECT_NE(g_InteropLibHandle, nullptr) << "it stays open";
}

} // namespace
