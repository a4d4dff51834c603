// CMPIString, CMPIDateTime and CMPISelectExp.
#include "object.h"

namespace broker {

namespace {

const char* getCharPtr(const CMPIString* string, CMPIStatus* status) {
    return obtain(string, Call::getCharPtr, status, [](auto& object) { return object.content.c_str(); });
}

CMPIUint64 getBinaryFormat(const CMPIDateTime* time, CMPIStatus* status) {
    return obtain(time, Call::getBinaryFormat, status,
                  [](auto& object) -> CMPIUint64 { return object.content.microseconds; });
}

CMPIString* getStringFormat(const CMPIDateTime* time, CMPIStatus* status) {
    return obtain(time, Call::getStringFormat, status,
                  [](auto& object) { return make<CMPIString>(object.state, object.content.text()); });
}

CMPIBoolean isInterval(const CMPIDateTime* time, CMPIStatus* status) {
    return obtain(time, Call::isInterval, status,
                  [](auto& object) -> CMPIBoolean { return object.content.interval; });
}

CMPIString* getString(const CMPISelectExp* expression, CMPIStatus* status) {
    return obtain(expression, Call::getString, status,
                  [](auto& object) { return make<CMPIString>(object.state, object.content.query); });
}

} // namespace

const CMPIStringFT Traits<CMPIString>::table{.ftVersion = CMPICurrentVersion,
                                             .release = release,
                                             .clone = clone,
                                             .getCharPtr = getCharPtr,
                                             .newCharsCP = unsupported};

const CMPIDateTimeFT Traits<CMPIDateTime>::table{.ftVersion = CMPICurrentVersion,
                                                 .release = release,
                                                 .clone = clone,
                                                 .getBinaryFormat = getBinaryFormat,
                                                 .getStringFormat = getStringFormat,
                                                 .isInterval = isInterval};

const CMPISelectExpFT Traits<CMPISelectExp>::table{.ftVersion = CMPICurrentVersion,
                                                   .release = release,
                                                   .clone = clone,
                                                   .evaluate = unsupported,
                                                   .getString = getString,
                                                   .getDOC = unsupported,
                                                   .getCOD = unsupported,
                                                   .evaluateUsingAccessor = unsupported};

} // namespace broker
