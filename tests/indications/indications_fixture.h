// Requests to the classes of indications, on a virtual BMC and an empty database.
#pragma once

#include "managed_bmc.h"

#include <provider_helper/indications.h>

#include <cstring>
#include <functional>
#include <gmock/gmock.h>
#include <map>

using Bytes = std::vector<std::uint8_t>;

inline constexpr const char* filterClass = "CIM_IndicationFilter";
inline constexpr const char* cimxml = "CIM_ListenerDestinationCIMXML";
inline constexpr const char* smtp = "CIM_ListenerDestinationSMTP";
inline constexpr const char* snmp = "CIM_ListenerDestinationSNMP";

class Indications : public ManagedBmc {
protected:
    const ClassRequests& requests(const broker::ObjectPath& object) const {
        return classes.at(object.className);
    }
    // The answer's data to a message, which has to succeed.
    Bytes ask(ipmi::CommandCode command, const Bytes& request) const;

    // A path with the four keys of this BMC's settings.
    static broker::ObjectPath path(const std::string& className, const std::string& name);
    static broker::Instance instance(const std::string& className, const std::string& name,
                                     const broker::NamedValues& properties);
    std::vector<broker::Instance> list(const std::string& className);
    std::vector<std::string> names(const std::string& className);

    broker::Reply create(const broker::Instance& instance) {
        return requests(instance.path).create(instance);
    }
    broker::Reply modify(const broker::Instance& instance) {
        return requests(instance.path).modify(instance);
    }
    broker::Reply remove(const broker::ObjectPath& path) { return requests(path).remove(path); }

    // A row of the database; `work` gets its handle.
    static void onDatabase(const std::function<void(SMASH_DB_HANDLE)>& work);

    const std::map<std::string, ClassRequests> classes{
        {"CIM_IndicationFilter", ClassRequests(broker, PH_CLASS_FUNCTIONS(IndicationFilter))},
        {"CIM_ListenerDestinationCIMXML",
         ClassRequests(broker, PH_CLASS_FUNCTIONS(ListenerDestinationCIMXML))},
        {"CIM_ListenerDestinationSMTP", ClassRequests(broker, PH_CLASS_FUNCTIONS(ListenerDestinationSMTP))},
        {"CIM_ListenerDestinationSNMP", ClassRequests(broker, PH_CLASS_FUNCTIONS(ListenerDestinationSNMP))},
    };
};

MATCHER(Succeeds, "") {
    *result_listener << "code " << arg.code << ", message \"" << arg.message << "\"";
    return arg.code == CMPI_RC_OK && arg.message.empty();
}
