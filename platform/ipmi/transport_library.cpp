#include "ipmi/transport_library.h"

#include <dlfcn.h>

namespace ipmi {

const TransportLibrary& loadTransportLibrary(const char* fileName) {
    const auto fail = [&](const std::string& reason) {
        throw TransportError("platform library " + std::string(fileName) + " cannot be loaded: " + reason);
    };
    Dl_info own{};
    if (dladdr(reinterpret_cast<const void*>(&loadTransportLibrary), &own) == 0 || own.dli_fname == nullptr)
        fail("the place of this one is unknown");
    std::string path = own.dli_fname;
    path.replace(path.rfind('/') + 1, std::string::npos, fileName);
    void* const library = dlopen(path.c_str(), RTLD_NOW);
    if (library == nullptr)
        fail(dlerror());
    const auto refuse = [&](const std::string& reason) {
        dlclose(library);
        fail(reason);
    };
    const auto* const transports = static_cast<const TransportLibrary*>(dlsym(library, "PH_IpmiTransports"));
    if (transports == nullptr)
        refuse("it has no transports");
    if (transports->version != TransportLibrary::currentVersion)
        refuse("it is of version " + std::to_string(transports->version) + ", not of " +
               std::to_string(TransportLibrary::currentVersion));
    return *transports;
}

} // namespace ipmi
