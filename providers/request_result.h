// The result of a request, which tells whether the library closed it: systems and Ethernet ports close that
// of their method, where it succeeds, no other class does. What is returned has the class that was asked for,
// under the vendor's prefix too.
#pragma once

#include "cmpi_objects.h"
#include "spelling.h"

class RequestResult {
public:
    RequestResult(const CMPIBroker* broker, const CMPIObjectPath* asked, const CMPIResult* real)
        : broker_(broker),
          asked_(objects::classNameOf(asked)),
          isRenamed_(!spelling::withoutPrefix(asked_).empty()),
          real_(real) {}
    RequestResult(const RequestResult&) = delete;
    RequestResult& operator=(const RequestResult&) = delete;

    const CMPIResult* get() const { return &handle_; }
    CMPIStatus close() const { return isClosed_ ? CMPIStatus{CMPI_RC_OK, nullptr} : returnDone(&handle_); }

private:
    static const RequestResult& of(const CMPIResult* self) {
        return *static_cast<const RequestResult*>(self->hdl);
    }
    // The object manager's own functions want its own object.
    template <auto function, class... Arguments>
    static CMPIStatus forward(const CMPIResult* self, Arguments... arguments) {
        const CMPIResult* real = of(self).real_;
        return (real->ft->*function)(real, arguments...);
    }
    static CMPIStatus returnDone(const CMPIResult* self) {
        of(self).isClosed_ = true;
        return forward<&CMPIResultFT::returnDone>(self);
    }
    // Makes a path of the class that was asked for.
    objects::Owned<CMPIObjectPath> renamed(const CMPIObjectPath* path) const {
        auto copy = objects::makePath(broker_, objects::nameSpaceOf(path).c_str(), asked_.c_str());
        for (const objects::Property& key : objects::keysOf(path))
            objects::addKey(copy.get(), key.name.c_str(), key.data);
        return copy;
    }
    static CMPIStatus returnObjectPath(const CMPIResult* self, const CMPIObjectPath* path) {
        if (!of(self).isRenamed_)
            return forward<&CMPIResultFT::returnObjectPath>(self, path);
        return guarded([&] {
            return forward<&CMPIResultFT::returnObjectPath, const CMPIObjectPath*>(
                self, of(self).renamed(path).get());
        });
    }
    static CMPIStatus returnInstance(const CMPIResult* self, const CMPIInstance* instance) {
        if (!of(self).isRenamed_)
            return forward<&CMPIResultFT::returnInstance>(self, instance);
        return guarded([&] {
            const auto path = of(self).renamed(objects::pathOf(instance));
            const auto copy = objects::makeInstance(of(self).broker_, path.get());
            for (const objects::Property& each : objects::propertiesOf(instance))
                objects::setProperty(copy.get(), each.name.c_str(), each.data);
            return forward<&CMPIResultFT::returnInstance, const CMPIInstance*>(self, copy.get());
        });
    }
    // The library expects a status, not an exception.
    template <class Call>
    static CMPIStatus guarded(Call call) {
        try {
            return call();
        } catch (const std::exception&) {
            return {CMPI_RC_ERR_FAILED, nullptr};
        }
    }
    // The functions that the library calls.
    static constexpr CMPIResultFT functions() {
        CMPIResultFT table{};
        table.ftVersion = CMPICurrentVersion;
        table.returnData = forward<&CMPIResultFT::returnData, const CMPIValue*, CMPIType>;
        table.returnInstance = returnInstance;
        table.returnObjectPath = returnObjectPath;
        table.returnDone = returnDone;
        return table;
    }
    static CMPIResultFT table; // some versions of the headers want it changeable

    const CMPIBroker* broker_;
    const std::string asked_; // class
    const bool isRenamed_;
    const CMPIResult* real_;
    mutable bool isClosed_ = false;
    const CMPIResult handle_{const_cast<RequestResult*>(this), &table};
};

inline CMPIResultFT RequestResult::table = functions();
