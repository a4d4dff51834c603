// CIM names compare without regard to case, and some of the library's functions compare them with it: a
// request reaches it in the classes' own spelling.
#pragma once

#include "cmpi_objects.h"

namespace spelling {

// Returns a class, property, method or key as the classes spell it; the name itself where no class has it.
const char* spelled(const char* name);

// Returns the library's class that an object manager has under a name with the vendor's prefix: CIM_X for
// PH_X. Empty for other names.
std::string withoutPrefix(const std::string& className);

// Returns the keys of a class that the library serves; empty for others.
std::vector<const char*> keysOf(const char* className);

// Returns an object in the classes' spelling: the given one where it is spelled so, else a copy. Throws
// objects::Failure.
template <class Object>
class Spelled {
public:
    const Object* get() const { return copy_ != nullptr ? copy_.get() : given_; }

protected:
    explicit Spelled(const Object* given) : given_(given) {}
    const Object* given_;
    objects::Owned<Object> copy_;
};

class Path : public Spelled<CMPIObjectPath> {
public:
    Path(const CMPIBroker* broker, const CMPIObjectPath* path);
};

// The path inside the instance stays as it is.
class Instance : public Spelled<CMPIInstance> {
public:
    Instance(const CMPIBroker* broker, const CMPIObjectPath* path, const CMPIInstance* instance);
};

// Does the same for a property list, which may be nullptr.
class Names {
public:
    explicit Names(const char** given);
    const char** get() { return isGiven_ ? names_.data() : nullptr; }

private:
    bool isGiven_;
    std::vector<const char*> names_; // ends with nullptr
};

} // namespace spelling
