#include "associations/engine.h"

#include "associations/association.h"
#include "associations/class_hierarchy.h"
#include "associations/pair.h"
#include "associations/profiles.h"

#include <deque>
#include <optional>

namespace associations {
namespace {

bool allows(const char* filter, const char* className) {
    return filter == nullptr || isA(className, filter);
}

bool allowsRole(const char* filter, const char* role) {
    return filter == nullptr || isSameName(filter, role);
}

// A row, and which of its ends the source object is.
struct Candidate {
    const Row* row;
    int source;

    const Elements& sourceEnd() const { return row->ends[source]; }
    const Elements& otherEnd() const { return row->ends[1 - source]; }
};

// Rows that have the class at one end and pass the filters; a row of two equal ends counts twice.
std::vector<Candidate> select(const char* sourceClass, const Filter& filter) {
    std::vector<Candidate> candidates;
    for (const Row& row : rows())
        for (int source = 0; source < 2; ++source) {
            const AssociationClass& association = *row.associationClass;
            const Candidate candidate{&row, source};
            if (isSameName(candidate.sourceEnd().className, sourceClass) &&
                allows(filter.assocClass, association.name) &&
                allows(filter.resultClass, candidate.otherEnd().className) &&
                allowsRole(filter.role, association.ends[source].role) &&
                allowsRole(filter.resultRole, association.ends[1 - source].role))
                candidates.push_back(candidate);
        }
    return candidates;
}

// The classes that a request reads, each of them only once.
class Pass {
public:
    // Adds, before the first reading, the properties that a class is to be read with.
    PropertyNames& properties(const char* className) { return entry(className).properties; }

    struct Entry {
        const char* className = nullptr;
        PropertyNames properties = {};
        std::optional<Instances> instances = {};
        std::vector<bool> isReturned = {};
    };
    Entry& read(const Request& request, const char* className) {
        Entry& found = entry(className);
        if (!found.instances) {
            found.instances.emplace(request, nameSpaceFor(className, nameSpaceOf(request.ref)), className,
                                    found.properties);
            found.isReturned.resize(found.instances->size());
        }
        return found;
    }

private:
    Entry& entry(const char* className) {
        for (Entry& each : entries_)
            if (isSameName(each.className, className))
                return each;
        Entry& added = entries_.emplace_back();
        added.className = className;
        return added;
    }

