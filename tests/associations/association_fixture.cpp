#include "association_fixture.h"
#include "paths.h"

#include "bmc_session.h"

#include <algorithm>
#include <cmpimacs.h>
#include <dlfcn.h>

std::vector<std::string> askedArrays;

namespace {

template <class Symbol>
Symbol* libraryHas(const char* name) {
    void* library = dlopen(paths::library, RTLD_LAZY);
    return library != nullptr ? reinterpret_cast<Symbol*>(dlsym(library, name)) : nullptr;
}

using GetInstArray = CMPIArray*(const CMPIObjectPath*, const CMPIBroker*, const CMPIContext*, const char**);

} // namespace

// In place of the library's, which the provider module finds behind this one, and of libc's.
#pragma GCC visibility push(default)
extern "C" {
CMPIArray* PH_GetInstArray(const CMPIObjectPath* ref, const CMPIBroker* broker, const CMPIContext* context,
                           const char** properties) {
    std::string asked = broker::toObjectPath(ref).className + '(';
    if (properties == nullptr)
        asked += '*';
    for (const char** name = properties; name != nullptr && *name != nullptr; ++name)
        asked += (name == properties ? "" : ",") + std::string(*name);
    askedArrays.push_back(asked + ')');
    return libraryHas<GetInstArray>("PH_GetInstArray")(ref, broker, context, properties);
}
unsigned int sleep(unsigned int) {
    return 0;
}
}
#pragma GCC visibility pop

void Associations::SetUpTestSuite() {
    sysroot = std::make_unique<Sysroot>();
    vbmc::create(stateFile(), paths::sampleServer);
    synchronise(stateFile());
    std::filesystem::create_symlink(paths::library, sysroot->place("/usr/local/lib/libProviderHelper.so"));
}

void Associations::TearDownTestSuite() {
    sysroot.reset();
}

void Associations::SetUp() {
    broker.loadProvider(paths::providerModule, "ProviderHelper");
    askedArrays.clear();
}

broker::ObjectPath Associations::element(const std::string& className, const std::string& text) {
    for (const auto& each : broker.enumerateInstanceNames(path(className)).paths)
        if (toText(each).find(text) != std::string::npos)
            return each;
    ADD_FAILURE() << "there is no " << className << ' ' << text;
    return {};
}

broker::ObjectPath Associations::profile(const std::string& number) {
    return path("CIM_RegisteredProfile", {{"InstanceID", text("provider-helper:" + number)}}, "root/interop");
}

CoreFeatures& Associations::features() {
    return *libraryHas<CoreFeatures>("g_corefeatures");
}

std::filesystem::path Associations::stateFile() {
    return sysroot->place("/var/lib/virtual-bmc/bmc.state");
}

std::vector<std::string> texts(const std::vector<broker::ObjectPath>& paths) {
    std::vector<std::string> all;
    for (const auto& each : paths)
        all.push_back(toText(each));
    return all;
}

std::vector<std::string> classesOf(const std::vector<broker::ObjectPath>& paths) {
    std::vector<std::string> all;
    for (const auto& each : paths)
        if (std::find(all.begin(), all.end(), each.className) == all.end())
            all.push_back(each.className);
    return all;
}
