#include "subscriptions/log_watch.h"

#include "hooks/sel_reader.h"

#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <endian.h>
#include <platform/sel_record.h>
#include <platform/sysroot.h>
#include <provider_helper/alert_delivery.h>
#include <stdexcept>

namespace server {
namespace {

constexpr std::chrono::seconds interval{1};
constexpr std::uint16_t newestRecord = 0xFFFF; // as the ID asked for

std::uint16_t idOf(const std::uint8_t (&bytes)[2]) {
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

// Nothing where there is no such record.
std::optional<CIM_SELEntry> read(hooks::SelReader& reader, std::uint16_t id) {
    CIM_SELEntry entry{};
    const std::uint8_t code = reader.read(id, entry);
    if (code == ipmi::completion::success)
        return entry;
    if (ipmi::completion::meansAbsent(code))
        return std::nullopt;
    throw std::runtime_error(ipmi::completionCodeText(code));
}

// DMTF PerceivedSeverity of an event as the library tells it; 0: it does not.
long perceivedSeverity(const SelEventMessage& message) {
    using Convert = decltype(&SelToAlert);
    static const auto convert = [] {
        char path[4096];
        void* library = PH_SysrootPath("/usr/local/lib/libProviderHelper.so", path, sizeof path) == 0
                            ? dlopen(path, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE)
                            : nullptr;
        return library != nullptr ? reinterpret_cast<Convert>(dlsym(library, "SelToAlert")) : nullptr;
    }();
    AlertRecord alert{};
    if (convert == nullptr || convert(&message, &alert, 0, 0) != 0)
        return 0;
    return std::strtol(alert.PerceivedSeverity, nullptr, 10); // "<number> (<text>)"
}

// Event severity bits of a platform event filter, by DMTF PerceivedSeverity.
std::uint8_t severityBits(long perceived) {
    constexpr std::uint8_t bits[] = {0, 0x01, 0x02, 0x08, 0x04, 0, 0x10, 0x20};
    return perceived >= 0 && perceived < static_cast<long>(std::size(bits)) ? bits[perceived] : 0;
}

std::int32_t littleEndian(std::int32_t number) {
    return static_cast<std::int32_t>(htole32(static_cast<std::uint32_t>(number)));
}

} // namespace

LogWatch::LogWatch(SubscriptionStore& store, Settings settings, Deliver deliver, Log log)
    : store_(store), settings_(std::move(settings)), deliver_(std::move(deliver)), log_(std::move(log)) {}

LogWatch::~LogWatch() {
    if (thread_.joinable()) {
        thread_.request_stop();
        wake_.notify_all();
    }
}

void LogWatch::begin() {
    const std::lock_guard lock(mutex_);
    if (thread_.joinable())
        return;
    bmc_ = ipmi::openTransport(settings_());
    hooks::SelReader reader(*bmc_);
    if (const auto newest = read(reader, newestRecord)) {
        last_.emplace();
        std::memcpy(last_->bytes, newest->record, sizeof last_->bytes);
    }
    thread_ = std::jthread([this](const std::stop_token& stop) { run(stop); });
}

void LogWatch::run(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    while (!wake_.wait_for(lock, stop, interval, [&] { return stop.stop_requested(); })) {
        std::string problem;
        try {
            look();
        } catch (const std::exception& error) {
            bmc_.reset();
            problem = error.what();
        }
        if (!problem.empty() && problem != lastProblem_)
            log_("event log: " + problem);
        lastProblem_ = problem;
    }
}

void LogWatch::look() {
    if (bmc_ == nullptr)
        bmc_ = ipmi::openTransport(settings_());
    hooks::SelReader reader(*bmc_);
    std::uint16_t next = hooks::sel::firstRecord;
    if (last_) {
        // It is followed by what is new, unless the log was cleared meanwhile.
        const auto entry = read(reader, PH_SelRecordId(last_->bytes));
        if (entry && std::memcmp(entry->record, last_->bytes, sizeof last_->bytes) == 0)
            next = idOf(entry->nextRecordId);
    }
    while (next != hooks::sel::noNextRecord) {
        const auto entry = read(reader, next);
        if (!entry)
            return;
        last_.emplace();
        std::memcpy(last_->bytes, entry->record, sizeof last_->bytes);
        next = idOf(entry->nextRecordId);
        deliver(*last_);
    }
}

void LogWatch::deliver(const Record& record) {
    for (const Match& match : store_.matching(record.bytes)) {
        SelEventMessage message{};
        std::memcpy(message.record, record.bytes, sizeof message.record);
        message.destination = littleEndian(match.destination);
        message.kind = littleEndian(SEL_EVENT_TO_CIMXML);
        if (match.severity != 0 && (severityBits(perceivedSeverity(message)) & match.severity) == 0)
            continue;
        try {
            deliver_(message);
        } catch (const std::exception& error) {
            log_(error.what()); // the others get theirs
        }
    }
}

} // namespace server
