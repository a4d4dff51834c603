// CMPIResult.
#include "data.h"

namespace broker {

namespace {

CMPIStatus returnData(const CMPIResult* result, const CMPIValue* value, const CMPIType type) {
    return perform(result, Call::returnData,
                   [&](auto& object) { object.content.values.push_back(valueOf(value, type)); });
}

CMPIStatus returnInstance(const CMPIResult* result, const CMPIInstance* instance) {
    return perform(result, Call::returnInstance, [&](auto& object) {
        const InstanceContent& content = objectOf(instance).content;
        object.state.usualProperties.store(content.get().properties.size(), std::memory_order_relaxed);
        if (object.content.take) {
            object.content.take(content.get());
            ++object.content.taken;
        } else {
            object.content.instances.push_back(content);
        }
    });
}

CMPIStatus returnObjectPath(const CMPIResult* result, const CMPIObjectPath* path) {
    return perform(result, Call::returnObjectPath,
                   [&](auto& object) { object.content.paths.push_back(objectOf(path).content); });
}

CMPIStatus returnDone(const CMPIResult* result) {
    return perform(result, Call::returnDone, [](auto& object) { object.content.done = true; });
}

} // namespace

const CMPIResultFT Traits<CMPIResult>::table{.ftVersion = CMPICurrentVersion,
                                             .release = release,
                                             .clone = clone,
                                             .returnData = returnData,
                                             .returnInstance = returnInstance,
                                             .returnObjectPath = returnObjectPath,
                                             .returnDone = returnDone,
                                             .returnError = unsupported};

Reply takeReply(ResultContent content) {
    Reply reply{.taken = content.taken,
                .paths = std::move(content.paths),
                .values = std::move(content.values),
                .done = content.done};
    reply.instances.reserve(content.instances.size());
    for (InstanceContent& instance : content.instances)
        reply.instances.push_back(std::move(instance).take());
    return reply;
}

Reply toReply(const CMPIResult* result) {
    return takeReply(objectOf(result).content);
}

Reply toReply(const CMPIStatus& status) {
    return {.code = status.rc, .message = toString(status.msg)};
}

} // namespace broker
