// A BMC with users, and requests to the account classes.
#pragma once

#include "class_requests.h"
#include "freed_secrets.h"
#include "ipmi/command.h"
#include "managed_bmc.h"
#include "provider_helper/accounts.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

inline constexpr char userModel[] = R"({"users": [
    {"id": 1, "enabled": false, "privilege": "none", "messaging": false},
    {"id": 2, "name": "root"},
    {"id": 3, "name": "operator", "privilege": "operator", "linkAuthentication": true},
    {"id": 5, "name": "silent", "messaging": false, "privilege": "user"},
    {"id": 6, "name": "locked", "enabled": false},
    {"id": 7, "name": "sixteen letters!"},
    {"id": 8, "name": "fixed", "fixedName": true}]})";

class AccountFixture : public ManagedBmc {
protected:
    AccountFixture() : ManagedBmc(userModel) {}

    broker::ObjectPath path(const std::string& name) const {
        return accounts.path({{"SystemCreationClassName", text("CIM_SPComputerSystem")},
                              {"CreationClassName", text("CIM_Account")},
                              {"SystemName", text("controller")},
                              {"Name", text(name)}});
    }

    // Whether the BMC knows this password of a user, by its own word.
    bool hasPassword(std::uint8_t slot, const std::string& password, bool longForm = false) const {
        std::vector<std::uint8_t> request{static_cast<std::uint8_t>(slot | (longForm ? 0x80 : 0)), 3};
        request.insert(request.end(), password.begin(), password.end());
        request.resize(longForm ? 22 : 18);
        ipmi::SessionSettings settings;
        settings.interfaceType = ipmi::SessionSettings::VirtualBmc;
        settings.address = stateFile.string();
        const auto transport = ipmi::openTransport(settings);
        return ipmi::ask(*transport, ipmi::command::setUserPassword, request).code() == 0;
    }

    // The BMC's row of a user; null for none.
    nlohmann::ordered_json user(int slot) const {
        const auto machine = vbmc::VirtualBmc(stateFile).describe();
        for (const auto& row : machine["users"])
            if (row["id"] == slot)
                return row;
        return {};
    }

    ClassRequests accounts{broker, PH_CLASS_FUNCTIONS(Account)};
    ClassRequests service{broker, PH_CLASS_FUNCTIONS(AccountManagementService)};
};
