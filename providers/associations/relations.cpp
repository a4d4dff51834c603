#include "associations/relations.h"

#include "associations/association.h"

#include <algorithm>
#include <cctype>
#include <string>

namespace associations {
namespace {

// Returns what follows the first `separator`; nothing without one.
std::string_view after(std::string_view text, char separator) {
    const auto place = text.find(separator);
    return place != std::string_view::npos ? text.substr(place + 1) : std::string_view();
}

std::string_view interfaceOfPort(std::string_view port) {
    const std::string_view rest = after(port, ':');
    return rest.substr(0, rest.find(':'));
}

std::string_view interfaceOfLanEndpoint(std::string_view endpoint) {
    return after(endpoint, '-');
}

std::string_view interfaceAndVersion(std::string_view endpoint) {
    const auto star = endpoint.rfind('*');
    return star != std::string_view::npos ? endpoint.substr(star + 1) : std::string_view();
}

std::string_view interfaceOfIpEndpoint(std::string_view endpoint) {
    const std::string_view rest = interfaceAndVersion(endpoint);
    return rest.substr(0, rest.rfind('-'));
}

bool isSameInterface(std::string_view first, std::string_view second) {
    return !first.empty() && first == second;
}

} // namespace

bool isEqual(std::string_view first, std::string_view second) {
    return first == second;
}

bool contains(std::string_view first, std::string_view second) {
    return !second.empty() && first.find(second) != std::string_view::npos;
}

bool portHasLanEndpoint(std::string_view port, std::string_view lanEndpoint) {
    return isSameInterface(interfaceOfPort(port), interfaceOfLanEndpoint(lanEndpoint));
}

bool lanEndpointCarriesIp(std::string_view lanEndpoint, std::string_view ipEndpoint) {
    return isSameInterface(interfaceOfLanEndpoint(lanEndpoint), interfaceOfIpEndpoint(ipEndpoint));
}

bool serviceListensAt(std::string_view service, std::string_view port) {
    const std::string_view kind = port.substr(port.rfind('-') + 1);
    if (service == "http" || service == "https") {
        if (kind != (service == "http" ? "clear" : "encrypted"))
            return false;
        service = "web";
    }
    const std::string_view rest = after(port, '-');
    return !service.empty() && rest.size() > kind.size() &&
           rest.substr(0, rest.size() - kind.size() - 1) == service;
}

bool shareAddress(std::string_view first, std::string_view second) {
    return isSameInterface(after(first, '*'), after(second, '*'));
}

bool serviceHasAccessPoint(std::string_view service, std::string_view accessPoint) {
    const auto end = service.find("ProtocolService");
    return end != std::string_view::npos && end > 0 && accessPoint.starts_with(service.substr(0, end));
}

bool portIsOfAccessPoint(std::string_view port, std::string_view accessPoint) {
    const std::string_view rest = after(port, '-');
    std::string word;
    for (const char each : rest.substr(0, rest.rfind('-')))
        if (each != '-')
            word += static_cast<char>(std::toupper(static_cast<unsigned char>(each)));
    return !word.empty() && accessPoint.starts_with(word);
}

bool sensorWatches(std::string_view description, std::string_view device) {
    constexpr std::string_view watching = " for ";
    if (device.empty() || !description.ends_with(device))
        return false;
    description.remove_suffix(device.size());
    return description.ends_with(watching);
}

bool sensorWatchesMemory(std::string_view description, std::string_view) {
    return contains(description, " for Memory Device ") || contains(description, " for Memory Module ");
}

bool endsWithTag(std::string_view description, std::string_view tag) {
    if (tag.empty() || !description.ends_with(tag))
        return false;
    description.remove_suffix(tag.size());
    return description.ends_with(' ');
}

bool isTagAtEnd(std::string_view tag, std::string_view description) {
    return endsWithTag(description, tag);
}

bool isCoreOf(std::string_view processor, std::string_view core) {
    const std::string_view id = core.substr(core.rfind(' ') + 1);
    return !processor.empty() && id.substr(0, id.rfind('.')) == processor;
}

bool listsMember(std::string_view list, std::string_view id) {
    while (!list.empty()) {
        const std::string_view first = list.substr(0, list.find(' '));
        if (first == id)
            return true;
        list.remove_prefix(std::min(first.size() + 1, list.size()));
    }
    return false;
}

bool hasCapabilities(std::string_view element, std::string_view capabilities) {
    return !element.empty() && after(capabilities, ':') == element;
}

bool isIdentityOf(std::string_view identity, std::string_view account) {
    return !account.empty() && after(identity, ':') == account;
}

bool isRoleOf(std::string_view role, std::string_view description) {
    constexpr std::string_view separator = ", ", onChannel = " on ";
    while (!role.empty() && !description.empty()) {
        if (description.starts_with(role) && description.substr(role.size()).starts_with(onChannel))
            return true;
        const auto end = description.find(separator);
        description.remove_prefix(end != std::string_view::npos ? end + separator.size()
                                                                : description.size());
    }
    return false;
}

bool realizesDevice(std::string_view tag, std::string_view device) {
    if (device.empty() || !tag.starts_with(device))
        return false;
    tag.remove_prefix(device.size());
    return tag.empty() || tag.front() == '.' || tag.front() == ':';
}

bool serviceRunsJob(std::string_view service, std::string_view job) {
    return !service.empty() && job.starts_with(service) && job.substr(service.size()).starts_with('_');
}

bool portRunsJob(std::string_view port, std::string_view job) {
    constexpr std::string_view method = "EthernetPort_RequestStateChange_";
    return job.starts_with(method) && isSameInterface(interfaceOfPort(port), job.substr(method.size()));
}

bool dhcpRunsJob(std::string_view endpoint, std::string_view job) {
    constexpr std::string_view method = "DHCPProtocolEndpoint_RequestStateChange_";
    return job.starts_with(method) &&
           isSameInterface(interfaceAndVersion(endpoint), job.substr(method.size()));
}

} // namespace associations
