#include "platform_calls.h"

#include <algorithm>
#include <chrono>
#include <dlfcn.h>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>

PlatformCalls platformCalls;

namespace {

// Open ones, by where the library keeps them. No container: memory may be what a test lets fail.
struct OpenSession {
    const IPMI20_SESSION_T* place = nullptr;
    IPMI20_SESSION_T session{};
};
OpenSession sessions[16];

OpenSession* entryOf(const IPMI20_SESSION_T* place) {
    auto* const entry = std::ranges::find(sessions, place, &OpenSession::place);
    return entry != std::end(sessions) ? entry : nullptr;
}

// Nothing for the session or handle, which each call has; "*" for what is written or has no end.
template <class Argument>
std::optional<std::string> textOf(Argument argument) {
    if constexpr (std::is_same_v<Argument, IPMI20_SESSION_T*> || std::is_same_v<Argument, SMASH_DB_HANDLE>)
        return std::nullopt;
    else if constexpr (std::is_same_v<Argument, const char*>)
        return argument != nullptr ? '"' + std::string(argument) + '"' : "null";
    else if constexpr (std::is_integral_v<Argument>)
        return std::to_string(argument);
    else
        return argument != nullptr ? "*" : "null";
}

template <class... Arguments>
bool fails(const char* name, Arguments... arguments) {
    if (platformCalls.records) {
        platformCalls.made.emplace_back(name);
        std::string list;
        for (const auto& argument : {textOf(arguments)...})
            if (argument)
                list += (list.empty() ? "" : ", ") + *argument;
        platformCalls.texts.push_back(name + ('(' + list + ')'));
    }
    if (++platformCalls.count != platformCalls.failing && !platformCalls.broken.contains(name))
        return false;
    return platformCalls.hasFailed = true;
}

template <class Function>
Function* real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

// The time of the call that lasts as long as this.
template <class... Arguments>
class TimeLimit {
public:
    explicit TimeLimit(const char* hook, Arguments... arguments) : hook_(hook) {
        // The log's records, and sensors that are read ahead, have the time each.
        const std::string_view name(hook);
        if (name.find("CIM_") != 0 || name == "CIM_GetSELRecords" || name == "CIM_ReadSensorsAhead")
            return;
        if constexpr (std::is_same_v<std::tuple_element_t<sizeof...(Arguments) - 1, std::tuple<Arguments...>>,
                                     int>)
            seconds_ = std::get<sizeof...(Arguments) - 1>(std::tuple(arguments...));
    }
    ~TimeLimit() {
        constexpr std::chrono::seconds lastMessage{1};
        if (seconds_ > 0 && Clock::now() - start_ > std::chrono::seconds(seconds_) + lastMessage)
            platformCalls.overdue.emplace_back(hook_);
    }
    TimeLimit(const TimeLimit&) = delete;
    TimeLimit& operator=(const TimeLimit&) = delete;

private:
    using Clock = std::chrono::steady_clock;

    const char* hook_;
    int seconds_ = 0;
    Clock::time_point start_ = Clock::now();
};

template <class Function, class... Arguments>
int forward(const char* name, int failure, Arguments... arguments) {
    if (fails(name, arguments...))
        return failure;
    const TimeLimit<Arguments...> limit(name, arguments...);
    const auto standIn = platformCalls.standIns.find(name);
    return standIn == platformCalls.standIns.end()
               ? real<Function>(name)(arguments...)
               : std::any_cast<std::function<Function>&>(standIn->second)(arguments...);
}

int openHandle(const char* name, SMASH_DB_HANDLE* handle) {
    const int result = forward<decltype(db_init)>(name, 1, handle);
    platformCalls.openHandles += result == 0;
    return result;
}

int openSession(int result, const IPMI20_SESSION_T* session) {
    if (result != 0)
        return result;
    ++platformCalls.openSessions;
    if (OpenSession* const free = entryOf(nullptr))
        *free = {session, *session};
    return result;
}

} // namespace

int PlatformCalls::closeSessions() {
    int closed = 0;
    for (OpenSession& open : sessions) {
        if (open.place == nullptr)
            continue;
        openSessions -= real<decltype(CIM_Close_Session)>("CIM_Close_Session")(&open.session) == 0;
        open = {};
        ++closed;
    }
    return closed;
}

std::vector<std::string> PlatformCalls::hooks() const {
    std::vector<std::string> called;
    std::ranges::copy_if(texts, std::back_inserter(called), [](const std::string& text) {
        return text.starts_with("CIM_") && text.find("_Session(") == text.npos;
    });
    return called;
}

#define FORWARD(name, failure, parameters, ...)                                                              \
    int name parameters {                                                                                    \
        return forward<decltype(name)>(#name, failure, __VA_ARGS__);                                         \
    }
#define OPTIONAL FORWARD
#define TEXT(name)

extern "C" {

unsigned int sleep(unsigned int seconds) {
    if (platformCalls.records)
        platformCalls.pauses.push_back(seconds);
    if (platformCalls.duringPauses)
        platformCalls.duringPauses();
    return 0;
}

int db_init(SMASH_DB_HANDLE* handle) {
    return openHandle(__func__, handle);
}
int tmp_db_init(SMASH_DB_HANDLE* handle) {
    return openHandle(__func__, handle);
}
int smash_db_init(SMASH_DB_HANDLE* handle) {
    return openHandle(__func__, handle);
}
int db_close(SMASH_DB_HANDLE handle) {
    const bool failing = fails(__func__, handle);
    const int result = real<decltype(db_close)>(__func__)(handle);
    platformCalls.openHandles -= result == 0;
    return failing ? 1 : result;
}

int CIM_Create_IPMI20_Session(IPMI20_SESSION_T* session, const char* address, uint16_t port,
                              const char* userName, const char* password, int interfaceType, int cipherSuite,
                              int workaroundFlags, int retransmission, int privilegeLevel, int timeout) {
    return openSession(forward<decltype(CIM_Create_IPMI20_Session)>(
                           __func__, -1, session, address, port, userName, password, interfaceType,
                           cipherSuite, workaroundFlags, retransmission, privilegeLevel, timeout),
                       session);
}
// One that was never opened may be closed too.
int CIM_Close_Session(IPMI20_SESSION_T* session) {
    const bool failing = fails(__func__, session);
    const int result = real<decltype(CIM_Close_Session)>(__func__)(session);
    if (OpenSession* const open = session != nullptr ? entryOf(session) : nullptr) {
        --platformCalls.openSessions;
        *open = {};
    }
    return failing ? -1 : result;
}

#include "platform_functions.inc"

} // extern "C"
