// Answers the calls of CIM-XML messages.
#pragma once

#include "cimxml/message_writer.h"
#include "operations/objects.h"
#include "operations/open_enumerations.h"

namespace server {

// Its answer is virtual for the library that serves it (http/http_library.h).
class Service {
public:
    virtual ~Service() = default;
    explicit Service(broker::Broker& broker) : objects_(broker) {}
    void add(std::unique_ptr<OwnClass> own) { objects_.add(std::move(own)); }

    // Several threads may call it at once.
    virtual cimxml::Response answer(const cimxml::Call& call, const Caller& caller);

private:
    cimxml::Body run(const cimxml::Call& call, const Caller& caller);
    cimxml::Body runIntrinsic(const std::string& name, const cimxml::IntrinsicCall& call,
                              const Caller& caller);

    Objects objects_;
    OpenEnumerations enumerations_;
};

} // namespace server
