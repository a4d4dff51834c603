#include "session_hints.h"

#include "ipmi/transport.h"

#include <algorithm>

namespace phctl {
namespace {

using ipmi::SessionProblem;

struct Hint {
    SessionProblem problem;
    const char* text;
};

// The situations of the workarounds are those that FreeIPMI documents.
constexpr Hint hints[] = {
    {SessionProblem::NoAnswer,
     "check the address and the port, and that the BMC has IPMI over LAN switched on"},
    {SessionProblem::UserName, "check --user; a user without a right on this channel is refused like this "
                               "too, and BMCs that do not tell of "
                               "their users want --workaround authcap"},
    {SessionProblem::Password,
     "check the password; BMCs that compute keys in their own way refuse it too: try --workaround intel20, "
     "supermicro20 or sun20"},
    {SessionProblem::Key,
     "the BMC has a key of its own (K_g), which cannot be given; if it has none, try --workaround "
     "authcap"},
    {SessionProblem::Privilege, "try --privilege operator or user; BMCs that do not take the privilege in "
                                "the first message want --workaround "
                                "opensesspriv"},
    {SessionProblem::CipherSuite, "try another --cipher-suite, such as 17 or 3"},
    {SessionProblem::Authentication,
     "if the BMC does not tell the truth of what it has, try --workaround authcap"},
    {SessionProblem::Version,
     "it may be an IPMI 1.5 BMC, which is not supported; if it is not, try --workaround authcap"},
    {SessionProblem::Protocol,
     "try --workaround opensesspriv, intel20, supermicro20 or sun20, or another --cipher-suite such as 17"},
};

std::string hintFor(const ipmi::SessionError& error) {
    if (error.problem == SessionProblem::CipherSuite && !error.offeredSuites.empty()) {
        std::string text = "the BMC has the cipher suites ";
        for (bool isFirst = true; const unsigned suite : error.offeredSuites) {
            text += (isFirst ? "" : ", ") + std::to_string(suite);
            isFirst = false;
        }
        const bool hasStrong = std::ranges::count(error.offeredSuites, 17) > 0;
        return text + ": try --cipher-suite " + std::to_string(hasStrong ? 17 : error.offeredSuites.back());
    }
    return std::ranges::find(hints, error.problem, &Hint::problem)->text;
}

} // namespace

std::string explain(const std::exception& error) {
    const auto* const refusal = dynamic_cast<const ipmi::SessionError*>(&error);
    return refusal == nullptr ? error.what() : error.what() + ("; " + hintFor(*refusal));
}

} // namespace phctl
