// CMPI objects and values as C++ works on them.
#pragma once

#include <cmpimacs.h>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace objects {

// Thrown when a request ends without an answer, and says why.
class Failure : public std::runtime_error {
public:
    Failure(CMPIrc failureCode, const std::string& message)
        : std::runtime_error(message), code(failureCode) {}
    CMPIrc code;
};

struct Releaser {
    template <class Object>
    void operator()(Object* object) const {
        CMRelease(object);
    }
};
// An object that was made for this request, and is given back to the broker before its end.
template <class Object>
using Owned = std::unique_ptr<Object, Releaser>;

// Takes over what a function of the broker made; throws Failure when it could not.
template <class Object>
Owned<Object> made(Object* object, const CMPIStatus& status) {
    Owned<Object> owner(object);
    if (object == nullptr || status.rc != CMPI_RC_OK)
        throw Failure(CMPI_RC_ERR_FAILED, "The broker made no object");
    return owner;
}

// Throws Failure for a call that the broker refused.
void require(const CMPIStatus& status);

Owned<CMPIObjectPath> makePath(const CMPIBroker* broker, const char* nameSpace, const char* className);
Owned<CMPIInstance> makeInstance(const CMPIBroker* broker, const CMPIObjectPath* path);

// These throw Failure where the broker cannot read what is there.
// A text is its own, a number its decimal digits; empty for what is missing, null or neither.
std::string textOf(const CMPIData& data);
std::string textOf(const CMPIString* string);
std::optional<CMPIData> propertyOf(const CMPIInstance* instance, const char* name);
std::optional<CMPIData> keyOf(const CMPIObjectPath* path, const char* name);
std::string propertyText(const CMPIInstance* instance, const char* name);
std::string keyText(const CMPIObjectPath* path, const char* name);
CMPICount keyCount(const CMPIObjectPath* path);
struct Property {
    std::string name;
    CMPIData data; // goes with the instance or path
};
std::vector<Property> propertiesOf(const CMPIInstance* instance);
std::vector<Property> keysOf(const CMPIObjectPath* path);
void setProperty(const CMPIInstance* instance, const char* name, const CMPIData& data);
void addKey(CMPIObjectPath* path, const char* name, const CMPIData& data);
std::string classNameOf(const CMPIObjectPath* path);
std::string nameSpaceOf(const CMPIObjectPath* path);
CMPICount sizeOf(const CMPIArray* array);
CMPIData elementOf(const CMPIArray* array, CMPICount index);
// Returns the path of an instance, which is released with the instance.
CMPIObjectPath* pathOf(const CMPIInstance* instance);

// Makes the value of a property or key of type CMPI_chars from a text.
const CMPIValue* charsValue(const char* text);

// Sets a property of an unsigned integer type, or an array of them. Throws Failure.
void setNumbers(const CMPIBroker* broker, const CMPIInstance* instance, const char* name, CMPIType type,
                const std::vector<std::uint64_t>& numbers);

// Tells whether two paths have the same keys. Names compare without regard to case, values exactly. Class and
// namespace are not compared.
bool haveSameKeys(const CMPIObjectPath* left, const CMPIObjectPath* right);

} // namespace objects
