// The CMPI functions that are counted and can be made to fail, by the names of their table members.
#pragma once

#include <string_view>

namespace broker {

// Call::clone and Call::release are those of every object.
// clang-format off
#define BROKER_CALLS(X) \
    X(clone) X(release) X(newInstance) X(newObjectPath) X(newArgs) X(newString) X(newArray) \
    X(newDateTime) X(newDateTimeFromBinary) X(newDateTimeFromChars) X(newSelectExp) X(classPathIsA) \
    X(toString) X(isOfType) X(getType) X(logMessage) X(trace) X(getProperty) X(getPropertyAt) \
    X(getPropertyCount) X(setProperty) X(getObjectPath) X(setPropertyFilter) X(setObjectPath) \
    X(setNameSpace) X(getNameSpace) X(setHostname) X(getHostname) X(setClassName) X(getClassName) \
    X(addKey) X(getKey) X(getKeyAt) X(getKeyCount) X(setNameSpaceFromObjectPath) \
    X(setHostAndNameSpaceFromObjectPath) X(getSize) X(getSimpleType) X(getElementAt) X(setElementAt) \
    X(addArg) X(getArg) X(getArgAt) X(getArgCount) X(addEntry) X(getEntry) X(getEntryAt) \
    X(getEntryCount) X(getCharPtr) X(getBinaryFormat) X(getStringFormat) X(isInterval) X(getString) \
    X(returnData) X(returnInstance) X(returnObjectPath) X(returnDone) X(getNext) X(hasNext) X(toArray) \
    X(prepareAttachThread) X(attachThread) X(detachThread) X(deliverIndication) X(enumerateInstances) \
    X(enumerateInstanceNames) X(getInstance) X(createInstance) X(modifyInstance) X(deleteInstance) \
    X(invokeMethod) X(associators) X(associatorNames) X(references) X(referenceNames)
// clang-format on

enum class Call {
#define BROKER_CALL_ENUMERATOR(name) name,
    BROKER_CALLS(BROKER_CALL_ENUMERATOR)
#undef BROKER_CALL_ENUMERATOR
};

constexpr std::string_view callNames[] = {
#define BROKER_CALL_NAME(name) #name,
    BROKER_CALLS(BROKER_CALL_NAME)
#undef BROKER_CALL_NAME
};

} // namespace broker
