// Services of redirection that are services of the BMC: KVM, media and USB.
#pragma once

#include "redirection/media_services.h"
#include "redirection/redirection_service.h"
#include "Utility/requests/request_texts.h"

namespace ph::redirection {

// Fills what follows from the record's Name. Returns -1 for a name that none of the class has.
int fillService(const char* className, IPMI20_SESSION_T* session, RedirectionServiceRecord& record);

struct ServiceClass {
    const char* name;
    int (*fill)(IPMI20_SESSION_T* session, RedirectionServiceRecord* record);
};

// Makes the definition of such a class.
template <const ServiceClass& serviceClass>
constexpr ClassDefinition<RedirectionServiceRecord> define(const char* superclass,
                                                           std::span<const char* const> keys) {
    return {.name = serviceClass.name,
            .superclass = superclass,
            .source = "Get Service Configuration (OEM)",
            .keys = keys,
            .properties = serviceProperties,
            .enumerate = [](RecordArray<RedirectionServiceRecord>& services, Detail detail) {
                return enumerateRows(serviceRows(), serviceClass.name, serviceClass.fill, services, detail);
            }};
}

} // namespace ph::redirection
