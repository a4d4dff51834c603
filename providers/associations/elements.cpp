#include "associations/elements.h"

#include "associations/class_hierarchy.h"
#include "associations/profiles.h"
#include "provider_helper/utility.h"

#include <algorithm>

namespace associations {
namespace {

// The library's cache of instance arrays keeps what the first request asked for, and answers later ones with
// it whatever they ask for. It has to be filled with everything.
bool cachesArrays() {
    return g_corefeatures.words[CORE_FEATURE_INSTANCE_ARRAY_CACHE] == 1;
}

// A sensor that cannot be read is not offered to associations: PH_GetInstArray leaves it out, and so it is no
// starting point either. Its instance says so with an operational status of 0, unknown.
constexpr const char* sensorStatus = "OperationalStatus";

bool isUnreadable(const CMPIInstance* sensor) {
    const auto status = propertyOf(sensor, sensorStatus);
    return status && status->type == CMPI_uint16A && (status->state & CMPI_nullValue) == 0 &&
           sizeOf(status->value.array) > 0 && elementOf(status->value.array, 0).value.uint16 == 0;
}

Owned<CMPIInstance> clone(const CMPIInstance* instance) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIInstance* const copy = CMClone(instance, &status);
    return made(copy, status);
}

// Asks the class for the one instance, which is the cheapest. A class does not tell an instance that it does
// not have from one that it cannot read: whether there is one its whole array tells then.
Owned<CMPIInstance> findElement(const Request& request, const CMPIObjectPath* path,
                                const std::string& className, const std::string& nameSpace,
                                PropertyNames properties) {
    const bool isSensor = isA(className.c_str(), "CIM_Sensor");
    if (isSensor)
        properties.add(sensorStatus);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    Owned<CMPIInstance> instance(
        CBGetInstance(request.broker, request.context, path, properties.list(), &status));
    if (instance != nullptr && status.rc == CMPI_RC_OK)
        return isSensor && isUnreadable(instance.get()) ? nullptr : std::move(instance);
    const Instances all(request, nameSpace, className.c_str(), std::move(properties));
    for (std::size_t i = 0; i < all.size(); ++i)
        if (haveSameKeys(pathOf(all.at(i)), path))
            return clone(all.at(i));
    return nullptr;
}

} // namespace

bool isWanted(const char* name, const char** list) {
    if (list == nullptr)
        return true;
    for (; *list != nullptr; ++list)
        if (isSameName(name, *list))
            return true;
    return false;
}

void PropertyNames::add(const char* name) {
    if (name != nullptr && !contains(name))
        names_.insert(names_.end() - 1, name);
}

void PropertyNames::add(const char** list) {
    if (list == nullptr)
        return addAll();
    for (; *list != nullptr; ++list)
        add(*list);
}

bool PropertyNames::contains(const char* name) const {
    return std::any_of(names_.begin(), names_.end() - 1,
                       [&](const char* each) { return isSameName(each, name); });
}

bool PropertyNames::areWithin(const char** list) const {
    if (list == nullptr)
        return true;
    return !all_ && std::all_of(names_.begin(), names_.end() - 1,
                                [&](const char* each) { return isWanted(each, list); });
}

const char** PropertyNames::list() {
    return all_ ? nullptr : names_.data();
}

Instances::Instances(const Request& request, const std::string& nameSpace, const char* className,
                     PropertyNames properties) {
    const bool areProfiles = isSameName(className, profileClass);
    if (!areProfiles && cachesArrays()) {
        properties.addAll();
        haveMore_ = true;
    }
    if (areProfiles) {
        for (const Profile& profile : profiles())
            instances_.push_back(
                profiles_.emplace_back(makeProfile(request, profile, properties.list())).get());
        return;
    }
    const auto path = makePath(request.broker, nameSpace.c_str(), className);
    array_.reset(PH_GetInstArray(path.get(), request.broker, request.context, properties.list()));
    if (array_ == nullptr)
        throw Failure(CMPI_RC_ERR_FAILED, std::string("The instances of ") + className + " cannot be read");
    const CMPICount count = sizeOf(array_.get());
    instances_.reserve(count);
    for (CMPICount i = 0; i < count; ++i) {
        const CMPIData data = elementOf(array_.get(), i);
        if ((data.state & CMPI_nullValue) == 0 && data.value.inst != nullptr)
            instances_.push_back(data.value.inst);
    }
}

Owned<CMPIInstance> find(const Request& request, const CMPIObjectPath* path, PropertyNames properties) {
    const std::string className = classNameOf(path);
    const std::string requestNameSpace = nameSpaceOf(request.ref);
    const std::string given = nameSpaceOf(path);
    const std::string nameSpace = given.empty() ? requestNameSpace : given;
    const Placement placement = placementOf(className.c_str());
    if (placement == (isInterop(nameSpace) ? Placement::Implementation : Placement::Interop))
        return nullptr;
    if (isSameName(className.c_str(), profileClass)) {
        for (const Profile& profile : profiles())
            if (keyCount(path) == 1 && keyText(path, profileProperties().front().name) == profile.instanceId)
                return makeProfile(request, profile, properties.list());
        return nullptr;
    }
    if (!given.empty())
        return findElement(request, path, className, nameSpace, std::move(properties));
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIObjectPath* const copy = CMClone(path, &status);
    const Owned<CMPIObjectPath> complete = made(copy, status);
    require(CMSetNameSpace(copy, nameSpace.c_str()));
    return findElement(request, copy, className, nameSpace, std::move(properties));
}

bool isInterop(const std::string& nameSpace) {
    return isSameName(nameSpace.c_str(), interopNameSpace);
}

std::string nameSpaceFor(const char* className, const std::string& requestNameSpace) {
    switch (placementOf(className)) {
    case Placement::Interop:
        return interopNameSpace;
    case Placement::Implementation:
        return isInterop(requestNameSpace) ? implementationNameSpace : requestNameSpace;
    default:
        return requestNameSpace;
    }
}

Owned<CMPIInstance> makeProfile(const Request& request, const Profile& profile, const char** names) {
    const auto path = makePath(request.broker, interopNameSpace, profileClass);
    require(
        CMAddKey(path.get(), profileProperties().front().name, charsValue(profile.instanceId), CMPI_chars));
    auto instance = makeInstance(request.broker, path.get());
    for (const ProfileProperty& property : profileProperties()) {
        const bool isKey = &property == &profileProperties().front();
        if (!isKey && !isWanted(property.name, names))
            continue;
        if (property.text != nullptr)
            require(
                CMSetProperty(instance.get(), property.name, charsValue(profile.*property.text), CMPI_chars));
        else
            setNumbers(request.broker, instance.get(), property.name, property.type,
                       property.numbers(profile));
    }
    return instance;
}

} // namespace associations