    std::deque<Entry> entries_; // which does not move them
};

// What the rows need to know of the source object, and of the others.
struct Needs {
    PropertyNames source;
    Pass pass;
};

// Calls take(candidate, source, entry, index) for each element that belongs to the source object.
template <class Take>
void forEachPartner(const Request& request, const std::vector<Candidate>& candidates, Needs& needs,
                    Take take) {
    if (candidates.empty())
        return;
    const Owned<CMPIInstance> source = find(request, request.ref, needs.source);
    if (source == nullptr)
        return;
    for (const Candidate& candidate : candidates) {
        const Half half(*candidate.row, candidate.source, source.get());
        if (!half.isMember())
            continue;
        Pass::Entry& entry = needs.pass.read(request, candidate.otherEnd().className);
        for (std::size_t i = 0; i < entry.instances->size(); ++i)
            if (half.meets(entry.instances->at(i)))
                take(candidate, source.get(), entry, i);
    }
}

void addMatching(PropertyNames& names, const Row& row, int end) {
    names.add(row.ends[end].property);
    names.add(row.meeting.properties[end]);
}

// An instance has what was asked for, and maybe what only the rows needed: that is left behind.
void returnPartner(const Request& request, const Pass::Entry& entry, const CMPIInstance* instance) {
    if (request.properties == nullptr ||
        (!entry.instances->haveMore() && entry.properties.areWithin(request.properties)))
        return require(CMReturnInstance(request.result, instance));
    const Owned<CMPIInstance> copy = copyOf(request.broker, instance, request.properties);
    require(CMReturnInstance(request.result, copy.get()));
}

void returnPair(const Request& request, const Row& row, const CMPIInstance* first, const CMPIInstance* second,
                Want want) {
    const auto path = pairPath(request.broker, nameSpaceOf(request.ref), row, first, second);
    if (want == Want::Names)
        return require(CMReturnObjectPath(request.result, path.get()));
    const auto instance = pairInstance(request.broker, path.get(), row, first, second, request.properties);
    require(CMReturnInstance(request.result, instance.get()));
}

// Own values are made of properties that matching may have no need of.
void addPairNeeds(const Request& request, const Row& row, int end, Want want, PropertyNames& names) {
    addMatching(names, row, end);
    if (want == Want::Instances)
        for (const OwnValue& value : row.values)
            if (isWanted(value.name, request.properties))
                names.add(value.properties[end]);
}

const AssociationClass* findAssociation(const char* className) {
    for (const AssociationClass* each : allAssociations())
        if (isSameName(each->name, className))
            return each;
    return nullptr;
}

// Finds the association class that a request on instances names, where its namespace has it.
const AssociationClass& requestedAssociation(const Request& request) {
    const std::string className = classNameOf(request.ref);
    const AssociationClass* association = findAssociation(className.c_str());
    const Placement wanted =
        isInterop(nameSpaceOf(request.ref)) ? Placement::Interop : Placement::Implementation;
    if (association == nullptr ||
        (association->placement != wanted && association->placement != Placement::Both))
        throw Failure(CMPI_RC_ERR_INVALID_CLASS, "The namespace has no class " + className);
    return *association;
}

bool asksForProfiles(const Request& request) {
    if (!isSameName(classNameOf(request.ref).c_str(), profileClass))
        return false;
    if (!isInterop(nameSpaceOf(request.ref)))
        throw Failure(CMPI_RC_ERR_INVALID_CLASS,
                      std::string(profileClass) + " is in the namespace " + interopNameSpace);
    return true;
}

void enumerateProfiles(const Request& request, Want want) {
    for (const Profile& profile : profiles()) {
        const auto instance = makeProfile(request, profile, request.properties);
        if (want == Want::Names)
            require(CMReturnObjectPath(request.result, pathOf(instance.get())));
        else
            require(CMReturnInstance(request.result, instance.get()));
    }
}

// Reads the path that a key of an association refers to.
const CMPIObjectPath* referenceKey(const CMPIObjectPath* path, const char* role) {
    const auto key = keyOf(path, role);
    if (!key || key->type != CMPI_ref || (key->state & CMPI_nullValue) != 0 || key->value.ref == nullptr)
        throw Failure(CMPI_RC_ERR_INVALID_PARAMETER, std::string("No reference for key ") + role);
    return key->value.ref;
}

} // namespace

bool serves(const char* className) {
    return isSameName(className, profileClass) || findAssociation(className) != nullptr;
}

void associators(const Request& request, const Filter& filter, Want want) {
    const auto candidates = select(classNameOf(request.ref).c_str(), filter);
    Needs needs;
    for (const Candidate& candidate : candidates) {
        addMatching(needs.source, *candidate.row, candidate.source);
        PropertyNames& properties = needs.pass.properties(candidate.otherEnd().className);
        addMatching(properties, *candidate.row, 1 - candidate.source);
        if (want == Want::Instances)
            properties.add(request.properties);
    }
    forEachPartner(request, candidates, needs, [&](auto&, auto*, Pass::Entry& entry, std::size_t index) {
        if (entry.isReturned[index])
            return;
        entry.isReturned[index] = true; // whatever other associations lead to it
        const CMPIInstance* instance = entry.instances->at(index);
        if (want == Want::Names)
            require(CMReturnObjectPath(request.result, pathOf(instance)));
        else
            returnPartner(request, entry, instance);
    });
}

void references(const Request& request, const Filter& filter, Want want) {
    const auto candidates = select(classNameOf(request.ref).c_str(), filter);
    Needs needs;
    for (const Candidate& candidate : candidates) {
        addPairNeeds(request, *candidate.row, candidate.source, want, needs.source);
        addPairNeeds(request, *candidate.row, 1 - candidate.source, want,
                     needs.pass.properties(candidate.otherEnd().className));
    }
    forEachPartner(
        request, candidates, needs,
        [&](const Candidate& candidate, const CMPIInstance* source, Pass::Entry& entry, std::size_t index) {
            const CMPIInstance* other = entry.instances->at(index);
            const bool isFirst = candidate.source == 0;
            returnPair(request, *candidate.row, isFirst ? source : other, isFirst ? other : source, want);
        });
}

void enumerate(const Request& request, Want want) {
    if (asksForProfiles(request))
        return enumerateProfiles(request, want);
    const AssociationClass& association = requestedAssociation(request);
    Pass pass;
    for (const Row& row : rows())
        if (row.associationClass == &association)
            for (int end = 0; end < 2; ++end)
                addPairNeeds(request, row, end, want, pass.properties(row.ends[end].className));
    for (const Row& row : rows()) {
        if (row.associationClass != &association)
            continue;
        const Instances& firsts = *pass.read(request, row.ends[0].className).instances;
        const Instances& seconds = *pass.read(request, row.ends[1].className).instances;
        for (std::size_t i = 0; i < firsts.size(); ++i) {
            const Half half(row, 0, firsts.at(i));
            for (std::size_t j = 0; half.isMember() && j < seconds.size(); ++j)
                if (half.meets(seconds.at(j)))
                    returnPair(request, row, firsts.at(i), seconds.at(j), want);
        }
    }
}

void getInstance(const Request& request) {
    if (asksForProfiles(request)) {
        PropertyNames properties;
        properties.add(request.properties);
        const auto instance = find(request, request.ref, std::move(properties));
        if (instance == nullptr)
            throw Failure(CMPI_RC_ERR_NOT_FOUND, "There is no such profile");
        return require(CMReturnInstance(request.result, instance.get()));
    }
    const AssociationClass& association = requestedAssociation(request);
    const CMPIObjectPath* const paths[] = {referenceKey(request.ref, association.ends[0].role),
                                           referenceKey(request.ref, association.ends[1].role)};
    const std::string classes[] = {classNameOf(paths[0]), classNameOf(paths[1])};
    for (const Row& row : rows()) {
        if (row.associationClass != &association || !isSameName(row.ends[0].className, classes[0].c_str()) ||
            !isSameName(row.ends[1].className, classes[1].c_str()))
            continue;
        Owned<CMPIInstance> ends[2];
        for (int end = 0; end < 2 && (end == 0 || ends[0] != nullptr); ++end) {
            PropertyNames needed;
            addPairNeeds(request, row, end, Want::Instances, needed);
            ends[end] = find(request, paths[end], std::move(needed));
        }
        if (ends[0] == nullptr || ends[1] == nullptr)
            break;
        const Half half(row, 0, ends[0].get());
        if (half.isMember() && half.meets(ends[1].get()))
            return returnPair(request, row, ends[0].get(), ends[1].get(), Want::Instances);
    }
    throw Failure(CMPI_RC_ERR_NOT_FOUND, "There is no such association");
}

} // namespace associations
