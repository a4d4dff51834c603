#include "subscriptions/subscription_store.h"

#include "cimxml/cim_error.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <platform/sel_record.h>
#include <platform/smash_db.h>
#include <platform/sysroot.h>
#include <stdexcept>

namespace server {
namespace {

using cimxml::CimError;
using cimxml::ErrorCode;

constexpr std::uint8_t any = 0xFF;
constexpr std::string_view handlerPrefix = "CIMXML-";

struct CloseDatabase {
    void operator()(SMASH_DB_HANDLE handle) const { db_close(handle); }
};

class Database {
public:
    Database() {
        SMASH_DB_HANDLE handle = nullptr;
        if (db_init(&handle) == 0)
            handle_.reset(handle);
    }
    template <class Row>
    std::optional<Row> find(int (*get)(SMASH_DB_HANDLE, Row*), const std::string& name) const {
        Row row{};
        if (handle_ == nullptr || name.size() >= sizeof row.name)
            return std::nullopt;
        name.copy(row.name, sizeof row.name - 1);
        return get(handle_.get(), &row) == 0 ? std::optional(row) : std::nullopt;
    }
    std::optional<CimxmlFilterRow> filter(const Subscription& subscription) const;
    std::optional<CimxmlDestinationRow> destination(const Subscription& subscription) const;
    explicit operator bool() const { return handle_ != nullptr; }

private:
    std::unique_ptr<SmashDatabase, CloseDatabase> handle_;
};

std::string nameOf(const broker::ObjectPath& path) {
    const broker::Value* name = broker::find(path.keys, "Name");
    const auto* text = name != nullptr ? name->as<std::string>() : nullptr;
    return text != nullptr ? *text : "";
}

std::optional<CimxmlFilterRow> Database::filter(const Subscription& subscription) const {
    return find(db_get_indication_filter_cimxml, nameOf(subscription.filter));
}

std::optional<CimxmlDestinationRow> Database::destination(const Subscription& subscription) const {
    return find(db_get_listener_destination, nameOf(subscription.handler));
}

std::optional<std::int32_t> destinationNumber(const broker::ObjectPath& handler) {
    const std::string name = nameOf(handler);
    std::int32_t number = 0;
    if (!name.starts_with(handlerPrefix))
        return std::nullopt;
    const char* const last = name.data() + name.size();
    const auto [end, error] = std::from_chars(name.data() + handlerPrefix.size(), last, number);
    return error == std::errc{} && end == last && number >= 0 ? std::optional(number) : std::nullopt;
}

std::string placeOf(const char* absolutePath) {
    char path[4096];
    if (PH_SysrootPath(absolutePath, path, sizeof path) != 0)
        throw std::runtime_error("PH_SYSROOT is too long");
    return path;
}

std::string storeFile() {
    return placeOf("/conf/indication_subscriptions");
}

void check(const Subscription& subscription) {
    const auto refuse = [](const std::string& text) { throw CimError(ErrorCode::InvalidParameter, text); };
    if (!broker::sameName(subscription.filter.className, "CIM_IndicationFilter"))
        refuse("Filter is no CIM_IndicationFilter");
    if (!broker::sameName(subscription.handler.className, "CIM_ListenerDestinationCIMXML") ||
        !destinationNumber(subscription.handler))
        refuse("Handler is no CIM_ListenerDestinationCIMXML of the name CIMXML-<number>");
    // A line of the file, with a tab between.
    if (broker::toText(subscription.filter).find_first_of("\t\n") != std::string::npos)
        refuse("Filter has a name that cannot be kept");
    const Database database;
    if (!database.filter(subscription))
        throw CimError(ErrorCode::NotFound, "Filter is not there, or none for CIM-XML listeners (its name "
                                            "has :CIMXML- in it): those of the BMC it delivers itself");
    if (!database.destination(subscription))
        throw CimError(ErrorCode::NotFound, "Handler is not there");
}

} // namespace

bool isSame(const Subscription& left, const Subscription& right) {
    return nameOf(left.filter) == nameOf(right.filter) && nameOf(left.handler) == nameOf(right.handler);
}

SubscriptionStore::SubscriptionStore() {
    std::ifstream file(storeFile());
    std::string line;
    while (std::getline(file, line)) {
        const std::size_t tab = line.find('\t');
        if (tab == std::string::npos)
            throw std::runtime_error(storeFile() + ": a line without two paths");
        all_.push_back(
            {broker::parseObjectPath(line.substr(0, tab)), broker::parseObjectPath(line.substr(tab + 1))});
    }
}

std::vector<Subscription> SubscriptionStore::all() {
    const std::lock_guard lock(mutex_);
    dropOrphans();
    return all_;
}

bool SubscriptionStore::add(const Subscription& subscription) {
    check(subscription);
    const std::lock_guard lock(mutex_);
    dropOrphans();
    if (std::any_of(all_.begin(), all_.end(), [&](const auto& each) { return isSame(each, subscription); }))
        return false;
    all_.push_back(subscription);
    try {
        write();
    } catch (...) {
        all_.pop_back();
        throw;
    }
    return true;
}

bool SubscriptionStore::remove(const Subscription& subscription) {
    const std::lock_guard lock(mutex_);
    const auto removed =
        std::erase_if(all_, [&](const Subscription& each) { return isSame(each, subscription); });
    if (removed != 0)
        write();
    return removed != 0;
}

std::vector<Match> SubscriptionStore::matching(const std::uint8_t (&record)[CIM_SEL_RECORD_SIZE]) {
    const std::lock_guard lock(mutex_);
    std::vector<Match> matches;
    const Database database;
    if (!PH_IsSelSystemEvent(record))
        return matches;
    for (const Subscription& each : all_) {
        const auto filter = database.filter(each);
        const auto number = destinationNumber(each.handler);
        const auto fits = [](std::int32_t wanted, std::uint8_t is) { return wanted == any || wanted == is; };
        if (filter && number && database.destination(each) &&
            fits(filter->sensorType, PH_SelSensorType(record)) &&
            fits(filter->sensorNumber, PH_SelSensorNumber(record)))
            matches.push_back({*number, static_cast<std::uint8_t>(filter->severity)});
    }
    return matches;
}

void SubscriptionStore::dropOrphans() {
    const Database database;
    if (!database)
        return; // it says nothing of what is in it
    const auto dropped = std::erase_if(all_, [&](const Subscription& each) {
        return !database.filter(each) || !database.destination(each);
    });
    if (dropped != 0)
        write();
}

void SubscriptionStore::write() const {
    const std::string name = storeFile(), next = name + ".new";
    std::ofstream file(next, std::ios::trunc);
    for (const Subscription& each : all_)
        file << broker::toText(each.filter) << '\t' << broker::toText(each.handler) << '\n';
    file.close();
    if (!file || std::rename(next.c_str(), name.c_str()) != 0)
        throw std::runtime_error("cannot write " + name);
}

} // namespace server
