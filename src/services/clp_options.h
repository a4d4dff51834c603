// How sessions of the command-line protocol answer, as properties of a session and of what new ones begin with.
#pragma once

#include "provider_helper/service_sessions.h"
#include "Utility/engine/class_family.h"

namespace ph::clp {

template <class Record>
bool hasOptions(const void* record) {
    return static_cast<const Record*>(record)->hasOptions;
}
#define PH_CLP_PROPERTY(field)                                                                               \
    stored(#field, kindOf<decltype(CLPOptions::field)>(),                                                    \
           offsetof(Record, options) + offsetof(CLPOptions, field), hasOptions<Record>)
template <class Record>
inline constexpr Property optionProperties[] = {
    PH_CLP_PROPERTY(CurrentDefaultTarget), PH_CLP_PROPERTY(KeepTime),        PH_CLP_PROPERTY(WaitBehavior),
    PH_CLP_PROPERTY(OutputFormat),         PH_CLP_PROPERTY(OutputVerbosity), PH_CLP_PROPERTY(OutputLanguage),
    PH_CLP_PROPERTY(OutputPosition),       PH_CLP_PROPERTY(OutputOrder),     PH_CLP_PROPERTY(OutputCount),
    PH_CLP_PROPERTY(DisplayOption),
};
#undef PH_CLP_PROPERTY

// Takes options over into a record, with texts that end. NULL where nobody tells them.
template <class Record>
void setOptions(Record& record, const CLPOptions* options) {
    record.hasOptions = options != nullptr;
    if (options == nullptr)
        return;
    record.options = *options;
    for (char* last : {std::end(record.options.CurrentDefaultTarget), std::end(record.options.OutputLanguage),
                       std::end(record.options.DisplayOption)})
        last[-1] = '\0';
}

} // namespace ph::clp
