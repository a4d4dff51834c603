// The objects that are served: those of the provider modules and the server's own.
#pragma once

#include "broker/broker.h"
#include "operations/caller.h"
#include "operations/request_origin.h"

#include <memory>
#include <vector>

namespace server {

// A class whose instances the server itself has.
class OwnClass {
public:
    explicit OwnClass(const char* className) : className_(className) {}
    virtual ~OwnClass() = default;
    // Answers requests on the class and its instances, but not on their associations.
    bool answers(const broker::Request& request) const;
    // Throws CimError.
    virtual broker::Reply execute(const broker::Request& request, const Caller& caller) = 0;

protected:
    const char* const className_;
};

class Objects {
public:
    explicit Objects(broker::Broker& broker) : broker_(broker) {}
    void add(std::unique_ptr<OwnClass> own) { own_.push_back(std::move(own)); }

    // Paths come with host and namespace. Throws CimError for what failed.
    broker::Reply execute(broker::Request request, const Caller& caller);

private:
    broker::Reply ask(const broker::Request& request, const Caller& caller);
    bool isOfNothing(const broker::Request& request, const broker::Reply& reply, const Caller& caller);

    broker::Broker& broker_;
    RequestOrigin origin_;
    std::vector<std::unique_ptr<OwnClass>> own_;
};

// Whether two paths of a class have the same keys, in any order.
bool isSameInstance(const broker::ObjectPath& left, const broker::ObjectPath& right);

} // namespace server
