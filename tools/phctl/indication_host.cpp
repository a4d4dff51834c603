#include "indication_host.h"

#include "errors.h"
#include "libraries.h"

namespace phctl {
namespace {

constexpr const char* consequence = "alerts cannot be delivered without it";

} // namespace

void provideDelivery() {
    provideLibrary("/usr/local/lib/libinterop_provider.so", consequence);
    provideLibrary("/usr/local/lib/libEventLogDes.so", consequence);
}

void beginDelivery(broker::Broker& broker, Listening listening) {
    const broker::ObjectPath source{
        .host = {}, .nameSpace = "root/interop", .className = "CIM_AlertIndication", .keys = {}};
    const broker::Reply begun = listening == Listening::Subscribed
                                    ? broker.subscribe("select * from CIM_AlertIndication", source)
                                    : broker.enableIndications(source);
    if (!begun.ok())
        throw Failure("the indication provider refuses: " + broker::codeName(begun.code) + ' ' +
                      begun.message);
}

} // namespace phctl
