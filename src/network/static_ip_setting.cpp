// CIM_StaticIPAssignmentSettingData: the static address that clients stage before they have it applied.
#include "provider_helper/network.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"
#include "Utility/requests/changes.h"
#include "Utility/requests/request_status.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/record_fields.h"

#include <arpa/inet.h>
#include <cstdio>
#include <strings.h>

constexpr const char* const g_StaticIPAssignmentSettingDataKeyList[1] = {"InstanceID"};

namespace ph::static_ip_setting {
namespace {

using Record = StaticIPAssignmentSettingDataRecord;

constexpr const char* className = "CIM_StaticIPAssignmentSettingData";
constexpr const char* rowKey = "1";
constexpr const char* noIpv4 = "0.0.0.0";
constexpr const char* noIpv6 = "::";

// uint16 is what the DMTF class has, and what a modify request may bring back.
std::uint16_t addressType(const Record& setting) {
    return static_cast<std::uint16_t>(setting.IPv6AddressType);
}
std::uint16_t prefixLength(const Record& setting) {
    return static_cast<std::uint16_t>(setting.IPv6SubnetPrefixLength);
}

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, AddressOrigin),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, IPv4Address),
    PH_PROPERTY(Record, SubnetMask),
    PH_PROPERTY(Record, GatewayIPv4Address),
    PH_PROPERTY(Record, IPv6Address),
    PH_COMPUTED("IPv6AddressType", addressType),
    PH_COMPUTED("IPv6SubnetPrefixLength", prefixLength),
    PH_PROPERTY(Record, GatewayIPv6Address),
};

int append(RecordArray<Record>& settings, const StaticIPRow* rows, int count, Detail detail) {
    for (int i = 0; i < count; ++i) {
        Record* setting = settings.append();
        if (setting == nullptr)
            return -1;
        std::snprintf(setting->InstanceID, sizeof(setting->InstanceID), "StaticIPAssignmentSettingData%d",
                      i + 1);
        if (detail == Detail::All && PH_Fill_StaticIPAssignmentSettingData(&rows[i], setting) != 0)
            return -1;
    }
    return 0;
}

int appendStored(RecordArray<Record>& settings, SMASH_DB_HANDLE database, Detail detail, int& count) {
    StaticIPRow* rows = nullptr;
    const int result = db_get_all_static_ip_assignment_settingdata(database, &rows, &count);
    const HeapPtr<StaticIPRow> owner(rows);
    return result == 0 ? append(settings, rows, count, detail) : -1;
}

int enumerate(RecordArray<Record>& settings, Detail detail) {
    Database database;
    int count = 0;
    if (!database.open(PH_CreateSmashDBHandle) || appendStored(settings, database.get(), detail, count) != 0)
        return -1;
    if (count > 0)
        return 0;
    // Without a staged address clients need an instance that they can modify.
    return InitializeStaticIPTable(database.get()) == 0
               ? appendStored(settings, database.get(), detail, count)
               : -1;
}

// ---- Modify

enum class Form { Ipv4, Ipv6, Number };

struct Settable {
    const char* name;
    Form form;
    char (Record::*text)[64];
    std::uint32_t Record::*number;
    std::uint16_t most; // of a number
};

constexpr Settable settables[] = {
    {"IPv4Address", Form::Ipv4, &Record::IPv4Address, nullptr, 0},
    {"SubnetMask", Form::Ipv4, &Record::SubnetMask, nullptr, 0},
    {"GatewayIPv4Address", Form::Ipv4, &Record::GatewayIPv4Address, nullptr, 0},
    {"IPv6Address", Form::Ipv6, &Record::IPv6Address, nullptr, 0},
    {"IPv6AddressType", Form::Number, nullptr, &Record::IPv6AddressType, 0xFFFF},
    {"IPv6SubnetPrefixLength", Form::Number, nullptr, &Record::IPv6SubnetPrefixLength, 128},
    {"GatewayIPv6Address", Form::Ipv6, &Record::GatewayIPv6Address, nullptr, 0},
};

const Settable* findSettable(const char* name) {
    for (const Settable& settable : settables)
        if (strcasecmp(settable.name, name) == 0)
            return &settable;
    return nullptr;
}

