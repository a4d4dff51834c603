// URLs of listeners. What is accepted has an address for a host, and can be posted to.
#include "target.h"

#include "provider_helper/indications.h"

#include <arpa/inet.h>
#include <string>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string url(reinterpret_cast<const char*>(data), size);
    if (ValidateCIMXMLDestination(url.c_str()) != 0)
        return 0;
    const std::string scheme = "http://";
    const std::string text = url.c_str();
    require(text.compare(0, scheme.size(), scheme) == 0, "the scheme is http");
    const std::string host = text.substr(scheme.size(), text.find(':', scheme.size()) - scheme.size());
    in_addr address{};
    require(inet_pton(AF_INET, host.c_str(), &address) == 1, "the host is an address");
    return 0;
}
