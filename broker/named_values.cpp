// CMPIArgs and CMPIContext.
#include "data.h"

namespace broker {

namespace {

template <class Handle, Call call>
CMPIStatus add(const Handle* values, const char* name, const CMPIValue* value, const CMPIType type) {
    return perform(values, call,
                   [&](auto& object) { set(object.content, nameOf(name), valueOf(value, type)); });
}

template <class Handle, Call call>
CMPIData get(const Handle* values, const char* name, CMPIStatus* status) {
    return obtain(values, call, status,
                  [&](auto& object) { return dataOf(object.state, object.content, name); });
}

template <class Handle, Call call>
CMPIData getAt(const Handle* values, CMPICount index, CMPIString** name, CMPIStatus* status) {
    return obtain(values, call, status,
                  [&](auto& object) { return dataAt(object.state, object.content, index, name); });
}

template <class Handle, Call call>
CMPICount count(const Handle* values, CMPIStatus* status) {
    return obtain(values, call, status,
                  [](auto& object) { return static_cast<CMPICount>(object.content.size()); });
}

} // namespace

const CMPIArgsFT Traits<CMPIArgs>::table{.ftVersion = CMPICurrentVersion,
                                         .release = release,
                                         .clone = clone,
                                         .addArg = add<CMPIArgs, Call::addArg>,
                                         .getArg = get<CMPIArgs, Call::getArg>,
                                         .getArgAt = getAt<CMPIArgs, Call::getArgAt>,
                                         .getArgCount = count<CMPIArgs, Call::getArgCount>};

const CMPIContextFT Traits<CMPIContext>::table{.ftVersion = CMPICurrentVersion,
                                               .release = release,
                                               .clone = clone,
                                               .getEntry = get<CMPIContext, Call::getEntry>,
                                               .getEntryAt = getAt<CMPIContext, Call::getEntryAt>,
                                               .getEntryCount = count<CMPIContext, Call::getEntryCount>,
                                               .addEntry = add<CMPIContext, Call::addEntry>};

} // namespace broker
