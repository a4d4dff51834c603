#include "selection.h"

#include "arguments.h"
#include "errors.h"
#include "names.h"
#include "served_classes.h"

#include <algorithm>
#include <fnmatch.h>
#include <iostream>
#include <iterator>

namespace phctl {
namespace {

using broker::ObjectPath;
using Operation = broker::Request::Operation;

// Keys that all instances of a class share.
constexpr std::string_view commonKeys[] = {"CreationClassName", "SystemCreationClassName", "SystemName"};
constexpr std::size_t mostNamed = 5; // of too many instances

bool hasWildcard(std::string_view text) {
    return text.find_first_of("*?") != std::string_view::npos;
}

bool fits(const std::string& pattern, const std::string& text) {
    return fnmatch(pattern.c_str(), text.c_str(), FNM_CASEFOLD | FNM_NOESCAPE) == 0;
}

std::vector<ObjectPath> pathsOfInput(const std::string& nameSpace) {
    std::vector<ObjectPath> paths;
    for (std::string line; std::getline(std::cin, line);)
        if (line.find_first_not_of(" \t\r") != std::string::npos) {
            paths.push_back(parsePath(line, nameSpace));
            if (paths.back().keys.empty())
                throw UsageError("standard input: \"" + line + "\" is no path of an instance");
        }
    if (paths.empty())
        throw UsageError("there is no object path on standard input");
    return paths;
}

struct Candidate {
    ObjectPath path;
    std::vector<std::string> names; // the first is the one for people
};

// A sensor's ElementName ends with its numbers: "CPU1 Temp(3.32.0)".
std::string withoutNumbers(const std::string& name) {
    const std::size_t open = name.rfind('(');
    const bool hasNumbers = open != std::string::npos && open > 0 && name.ends_with(')') &&
                            name.find_first_not_of("0123456789.", open + 1) == name.size() - 1;
    return hasNumbers ? name.substr(0, open) : name;
}

// Many keys are a prefix, a colon and a name: "provider-helper:DSP1004".
void addKey(std::vector<std::string>& names, const std::string& text) {
    const std::size_t colon = text.rfind(':');
    if (colon != std::string::npos && colon + 1 < text.size())
        names.push_back(text.substr(colon + 1));
    names.push_back(text);
}

std::vector<Candidate> candidatesOf(Requester& requester, const ObjectPath& ofClass) {
    const auto reply = requester.ask({.operation = Operation::EnumerateInstances,
                                      .path = {.host = ofClass.host,
                                               .nameSpace = ofClass.nameSpace,
                                               .className = ofClass.className,
                                               .keys = {}},
                                      .properties = broker::PropertyList({"ElementName"})});
    std::vector<Candidate> all;
    for (const broker::Instance& instance : reply.instances) {
        Candidate candidate{instance.path, {}};
        const broker::Value* name = broker::find(instance.properties, "ElementName");
        if (name != nullptr && name->as<std::string>() != nullptr) {
            candidate.names.push_back(withoutNumbers(*name->as<std::string>()));
            candidate.names.push_back(*name->as<std::string>());
        }
        for (const auto& [key, value] : instance.path.keys)
            if (std::ranges::none_of(
                    commonKeys, [&key = key](std::string_view each) { return broker::sameName(each, key); }))
                addKey(candidate.names, broker::toText(value));
        all.push_back(std::move(candidate));
    }
    return all;
}

template <class Predicate>
std::vector<Candidate> those(const std::vector<Candidate>& candidates, Predicate isMeant) {
    std::vector<Candidate> meant;
    std::ranges::copy_if(candidates, std::back_inserter(meant), isMeant);
    return meant;
}

// Returns those of exactly this name, if there are any, or else those that it fits.
std::vector<Candidate> named(const std::vector<Candidate>& candidates, const std::string& name) {
    auto same = those(candidates, [&](const Candidate& candidate) {
        return std::ranges::find(candidate.names, name) != candidate.names.end();
    });
    if (!same.empty())
        return same;
    return those(candidates, [&](const Candidate& candidate) {
        return std::ranges::any_of(candidate.names,
                                   [&](const std::string& each) { return fits(name, each); });
    });
}

bool fitsKeys(const ObjectPath& pattern, const ObjectPath& path, bool exactly) {
    return std::ranges::all_of(pattern.keys, [&](const broker::NamedValue& wanted) {
        const broker::Value* value = broker::find(path.keys, wanted.name);
        if (value == nullptr)
            return false;
        const std::string text = broker::toText(*value), meant = broker::toText(wanted.value);
        return text == meant || (!exactly && fits(meant, text));
    });
}

bool isComplete(const ObjectPath& path) {
    const schema::Class* described = servedClass(path.className);
    return described == nullptr ||
           std::ranges::all_of(described->servedProperties(), [&](const schema::Property& property) {
               return !property.isKey || broker::find(path.keys, property.name) != nullptr;
           });
}

[[noreturn]] void failForName(const Requester& requester, const std::vector<Candidate>& candidates,
                              const std::string& className, const std::string& name) {
    std::vector<std::string> known;
    for (const Candidate& candidate : candidates)
        known.insert(known.end(), candidate.names.begin(), candidate.names.end());
    const std::string& unreadable = requester.unreadableSensors();
    throw Failure(className + " has no instance of the name \"" + name + '"' + didYouMean(name, known) +
                  (unreadable.empty() ? "" : " (" + unreadable + ')'));
}

std::vector<Candidate> meant(Requester& requester, const Target& target, const std::string& nameSpace) {
    if (!target.name.empty() && !target.isClass())
        throw UsageError("a name follows a class: " + target.text + " is none");
    std::vector<Candidate> found;
    if (target.isInput()) {
        for (ObjectPath& path : pathsOfInput(nameSpace))
            found.push_back({std::move(path), {}});
        return found;
    }
    const ObjectPath path = parsePath(target.text, nameSpace);
    const bool isPattern = std::ranges::any_of(path.keys, [](const broker::NamedValue& key) {
        return key.value.as<std::string>() != nullptr && hasWildcard(*key.value.as<std::string>());
    });
    if (!path.keys.empty() && !isPattern && isComplete(path))
        return {{path, {}}};
    const auto candidates = candidatesOf(requester, path);
    if (!target.name.empty()) {
        found = named(candidates, target.name);
        if (found.empty())
            failForName(requester, candidates, path.className, target.name);
        return found;
    }
    for (const bool exactly : {true, false})
        if (found.empty())
            found =
                those(candidates, [&](const Candidate& each) { return fitsKeys(path, each.path, exactly); });
    if (!found.empty())
        return found;
    if (!path.keys.empty() && isComplete(path))
        return {{path, {}}}; // the provider says what is wrong with it
    throw Failure(path.className + " has no instance" + (path.keys.empty() ? "" : " with such keys"));
}

} // namespace

void Target::addTo(Command command, bool withName) {
    command
        .option("PATH", text,
                "Object path, in single quotes for the shell; or a class, and the name of an instance "
                "after it; or - for paths on standard input")
        .required();
    if (withName)
        command.option("NAME", name,
                       "ElementName or key of an instance of the class; * and ? stand for any characters");
}

bool Target::isClass() const {
    return !isInput() && text.find_first_of(".=\"") == std::string::npos;
}

bool Target::meansSeveral() const {
    return isInput() || (isClass() && name.empty()) || hasWildcard(text) || hasWildcard(name);
}

std::vector<ObjectPath> select(Requester& requester, const Target& target, const std::string& nameSpace) {
    std::vector<ObjectPath> paths;
    for (Candidate& each : meant(requester, target, nameSpace))
        paths.push_back(std::move(each.path));
    return paths;
}

ObjectPath selectOne(Requester& requester, const Target& target, const std::string& nameSpace) {
    auto found = meant(requester, target, nameSpace);
    if (found.size() == 1)
        return std::move(found.front().path);
    std::string all;
    for (std::size_t i = 0; i < std::min(found.size(), mostNamed); ++i)
        all += (i > 0 ? ", " : "") +
               (found[i].names.empty() ? broker::toText(found[i].path) : found[i].names.front());
    throw Failure(std::to_string(found.size()) + " instances are meant, where one is wanted: " + all +
                  (found.size() > mostNamed ? ", …" : ""));
}

} // namespace phctl
