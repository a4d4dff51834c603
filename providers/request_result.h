// The result of a request, which tells whether the library closed it: systems and Ethernet ports close that
// of their method, where it succeeds, no other class does.
#pragma once

#include <cmpidt.h>
#include <cmpift.h>

class RequestResult {
public:
    explicit RequestResult(const CMPIResult* real) : real_(real) {}
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
    // What the library calls.
    static constexpr CMPIResultFT functions() {
        CMPIResultFT table{};
        table.ftVersion = CMPICurrentVersion;
        table.returnData = forward<&CMPIResultFT::returnData, const CMPIValue*, CMPIType>;
        table.returnInstance = forward<&CMPIResultFT::returnInstance, const CMPIInstance*>;
        table.returnObjectPath = forward<&CMPIResultFT::returnObjectPath, const CMPIObjectPath*>;
        table.returnDone = returnDone;
        return table;
    }
    static CMPIResultFT table; // some versions of the headers want it changeable

    const CMPIResult* real_;
    mutable bool isClosed_ = false;
    const CMPIResult handle_{const_cast<RequestResult*>(this), &table};
};

inline CMPIResultFT RequestResult::table = functions();
