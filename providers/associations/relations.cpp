#include "associations/relations.h"

#include "associations/association.h"

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

std::string_view interfaceOfIpEndpoint(std::string_view endpoint) {
    const auto star = endpoint.rfind('*');
    if (star == std::string_view::npos)
        return {};
    const std::string_view rest = endpoint.substr(star + 1);
    return rest.substr(0, rest.rfind('-')); // the IP version follows
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

bool serviceRunsJob(std::string_view service, std::string_view job) {
    return !service.empty() && job.starts_with(service) && job.substr(service.size()).starts_with('_');
}

bool portRunsJob(std::string_view port, std::string_view job) {
    constexpr std::string_view method = "EthernetPort_RequestStateChange_";
    return job.starts_with(method) && isSameInterface(interfaceOfPort(port), job.substr(method.size()));
}

} // namespace associations
