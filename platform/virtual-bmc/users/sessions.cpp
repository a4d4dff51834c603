#include "virtual-bmc/users/sessions.h"

#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

namespace vbmc {
namespace {

namespace completion = ipmi::completion;

constexpr Choice levels[] = {{1, "callback"}, {2, "user"}, {3, "operator"}, {4, "administrator"}, {5, "oem"}};

// What ends the answer of a LAN session, its address and port, is not known.
std::uint8_t getSessionInfo(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    constexpr std::uint8_t byHandle = 0xFE, byId = 0xFF, rmcpPlus = 0x10;
    const auto& list = state.get<Sessions>().list;
    std::uint8_t number = request.u8();
    if (number == byHandle)
        number = request.u8();
    else if (number == byId)
        return completion::parameterOutOfRange;
    if (!request.ok())
        return completion::requestLengthInvalid;
    const bool isThere = number >= 1 && number <= list.size();
    answer.u8(isThere ? number : 0).u8(Sessions::most).u8(static_cast<std::uint8_t>(list.size()));
    if (isThere) {
        const OpenSession& session = list[number - 1U];
        answer.u8(session.user).u8(session.privilege).u8(rmcpPlus | session.channel);
    }
    return completion::success;
}

} // namespace

void OpenSession::fields(Fields& fields) {
    fields.required("user", user);
    fields.choice("privilege", privilege, levels);
    fields.number("channel", channel, 1, 11);
}

void OpenSession::check(const Place& place) const {
    constexpr std::uint8_t lastUser = 63;
    if (user < 1 || user > lastUser)
        fail(Place{&place, "user"}, std::to_string(user) + " is not allowed: 1 to 63");
}

std::span<const Command> Sessions::commands() {
    static constexpr Command table[] = {{ipmi::command::getSessionInfo, 1, getSessionInfo}};
    return table;
}

void Sessions::check(const Place& place) const {
    if (list.size() > most)
        fail(place, "there are more than " + std::to_string(most));
}

Json Sessions::describe(const State&) const {
    Json json = Json::array();
    for (const OpenSession& session : list)
        json.push_back({{"user", session.user},
                        {"privilege", nameOf(levels, session.privilege)},
                        {"channel", session.channel}});
    return json;
}

} // namespace vbmc
