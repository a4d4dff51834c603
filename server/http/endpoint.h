// A POST with a CIM-XML message, and its answer.
#pragma once

#include "http/authentication.h"
#include "http/connection.h"
#include "operations/service.h"

#include <memory>

namespace server {

// What the access log says of a request beside what HTTP knows.
struct RequestNotes {
    std::string user, call;
};

class Endpoint {
public:
    Endpoint(Service& service, std::shared_ptr<Authentication> authentication)
        : service_(service), authentication_(std::move(authentication)) {}

    void answer(const httplib::Request& request, httplib::Response& response,
                const httplib::ContentReader& content);
    // The entry of the request that this thread answers.
    static RequestNotes& notes();

private:
    // Returns false, with the response made, for a client that may not ask.
    bool identify(const httplib::Request& request, httplib::Response& response, Caller& caller) const;

    Service& service_;
    std::shared_ptr<Authentication> authentication_;
};

} // namespace server
