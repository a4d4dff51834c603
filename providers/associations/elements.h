// The elements that associations are between: instances of the library's classes, and registered profiles.
#pragma once

#include "cmpi_objects.h"

#include <string>
#include <vector>

namespace associations {

using namespace objects;

// What a request came with.
struct Request {
    const CMPIBroker* broker;
    const CMPIContext* context;
    const CMPIResult* result;
    const CMPIObjectPath* ref;
    const char** properties = nullptr; // nullptr: all
};

// Whether a property list has the name; nullptr stands for all.
bool isWanted(const char* name, const char** list);

// Names of the properties to read, all of them or a few.
class PropertyNames {
public:
    void add(const char* name); // nullptr adds nothing
    void addAll() { all_ = true; }
    void add(const char** list); // nullptr: all
    bool contains(const char* name) const;
    // Whether each of these is among the names of a list, where nullptr stands for all.
    bool areWithin(const char** list) const;
    // Returns the list as CMPI takes it, valid as long as this object.
    const char** list();

private:
    bool all_ = false;
    std::vector<const char*> names_{nullptr}; // ends with it
};

// All instances of a class, none of them null.
class Instances {
public:
    // Asks PH_GetInstArray, and for profiles their table. Throws Failure.
    Instances(const Request& request, const std::string& nameSpace, const char* className,
              PropertyNames properties);

    std::size_t size() const { return instances_.size(); }
    const CMPIInstance* at(std::size_t index) const { return instances_[index]; }
    // Whether they may have more properties than they were asked for with.
    bool haveMore() const { return haveMore_; }

private:
    Owned<CMPIArray> array_; // of a class of the library
    std::vector<Owned<CMPIInstance>> profiles_;
    std::vector<const CMPIInstance*> instances_; // of the array
    bool haveMore_ = false;
};

// Finds the instance that a path names, with these properties at least; nothing when there is no such
// element. Throws Failure where that cannot be told.
Owned<CMPIInstance> find(const Request& request, const CMPIObjectPath* path, PropertyNames properties);

// Returns where a request's elements are: in its own namespace, or, for a request in the interop namespace,
// in that of the implementation. Profiles are always in the interop namespace.
std::string nameSpaceFor(const char* className, const std::string& requestNameSpace);

bool isInterop(const std::string& nameSpace);

struct Profile;
// Makes an instance of a profile; throws Failure. Without `names` it has all properties.
Owned<CMPIInstance> makeProfile(const Request& request, const Profile& profile, const char** names);

} // namespace associations
