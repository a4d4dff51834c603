// A BMC with users, and requests to the account classes.
#pragma once

#include "ipmi/command.h"
#include "managed_bmc.h"
#include "provider_helper/accounts.h"

namespace command = ipmi::command;

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

    broker::ObjectPath named(const std::string& name) const {
        return pathOnProcessor("CIM_Account", "controller", name);
    }
    broker::ObjectPath path(int slot) const { return named("IPMI User-" + std::to_string(slot)); }
    std::string get(int slot, const char* property) const {
        return textOf(accounts.get(path(slot)).instances.at(0), property);
    }

    // Whether the BMC knows this password of a user, by its own word.
    bool hasPassword(std::uint8_t slot, const std::string& password) const {
        const bool isLong = password.size() > 16;
        std::vector<std::uint8_t> request{static_cast<std::uint8_t>(slot | (isLong ? 0x80 : 0)), 3};
        request.insert(request.end(), password.begin(), password.end());
        request.resize(isLong ? 22 : 18);
        return ipmi::ask(*ipmi::openTransport(virtualBmc(stateFile)), command::setUserPassword, request)
                   .code() == 0;
    }
    nlohmann::ordered_json user(int slot) const { return row("users", "id", slot); }

    ClassRequests accounts{broker, PH_CLASS_FUNCTIONS(Account)};
    ClassRequests service{broker, PH_CLASS_FUNCTIONS(AccountManagementService)};
};