bool mayBe(const Settable& settable, const CMPIData& data) {
    if (data.state != CMPI_goodValue)
        return false;
    std::uint16_t number = 0;
    if (settable.form == Form::Number)
        return GetUINT16Value(data, &number) == 0 && number <= settable.most;
    const char* text = textOf(data);
    if (text == nullptr)
        return false;
    in6_addr address;
    return settable.form == Form::Ipv4 ? IsValidIP(text) == 0 : inet_pton(AF_INET6, text, &address) == 1;
}

// The properties that may be set, with the values they take when a request lists but does not give them.
bool makeDefaults(const CMPIBroker* broker, PHPropertyList& list) {
    for (const Settable& settable : settables) {
        AddTo_DefaultList(list.rows, settable.name, list.count);
        PHPropertyRow& row = list.rows[list.count++];
        row.type = CMPI_uint16;
        if (settable.form == Form::Number)
            continue;
        CMPIValue value{};
        value.string = CMNewString(broker, settable.form == Form::Ipv4 ? noIpv4 : noIpv6, nullptr);
        if (value.string == nullptr)
            return false;
        row.type = CMPI_string;
        std::memcpy(&row.value, &value, sizeof(row.value));
    }
    return true;
}

struct Current {
    Record* record = nullptr;
    ~Current() { PH_Clean_StaticIPAssignmentSettingData(&record, 1); }
};

bool readCurrent(const Request& request, Current& current) {
    KeyValues keyValues;
    return isOfClass(request.ref, className) &&
           keyValues.areRead(request.broker, request.ref, g_StaticIPAssignmentSettingDataKeyList) &&
           PH_Get_StaticIPAssignmentSettingData(&current.record, keyValues) == 0;
}

// Sorts out what the request changes.
bool findChanges(const Request& request, const Record& record, PHPropertyList& modifiable,
                 CMPIStatus& status) {
    const CMPIInstance* instance = PH_MakeInst_StaticIPAssignmentSettingData(
        request.broker, request.context, request.ref, nullptr, &record, 0, 2, &status);
    PHPropertyList defaults{};
    if (instance == nullptr || !makeDefaults(request.broker, defaults))
        return false;
    char refused[PH_REFUSED_NAMES_SIZE];
    if (getModifiableProperties(request.instance, instance, request.properties, &defaults, &modifiable,
                                refused) != 0) {
        status = fail(request.broker, CMPI_RC_ERR_INVALID_PARAMETER,
                      "Invalid parameter or Invalid Property(Not Settable)");
        return false;
    }
    if (*refused != '\0') {
        status = refuseProperties(request.broker, refused);
        return false;
    }
    return SIPASD_Modify_Condition(request.broker, &modifiable, &status) == 0;
}

bool store(const Record& setting) {
    Database database;
    return database.open(PH_CreateSmashDBHandle) &&
           UpdateStaticIPTable(
               database.get(), setting.IPv4Address, setting.SubnetMask, setting.GatewayIPv4Address,
               setting.IPv6Address, static_cast<int>(setting.IPv6AddressType),
               static_cast<int>(setting.IPv6SubnetPrefixLength), setting.GatewayIPv6Address) == 0;
}

CMPIStatus modify(const Request& request) {
    Current current;
    if (!readCurrent(request, current))
        return fail(request.broker, CMPI_RC_ERR_NOT_SUPPORTED, "CIM_ERR_NOT_SUPPORTED");
    CMPIStatus status{CMPI_RC_ERR_FAILED, nullptr};
    PHPropertyList modifiable{};
    if (!findChanges(request, *current.record, modifiable, status))
        return status;
    bool done = true;
    for (int i = 0; done && i < modifiable.count; ++i)
        done = SetProperty(current.record, modifiable.rows[i].name, valueOf(modifiable.rows[i])) == 0;
    return done && store(*current.record) ? success
                                          : fail(request.broker, CMPI_RC_ERR_FAILED,
                                                 "Failed in SetProperty in StaticIPAssignmentSettingData");
}

constexpr ClassDefinition<Record> definition{.name = className,
                                             .superclass = "CIM_IPAssignmentSettingData",
                                             .source = "table static_ip",
                                             .keys = g_StaticIPAssignmentSettingDataKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate,
                                             .modify = modify};

} // namespace
} // namespace ph::static_ip_setting

