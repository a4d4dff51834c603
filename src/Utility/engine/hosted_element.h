// The two systems, and the keys that the elements they host have of them.
#pragma once

#include "Utility/values/record_fields.h"

namespace ph {

inline constexpr const char* hostClass = "CIM_HostComputerSystem";
inline constexpr const char* processorClass = "CIM_SPComputerSystem";

template <class Record>
void setHostedKeys(Record& element, const char* systemClass, const char* systemName, const char* className) {
    copyText(element.SystemCreationClassName, systemClass);
    copyText(element.SystemName, systemName);
    copyText(element.CreationClassName, className);
}

} // namespace ph
