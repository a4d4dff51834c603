// A test that calls functions with CMPI objects of a broker of its own.
#pragma once

#include "cim_values.h"

#include <cmpimacs.h>
#include <gmock/gmock.h>
#include <optional>
#include <string>

inline broker::Value negative(CMPIType type, std::int64_t value) {
    return {type, value};
}

class BrokerFixture : public ::testing::Test {
protected:
    void TearDown() override {
        scope.reset();
        EXPECT_EQ(broker.liveObjects(), keptObjects);
    }

    CMPIData data(const broker::Value& value) { return scope->makeData(value); }

    broker::Broker broker;
    const CMPIBroker* handle = broker.handle();
    std::optional<broker::Scope> scope{broker};
    size_t keptObjects = 0; // that are to outlive the scope
};

// A CMPIString of a broker that gives it no text.
inline CMPIString* stringWithoutText() {
    static const CMPIStringFT table = [] {
        CMPIStringFT functions{};
        functions.ftVersion = CMPICurrentVersion;
        functions.getCharPtr = [](const CMPIString*, CMPIStatus*) -> const char* { return nullptr; };
        return functions;
    }();
    static CMPIString string{.hdl = nullptr, .ft = &table};
    return &string;
}

inline CMPIData stringData(CMPIString* string) {
    CMPIData data{.type = CMPI_string, .state = CMPI_goodValue, .value = {}};
    data.value.string = string;
    return data;
}
