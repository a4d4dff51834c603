// What clients read of a server before anything else: CIM_ObjectManager and CIM_Namespace in root/interop.
#pragma once

#include "operations/objects.h"

#include <string>

namespace server {

// Instances that are made when they are asked for, of one class, and that nobody changes.
class ReadOnlyClass : public OwnClass {
public:
    broker::Reply execute(const broker::Request& request, const Caller& caller) override;

protected:
    ReadOnlyClass(broker::Broker& broker, const char* className) : OwnClass(className), broker_(broker) {}
    virtual std::vector<broker::Instance> instances() const = 0;
    // Makes an instance with the class's keys and what else is given. Other properties are null.
    broker::Instance make(const broker::NamedValues& properties) const;
    // Returns the name of CIM_SPComputerSystem, which the server runs on; that of the machine where the BMC
    // does not answer.
    std::string systemName() const;

private:
    broker::Broker& broker_;
};

class ObjectManagerClass : public ReadOnlyClass {
public:
    ObjectManagerClass(broker::Broker& broker, std::string version)
        : ReadOnlyClass(broker, "CIM_ObjectManager"), version_(std::move(version)) {}

protected:
    std::vector<broker::Instance> instances() const override;

private:
    const std::string version_;
};

class NameSpaceClass : public ReadOnlyClass {
public:
    explicit NameSpaceClass(broker::Broker& broker) : ReadOnlyClass(broker, "CIM_Namespace") {}

protected:
    std::vector<broker::Instance> instances() const override;
};

} // namespace server
