// CIM_ListenerDestinationCIMXML: listeners that indications are posted to, kept in the database.
#include "indications/listener_destination.h"
#include "Utility/requests/request_texts.h"

#include <arpa/inet.h>
#include <cstdio>
#include <cstdlib>
#include <string_view>

constexpr const char* const g_ListenerDestinationCIMXMLKeyList[4] = {
    "SystemCreationClassName", "CreationClassName", "SystemName", "Name"};

namespace ph::listener_destination_cimxml {
namespace {

using namespace indications;
using Record = ListenerDestinationRecord;

constexpr const char* className = "CIM_ListenerDestinationCIMXML";
constexpr std::uint16_t cimxml = 2; // DMTF Protocol

constexpr const char* invalidName = "Empty/Invalid value for property 'Name' - Valid Format CIMXML-[ID]";
constexpr const char* invalidDestination = "Empty/Invalid value for property 'Destination'";

int add(RecordArray<Record>& destinations, const char* systemName, const CimxmlDestinationRow& row,
        Detail detail) {
    Record* destination = append(destinations, className, systemName, row.name);
    if (destination == nullptr)
        return -1;
    return detail == Detail::Names ? 0 : PH_Fill_ListenerDestinationCIMXML(&row, destination);
}

int enumerate(RecordArray<Record>& destinations, Detail detail) {
    char systemName[256] = "";
    Rows<CimxmlDestinationRow> rows;
    if (PH_GetSPSystemName(systemName) != 0 || !rows.read(db_get_all_listener_destination))
        return -1;
    for (const CimxmlDestinationRow& row : rows.all())
        if (add(destinations, systemName, row, detail) != 0)
            return -1;
    return 0;
}

CimxmlDestinationRow makeRow(const char* name, const char* destination) {
    CimxmlDestinationRow row{};
    copyText(row.name, name);
    copyText(row.destination, destination);
    return row;
}

bool isStored(const Database& database, const char* name, CimxmlDestinationRow& row) {
    row = makeRow(name, "");
    return db_get_listener_destination(database.get(), &row) == 0;
}

int get(RecordArray<Record>& destinations, CMPIString** keyValues) {
    char systemName[256] = "";
    Database database;
    CimxmlDestinationRow row;
    const char* const name = CMGetCharsPtr(keyValues[nameKey], nullptr);
    if (name == nullptr || PH_GetSPSystemName(systemName) != 0 || !database.open() ||
        !isStored(database, name, row))
        return -1;
    return add(destinations, systemName, row, Detail::All);
}

// The new destination of a request; nullptr for one that nothing can be posted to.
const char* destinationOf(const Request& request) {
    const char* const destination = propertyText(request.instance, "Destination");
    return ValidateCIMXMLDestination(destination) == 0 ? destination : nullptr;
}

CMPIStatus create(const Request& request) {
    KeyValues keys;
    if (!readKeys(request, g_ListenerDestinationCIMXMLKeyList, keys))
        return fail(request.broker, destinationKeysMissing);
    if (ValidateConstantKeyPropertiesLDCIMXML(request.ref) != 0)
        return fail(request.broker, CMPI_RC_ERR_INVALID_PARAMETER, destinationKeysInvalid);
    const char* const name = propertyText(request.instance, "Name");
    if (name == nullptr || !std::string_view(name).starts_with("CIMXML-"))
        return fail(request.broker, invalidName);
    const char* const destination = destinationOf(request);
    if (destination == nullptr)
        return fail(request.broker, invalidDestination);
    Database database;
    CimxmlDestinationRow row;
    if (!fits(row.name, name) || !fits(row.destination, destination) || !database.open())
        return fail(request.broker, destinationNotCreated);
    if (isStored(database, name, row))
        return fail(request.broker, "Instance already exists");
    row = makeRow(name, destination);
    return db_set_listener_destination(database.get(), &row) == 0
               ? returnPath(request)
               : fail(request.broker, destinationNotCreated);
}

CMPIStatus modify(const Request& request) {
    KeyValues keys;
    if (!readKeys(request, g_ListenerDestinationCIMXMLKeyList, keys))
        return fail(request.broker, destinationKeysMissing);
    const auto stored = find(PH_Get_ListenerDestinationCIMXML, keys);
    if (stored == nullptr)
        return fail(request.broker, destinationUnknown);
    const char* const destination = destinationOf(request);
    if (destination == nullptr)
        return fail(request.broker, CMPI_RC_ERR_NOT_SUPPORTED, invalidDestination);
    const CimxmlDestinationRow row = makeRow(stored->Name, destination);
    Database database;
    return fits(row.destination, destination) && database.open() &&
                   db_set_listener_destination(database.get(), &row) == 0
               ? success
               : fail(request.broker, destinationNotSet);
}

CMPIStatus remove(const Request& request) {
    KeyValues keys;
    if (!readKeys(request, g_ListenerDestinationCIMXMLKeyList, keys))
        return fail(request.broker, destinationKeysMissing);
    const auto stored = find(PH_Get_ListenerDestinationCIMXML, keys);
    if (stored == nullptr)
        return fail(request.broker, destinationUnknown);
    Database database;
    return database.open() && db_delete_listener_destination(database.get(), stored->Name) == 0
               ? success
               : fail(request.broker, destinationNotDeleted);
}

constexpr ClassDefinition<Record> definition{.name = className,
                                             .superclass = "CIM_ListenerDestination",
                                             .source = "table cimxml_destination",
                                             .keys = g_ListenerDestinationCIMXMLKeyList,
                                             .properties = destinationProperties,
                                             .enumerate = enumerate,
                                             .get = get,
                                             .modify = modify,
                                             .create = create,
                                             .remove = remove};

bool isAddress(const char* text) {
    in6_addr address; // holds an IPv4 address too
    return inet_pton(AF_INET, text, &address) == 1 || inet_pton(AF_INET6, text, &address) == 1;
}

} // namespace
} // namespace ph::listener_destination_cimxml

int PH_Fill_ListenerDestinationCIMXML(const CimxmlDestinationRow* row, ListenerDestinationRecord* record) {
    ph::indications::fillDestination(*record, "CIMXML WBEM Destination", row->destination,
                                     ph::listener_destination_cimxml::cimxml);
    return 0;
}

int ValidateConstantKeyPropertiesLDCIMXML(const CMPIObjectPath* ref) {
    return ph::indications::hasConstantKeys(ref, ph::listener_destination_cimxml::className) ? 0 : -1;
}

int ValidateCIMXMLDestination(const char* url) {
    char host[64] = "";
    int port = 0; // where it begins
    if (url == nullptr || std::sscanf(url, "http://%63[^:]:%n", host, &port) != 1 || port == 0)
        return -1;
    char* end = nullptr;
    (void)std::strtol(url + port, &end, 10);
    return end != url + port && ph::listener_destination_cimxml::isAddress(host) ? 0 : -1;
}

PH_EXPORT_CLASS_FAMILY(ListenerDestinationCIMXML, ListenerDestinationRecord,
                       ph::listener_destination_cimxml::definition)
