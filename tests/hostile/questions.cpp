#include "questions.h"

#include "faults.h"
#include "sample_requests.h"

#include <dlfcn.h>

namespace hostile {
namespace {

using Operation = broker::Request::Operation;

bool changes(Operation operation) {
    return operation == Operation::ModifyInstance || operation == Operation::CreateInstance ||
           operation == Operation::DeleteInstance || operation == Operation::InvokeMethod;
}

Question question(broker::Broker& broker, broker::Request request) {
    std::string text = toText(request);
    const bool isChange = changes(request.operation);
    return {std::move(text),
            [&broker, request = std::move(request)](Random&) {
                return faultsOf(request, broker.execute(request));
            },
            isChange};
}

// The provider module has some classes by itself.
bool isOfLibrary(std::string_view className) {
    return dlsym(RTLD_DEFAULT, ("PH_EI_" + std::string(className.substr(4))).c_str()) != nullptr;
}

// All, the names of all, and the first.
void addReads(std::vector<Question>& questions, broker::Broker& broker, const schema::Class& served) {
    const broker::ObjectPath all = classPath(served);
    questions.push_back(question(broker, {.operation = Operation::EnumerateInstances, .path = all}));
    questions.push_back(question(broker, {.operation = Operation::EnumerateInstanceNames, .path = all}));
    if (const auto names = broker.enumerateInstanceNames(all).paths; !names.empty())
        questions.push_back(question(broker, {.operation = Operation::GetInstance, .path = names.front()}));
}

} // namespace

broker::ObjectPath classPath(const schema::Class& served) {
    return path(std::string(served.name), {}, std::string(served.nameSpaces.front()));
}

Subject classes(broker::Broker& broker, const Machine& machine) {
    Subject subject{"classes", 10, {}};
    for (const schema::Class& served : schema::servedClasses()) {
        if (served.isAssociation || served.isIndication || !served.enumerates)
            continue;
        if (!isOfLibrary(served.name))
            addReads(subject.questions, broker, served);
        else
            for (broker::Request& request : sampleRequests(broker, machine, ServedClass(broker, served)))
                subject.questions.push_back(question(broker, std::move(request)));
    }
    return subject;
}

Subject associations(broker::Broker& broker) {
    Subject subject{"associations", 6, {}};
    for (const schema::Class& served : schema::servedClasses()) {
        if (!served.isAssociation)
            continue;
        addReads(subject.questions, broker, served);
        const auto instances = broker.enumerateInstances(classPath(served)).instances;
        if (instances.empty())
            continue;
        for (const auto& [role, end] : instances.front().path.keys)
            for (const Operation operation : {Operation::Associators, Operation::AssociatorNames,
                                              Operation::References, Operation::ReferenceNames}) {
                broker::Request request{.operation = operation, .path = **end.as<broker::Value::Reference>()};
                const bool isOfReferences =
                    operation == Operation::References || operation == Operation::ReferenceNames;
                (isOfReferences ? request.filter.resultClass : request.filter.assocClass) = served.name;
                request.filter.role = role;
                subject.questions.push_back(question(broker, std::move(request)));
            }
    }
    return subject;
}

} // namespace hostile
