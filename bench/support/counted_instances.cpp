#include "support/counted_instances.h"

#include <stdexcept>

namespace bench {

std::size_t countInstances(const broker::Broker& broker, const std::string& className,
                           EnumerateInstances enumerate) {
    std::size_t count = 0;
    CMPIResultFT table{};
    table.returnInstance = [](const CMPIResult* result, const CMPIInstance*) {
        ++*static_cast<std::size_t*>(const_cast<void*>(result->hdl));
        return CMPIStatus{CMPI_RC_OK, nullptr};
    };
    const CMPIResult result{&count, &table};
    broker::Scope request(broker);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    enumerate(broker.handle(), request.makeContext(),
              request.make(broker::parseObjectPath("root/cimv2:" + className)), nullptr, &result, &status);
    if (status.rc != CMPI_RC_OK)
        throw std::runtime_error(broker::toString(status.msg));
    return count;
}

} // namespace bench
