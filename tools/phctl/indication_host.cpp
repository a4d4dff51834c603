#include "indication_host.h"

#include "errors.h"
#include "libraries.h"

namespace phctl {
namespace {

constexpr const char* consequence = "alerts cannot be delivered without it";
constexpr const char* query = "select * from CIM_AlertIndication";

broker::ObjectPath source() {
    return {.host = {}, .nameSpace = "root/interop", .className = "CIM_AlertIndication", .keys = {}};
}

void requireAccepted(const broker::Reply& reply) {
    if (!reply.ok())
        throw Failure("the indication provider refuses: " + broker::codeName(reply.code) + ' ' +
                      reply.message);
}

} // namespace

void provideDelivery() {
    provideLibrary("/usr/local/lib/libinterop_provider.so", consequence);
    provideLibrary("/usr/local/lib/libEventLogDes.so", consequence);
}

void beginDelivery(broker::Broker& broker, Listening listening) {
    requireAccepted(listening == Listening::Subscribed ? broker.subscribe(query, source())
                                                       : broker.enableIndications(source()));
}

void endDelivery(broker::Broker& broker) {
    requireAccepted(broker.unsubscribe(query, source()));
}

} // namespace phctl
