// What a session is asked without a CIM request: hooks, sync, tools, the follower of the event log.
#include "bmc_session.h"
#include "faults.h"
#include "hook_calls.h"
#include "hostile_bmc.h"
#include "ipmi-view/chassis_status.h"
#include "ipmi-view/event_log.h"
#include "ipmi-view/fru.h"
#include "ipmi-view/metrics.h"
#include "ipmi-view/sel_info.h"
#include "ipmi-view/sensors.h"
#include "questions.h"
#include "sel_follower.h"
#include "served_class.h"
#include "virtual-bmc/virtual_bmc.h"

#include <algorithm>
#include <map>

namespace hostile {
namespace {

using Faults = std::vector<std::string>;
using Names = std::map<std::string_view, std::vector<broker::ObjectPath>>;

// An exception is an answer, too, as long as it says something.
Faults faultsOfTool(const std::function<void()>& tool) {
    try {
        tool();
    } catch (const std::runtime_error& error) {
        if (*error.what() == '\0')
            return {"a failure has no text"};
    }
    return {};
}

bool isElement(const schema::Class& served) {
    return served.enumerates && !served.isAssociation && !served.isIndication;
}

broker::Request namesRequest(const schema::Class& served) {
    return {.operation = broker::Request::Operation::EnumerateInstanceNames, .path = classPath(served)};
}

} // namespace

Subject hooks(const ipmi::SessionSettings& settings) {
    Subject subject{"hooks", 6, {}};
    for (const HookCall& hook : hookCalls())
        subject.questions.push_back(
            {hook.name, [&hook, settings](Random& random) -> Faults {
                 IPMI20_SESSION_T session{};
                 if (CIM_Create_IPMI20_Session(&session, settings.address.c_str(), settings.port, "", "",
                                               settings.interfaceType, settings.cipherSuite, 0, 0,
                                               settings.privilegeLevel, settings.timeout) != 0)
                     return {};
                 Faults faults;
                 for (std::size_t calls = 1 + random.below(4); calls > 0; --calls) {
                     const auto outcome =
                         hook.call(&session, [&](std::uint64_t limit) { return random.next() % limit; });
                     faults.insert(faults.end(), outcome.faults.begin(), outcome.faults.end());
                 }
                 CIM_Close_Session(&session);
                 return faults;
             }});
    return subject;
}

Subject synchronisation(broker::Broker& broker, const ipmi::SessionSettings& settings) {
    Names before;
    for (const schema::Class& served : schema::servedClasses())
        if (isElement(served) && served.name != "CIM_ConcreteJob") // jobs go by themselves, in time
            before[served.name] = broker.execute(namesRequest(served)).paths;
    const auto ask = [&broker, settings, before](Random& random) -> Faults {
        bool isDone = false;
        Faults faults = faultsOfTool([&] {
            smash::sync(*ipmi::openTransport(settings));
            isDone = true;
        });
        behave();
        for (int i = 0; i < 4; ++i) {
            const schema::Class& served = *schema::find(
                std::next(before.begin(), static_cast<std::ptrdiff_t>(random.below(before.size())))->first);
            const broker::Reply reply = broker.execute(namesRequest(served));
            if (!isDone && reply.paths != before.at(served.name))
                faults.push_back("it fails, and changes " + std::string(served.name));
            for (const std::string& fault : faultsOf(namesRequest(served), reply))
                faults.push_back("afterwards: " + fault);
        }
        return faults;
    };
    return {"sync", 1, {{"sync", ask}}};
}

Subject views(const ipmi::SessionSettings& settings) {
    using View = void (*)(ipmi::Transport&, Random&);
    static constexpr std::pair<const char*, View> all[] = {
        {"chassis", [](ipmi::Transport& bmc, Random&) { view::readChassisStatus(bmc); }},
        {"log information", [](ipmi::Transport& bmc, Random&) { view::readSelInfo(bmc); }},
        {"log", [](ipmi::Transport& bmc, Random&) { view::readEventLog(bmc); }},
        {"log, cleared", [](ipmi::Transport& bmc, Random&) { view::clearEventLog(bmc); }},
        {"a log's record, deleted",
         [](ipmi::Transport& bmc, Random& random) {
             view::deleteRecord(bmc, static_cast<std::uint16_t>(random.below(3)));
         }},
        {"inventory",
         [](ipmi::Transport& bmc, Random&) {
             for (view::FruDevice& device : view::findFruDevices(bmc))
                 readFru(bmc, device);
         }},
        {"sensors",
         [](ipmi::Transport& bmc, Random&) {
             for (const view::SensorRow& sensor : view::readSensorRows()) {
                 view::readSensor(bmc, sensor);
                 view::readThresholds(bmc, sensor);
             }
         }},
    };
    Subject subject{"tools", 2, {}};
    for (const auto& [name, read] : all)
        subject.questions.push_back({name, [read = read, settings](Random& random) {
                                         return faultsOfTool(
                                             [&] { read(*ipmi::openTransport(settings), random); });
                                     }});
    subject.questions.push_back({"metrics", [settings](Random&) {
                                     return faultsOfTool([&] {
                                         constexpr std::chrono::seconds limit{10};
                                         view::collectMetrics([&] { return ipmi::openTransport(settings); },
                                                              ipmi::Clock::now() + limit);
                                     });
                                 }});
    return subject;
}

Subject logFollower(const Machine& machine) {
    const auto stateFile = machine.place("/var/lib/virtual-bmc/bmc.state");
    const auto ask = [stateFile](Random& random) -> Faults {
        SelFollower follower;
        std::size_t taken = 0;
        const auto take = [&](const std::uint8_t(&)[CIM_SEL_RECORD_SIZE]) { ++taken; };
        const auto addEvent = [&] {
            vbmc::VirtualBmc(stateFile).addSensorEvent("Inlet", static_cast<std::uint8_t>(random.below(12)),
                                                       false);
        };
        for (std::size_t polls = 1 + random.below(6); polls > 0; --polls) {
            follower.poll(take);
            if (random.oneIn(2))
                addEvent();
            if (random.oneIn(8))
                vbmc::VirtualBmc(stateFile).clearSel();
        }
        behave();
        for (int i = 0; i < 3; ++i)
            follower.poll(take);
        taken = 0;
        addEvent();
        for (int i = 0; i < 3; ++i)
            follower.poll(take);
        follower.close();
        return taken == 1 ? Faults{} : Faults{"an event is taken " + std::to_string(taken) + " times"};
    };
    return {"event log follower", 1, {{"event log follower", ask}}};
}

} // namespace hostile
