#include "subscriptions/subscription_store.h"

#include "cimxml/cim_error.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <platform/smash_db.h>
#include <platform/sysroot.h>
#include <stdexcept>

namespace server {
namespace {

using cimxml::CimError;
using cimxml::ErrorCode;

constexpr std::uint8_t any = 0xFF;

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

// The event severity bit of a platform event filter (IPMI 2.0, table 17-2) for a DMTF PerceivedSeverity.
std::int32_t severityBit(std::uint64_t perceived) {
    constexpr std::int32_t bits[] = {0, 0x01, 0x02, 0x08, 0x04, 0, 0x10, 0x20};
    return perceived < std::size(bits) ? bits[perceived] : 0;
}

// A condition on the sensor never holds for an alert that names none.
bool selects(const CimxmlFilterRow& filter, const broker::Instance& alert) {
    int sensorType = -1, sensorNumber = -1;
    if (const auto* element = broker::find(alert.properties, "AlertingManagedElement"))
        std::sscanf(broker::toText(*element).c_str(), "%d:%d", &sensorType, &sensorNumber);
    const auto* severity = broker::find(alert.properties, "PerceivedSeverity");
    const auto* perceived = severity != nullptr ? severity->as<std::uint64_t>() : nullptr;
    const auto fits = [](std::int32_t wanted, int is) { return wanted == any || wanted == is; };
    return fits(filter.sensorType, sensorType) && fits(filter.sensorNumber, sensorNumber) &&
           (filter.severity == 0 ||
            (perceived != nullptr && (severityBit(*perceived) & filter.severity) != 0));
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

void SubscriptionStore::check(const Subscription& subscription) {
    const auto refuse = [](const std::string& text) { throw CimError(ErrorCode::InvalidParameter, text); };
    if (!broker::sameName(subscription.filter.className, "CIM_IndicationFilter"))
        refuse("Filter is no CIM_IndicationFilter");
    if (!broker::sameName(subscription.handler.className, "CIM_ListenerDestinationCIMXML"))
        refuse("Handler is no CIM_ListenerDestinationCIMXML");
    // A line of the file has a tab between the paths.
    for (const auto& [path, name] :
         {std::pair{&subscription.filter, "Filter"}, {&subscription.handler, "Handler"}})
        if (broker::toText(*path).find_first_of("\t\n") != std::string::npos)
            refuse(std::string(name) + " has a name that cannot be kept");
    const Database database;
    if (!database.filter(subscription))
        throw CimError(ErrorCode::NotFound, "Filter is not there, or none for CIM-XML listeners (its name "
                                            "has :CIMXML- in it): those of the BMC it delivers itself");
    if (!database.destination(subscription))
        throw CimError(ErrorCode::NotFound, "Handler is not there");
}

bool SubscriptionStore::add(const Subscription& subscription) {
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

std::vector<std::string> SubscriptionStore::destinationsOf(const broker::Instance& alert) {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> urls;
    const Database database;
    for (const Subscription& each : all_) {
        const auto filter = database.filter(each);
        const auto destination = database.destination(each);
        if (filter && destination && selects(*filter, alert))
            urls.emplace_back(destination->destination);
    }
    return urls;
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
