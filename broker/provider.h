// A loaded provider module.
#pragma once

#include "object.h"

#include <mutex>

namespace broker {

class Provider {
public:
    Provider(State& state, const std::string& file, const std::string& name,
             std::vector<std::string> classes);
    ~Provider();
    Provider(const Provider&) = delete;
    Provider& operator=(const Provider&) = delete;

    bool serves(std::string_view className) const;
    bool associates() const { return associations_ != nullptr; }

    // Runs the request as CMPI calls of a new frame.
    Reply execute(const Request& request, const NamedValues& entries) const;
    // Tells that somebody listens to indications, or no longer does. Only the first listener makes the
    // module's indication provider.
    Reply enable(const NamedValues& entries);
    Reply listen(bool begin, const std::string& query, const ObjectPath& source, const NamedValues& entries);

private:
    void* entryPoint(const std::string& provider, const char* kind) const;
    bool provides(const char* kind) const;
    template <class MI>
    MI* create(const char* kind, const CMPIContext* context);
    CMPIIndicationMI* indicationProvider(const CMPIContext* context);
    CMPIStatus run(const Request& request, const CMPIContext* context, const CMPIResult* result,
                   CMPIArgs* out) const;
    // The keys as a strict broker hands them over.
    ObjectPath pathFor(const Request& request) const;
    PropertyList propertiesFor(const Request& request) const;
    CMPIStatus callInstance(const Request& request, const CMPIContext* context,
                            const CMPIResult* result) const;
    CMPIStatus callAssociation(const Request& request, const CMPIContext* context,
                               const CMPIResult* result) const;
    CMPIStatus callMethod(const Request& request, const CMPIContext* context, const CMPIResult* result,
                          CMPIArgs* out) const;

    State& state_;
    std::string name_;
    std::vector<std::string> classes_;
    void* module_;
    CMPIInstanceMI* instances_ = nullptr;
    CMPIMethodMI* methods_ = nullptr;
    CMPIAssociationMI* associations_ = nullptr;
    std::mutex listening_;
    CMPIIndicationMI* indications_ = nullptr;
};

} // namespace broker
