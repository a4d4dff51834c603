// The real thread on a real pipe, with a mail library and a listener of the test's.
#include "paths.h"
#include "questions.h"

#include "provider_helper/alert_delivery.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <pthread.h>
#include <semaphore.h>
#include <unistd.h>

namespace {

sem_t delivered; // to the listener
bool isMailComplete = true;

bool isEnded(const char* text, std::size_t size) {
    return std::memchr(text, '\0', size) != nullptr;
}

} // namespace

// In place of the platform's, and for the interop library that the monitor opens.
#pragma GCC visibility push(default)
extern "C" {
int smtp_mail(const AlertMailRequest* mail) {
    isMailComplete = isEnded(mail->recipient, sizeof mail->recipient) && mail->recipient[0] != '\0';
    return 0;
}
int testGenerate(const CMPIInstance*, char** text) {
    *text = strdup("alert");
    return 0;
}
int testSend(const char*, const char*) {
    return sem_post(&delivered);
}
}
#pragma GCC visibility pop

namespace hostile {
namespace {

// Real seconds.
bool isDeliveredWithin(std::time_t seconds) {
    std::timespec end{};
    clock_gettime(CLOCK_REALTIME, &end);
    end.tv_sec += seconds;
    int result = 0;
    while ((result = sem_timedwait(&delivered, &end)) != 0 && errno == EINTR) {
    }
    return result == 0;
}

SelEventMessage anyEvent(Random& random, int destination, int kind) {
    SelEventMessage message{{1, 0, 2}, destination, static_cast<std::int32_t>(random.below(3)), kind};
    for (std::size_t i = 3; i < sizeof message.record; ++i)
        message.record[i] = random.byte();
    message.record[11] = static_cast<std::uint8_t>(1 + random.below(4)); // sensors of the machine
    return message;
}

} // namespace

Subject eventMonitor(const Machine& machine) {
    sem_init(&delivered, 0, 0);
    std::filesystem::create_symlink(paths::standInInterop,
                                    machine.place("/usr/local/lib/libinterop_provider.so"));
    PH_Init_Indication();
    pthread_t thread{};
    pthread_create(&thread, nullptr, ReadSELEvents_And_Deliver, nullptr);
    const int pipe = open(machine.place(SEL_EVENT_PIPE).c_str(), O_RDWR | O_CLOEXEC);
    const auto ask = [pipe](Random& random) -> std::vector<std::string> {
        isMailComplete = true;
        const SelEventMessage messages[] = {
            anyEvent(random, static_cast<int>(random.below(4)), SEL_EVENT_TO_MAIL),
            anyEvent(random, 7, SEL_EVENT_TO_CIMXML), // the machine's listener
        };
        for (const SelEventMessage& message : messages)
            if (write(pipe, &message, sizeof message) != sizeof message)
                return {"the pipe takes no message"};
        constexpr std::time_t patience = 60;
        if (!isDeliveredWithin(patience))
            return {"the event behind a mail is not delivered"};
        return isMailComplete ? std::vector<std::string>{}
                              : std::vector<std::string>{"a mail goes to nobody"};
    };
    return {"event monitor", 1, {{"event monitor", ask, false}}};
}

} // namespace hostile