int PH_Fill_StaticIPAssignmentSettingData(const StaticIPRow* row,
                                          StaticIPAssignmentSettingDataRecord* record) {
    record->AddressOrigin = 3; // static
    ph::copyText(record->ElementName, "Static IP Configuration");
    ph::copyText(record->IPv4Address, row->IPv4Address);
    ph::copyText(record->SubnetMask, row->SubnetMask);
    ph::copyText(record->GatewayIPv4Address, row->GatewayIPv4Address);
    ph::copyText(record->IPv6Address, row->IPv6Address);
    record->IPv6AddressType = static_cast<uint32_t>(row->IPv6AddressType);
    record->IPv6SubnetPrefixLength = static_cast<uint32_t>(row->IPv6SubnetPrefixLength);
    ph::copyText(record->GatewayIPv6Address, row->GatewayIPv6Address);
    return 0;
}

int SIPASD_Modify_Condition(const CMPIBroker* broker, const PHPropertyList* modifiable, CMPIStatus* status) {
    for (int i = 0; i < modifiable->count; ++i) {
        const PHPropertyRow& row = modifiable->rows[i];
        const ph::static_ip_setting::Settable* settable = ph::static_ip_setting::findSettable(row.name);
        if (settable != nullptr && ph::static_ip_setting::mayBe(*settable, ph::valueOf(row)))
            continue;
        char message[128];
        std::snprintf(message, sizeof(message), "%s Parameter is Invalid",
                      settable != nullptr ? settable->name : row.name);
        ph::fail(broker, status, CMPI_RC_ERR_INVALID_PARAMETER, message);
        return -1;
    }
    return 0;
}

int SetProperty(StaticIPAssignmentSettingDataRecord* record, const char* name, CMPIData value) {
    const ph::static_ip_setting::Settable* settable = ph::static_ip_setting::findSettable(name);
    if (settable == nullptr)
        return -1;
    if (settable->form == ph::static_ip_setting::Form::Number) {
        std::uint16_t number = 0;
        if (GetUINT16Value(value, &number) != 0)
            return -1;
        record->*settable->number = number;
        return 0;
    }
    const char* text = ph::textOf(value);
    if (text == nullptr)
        return -1;
    ph::copyText(record->*settable->text, text);
    return 0;
}

int InitializeStaticIPTable(SMASH_DB_HANDLE handle) {
    StaticIPRow row{};
    ph::copyText(row.key, ph::static_ip_setting::rowKey);
    ph::copyText(row.IPv4Address, ph::static_ip_setting::noIpv4);
    ph::copyText(row.GatewayIPv4Address, ph::static_ip_setting::noIpv4);
    ph::copyText(row.SubnetMask, ph::static_ip_setting::noIpv4);
    ph::copyText(row.IPv6Address, ph::static_ip_setting::noIpv6);
    ph::copyText(row.GatewayIPv6Address, ph::static_ip_setting::noIpv6);
    return db_init_static_ip_assignment_settingdata(handle, &row) == 0 ? 0 : -1;
}

int UpdateStaticIPTable(SMASH_DB_HANDLE handle, const char* ipv4Address, const char* subnetMask,
                        const char* gatewayIPv4Address, const char* ipv6Address, int ipv6AddressType,
                        int ipv6SubnetPrefixLength, const char* gatewayIPv6Address) {
    StaticIPRow row{};
    ph::copyText(row.key, ph::static_ip_setting::rowKey);
    ph::copyText(row.IPv4Address, ipv4Address);
    ph::copyText(row.GatewayIPv4Address, gatewayIPv4Address);
    ph::copyText(row.SubnetMask, subnetMask);
    ph::copyText(row.IPv6Address, ipv6Address);
    row.IPv6AddressType = ipv6AddressType;
    row.IPv6SubnetPrefixLength = ipv6SubnetPrefixLength;
    ph::copyText(row.GatewayIPv6Address, gatewayIPv6Address);
    return db_set_static_ip_assignment_settingdata(handle, &row) == 0 ? 0 : -1;
}

PH_EXPORT_CLASS_FAMILY(StaticIPAssignmentSettingData, StaticIPAssignmentSettingDataRecord,
                       ph::static_ip_setting::definition)
