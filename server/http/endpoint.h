// What the server answers: a POST with a CIM-XML message, and a GET of metrics.
#pragma once

#include "http/authentication.h"
#include "http/connection.h"
#include "http/metrics.h"
#include "operations/service.h"

#include <memory>

namespace server {

// What the access log says of a request beside what HTTP knows.
struct RequestNotes {
    std::string user, call;
};

class Endpoint {
public:
    Endpoint(Service& service, std::shared_ptr<Authentication> authentication, Metrics metrics)
        : service_(service), authentication_(std::move(authentication)), metrics_(std::move(metrics)) {}

    void answer(const httplib::Request& request, httplib::Response& response,
                const httplib::ContentReader& content);
    void answerMetrics(const httplib::Request& request, httplib::Response& response) const;
    // The entry of the request that this thread answers.
    static RequestNotes& notes();

private:
    // Returns false, with the response made, for a client that may not ask.
    bool identify(const httplib::Request& request, httplib::Response& response, Caller& caller) const;

    Service& service_;
    std::shared_ptr<Authentication> authentication_;
    Metrics metrics_;
};

} // namespace server
