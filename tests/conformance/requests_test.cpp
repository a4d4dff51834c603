// What the frame promises of every class's requests.
#include "conformance_fixture.h"
#include "sampling.h"

#include <algorithm>
#include <cctype>

namespace {

using broker::Instance;
using broker::ObjectPath;
using broker::Reply;
using broker::Request;
using testing::ElementsAreArray;
using testing::IsEmpty;

std::vector<ObjectPath> pathsOf(const std::vector<Instance>& instances) {
    std::vector<ObjectPath> paths;
    for (const Instance& instance : instances)
        paths.push_back(instance.path);
    return paths;
}

std::string upperCase(std::string name) {
    std::ranges::transform(name, name.begin(), [](unsigned char c) { return std::toupper(c); });
    return name;
}

void expectRefused(const Reply& reply, const std::string& message = {}, int code = CMPI_RC_ERR_FAILED) {
    EXPECT_FALSE(reply.ok());
    EXPECT_NE(reply.message, "");
    EXPECT_THAT(reply.arguments, IsEmpty());
    if (message.empty())
        return;
    EXPECT_EQ(reply.message, message);
    EXPECT_EQ(reply.code, code);
}

TEST_P(Conformance, namesInstancesAndGetAgree) {
    if (!isEnumerated())
        GTEST_SKIP() << "only reached through other classes";
    const auto all = tested.instances();
    ASSERT_FALSE(all.empty()) << "the machine has one of each class";
    EXPECT_EQ(tested.answer({.operation = Operation::EnumerateInstanceNames, .path = tested.path()}).paths,
              pathsOf(all));
    EXPECT_EQ(tested.instanceArray(), all);
    for (const Instance& instance : all) {
        const Reply got = tested.answer({.operation = Operation::GetInstance, .path = instance.path});
        EXPECT_EQ(got.instances, std::vector{instance}) << got.message;
    }
}

// The embedded broker copies keys from the path, others do not.
TEST_P(Conformance, setsKeysAsPropertiesToo) {
    for (const Instance& instance : tested.instances()) {
        broker.resetCalls();
        tested.answer({.operation = Operation::GetInstance, .path = instance.path, .properties = {{}}});
        EXPECT_EQ(broker.calls("setProperty"), tested.keys().size());
    }
}

TEST_P(Conformance, givesThePropertiesThatAreAskedFor) {
    const auto keys = tested.keys();
    const auto all = tested.instances();
    const auto withOnly = [&](const std::string& wanted) {
        auto some = all;
        for (Instance& instance : some)
            std::erase_if(instance.properties, [&](const broker::NamedValue& property) {
                return property.name != wanted && std::ranges::find(keys, property.name) == keys.end();
            });
        return some;
    };
    EXPECT_EQ(tested.instances({{}}), withOnly(""));
    EXPECT_EQ(tested.instances({{"NoSuchProperty"}}), withOnly(""));
    const auto& properties = tested.description.servedProperties();
    for (std::size_t i = 0; i < properties.size(); i += sampling()) {
        const std::string name(properties[i].name);
        EXPECT_EQ(tested.instances({{name}}), withOnly(name));
        EXPECT_EQ(tested.instances({{"NoSuchProperty", upperCase(name)}}), withOnly(name));
    }
}

struct WrongPath {
    std::string name;
    ObjectPath path;
    bool isWellFormed; // only a value is wrong
};

// Paths that are not that of an instance, each with one key wrong.
std::vector<WrongPath> wrongPaths(const ObjectPath& right) {
    std::vector<WrongPath> wrong;
    const auto add = [&](const std::string& name, bool isWellFormed = false) -> broker::NamedValues& {
        return wrong.emplace_back(WrongPath{name, right, isWellFormed}).path.keys;
    };
    add("no keys").clear();
    add("a key more").push_back({"NoSuchKey", {CMPI_string, std::string("x")}});
    for (std::size_t i = 0; i < right.keys.size(); ++i) {
        const std::string& key = right.keys[i].name;
        auto& missing = add("without " + key);
        missing.erase(missing.begin() + static_cast<std::ptrdiff_t>(i));
        add("misspelt " + key)[i].name = key + "s";
        add("another case of " + key)[i].name = upperCase(key);
        add("quoted " + key)[i].value = {CMPI_string, std::string("it's")};
        add("a boolean as " + key)[i].value = {CMPI_boolean, true};
        add("another " + key, true)[i].value = {CMPI_string, std::string("none of ours")};
        add("empty " + key, true)[i].value = {CMPI_string, std::string()};
        add("a number as " + key, true)[i].value = {CMPI_uint32, std::uint64_t{5}};
    }
    return wrong;
}

// There is one such service, or one of each name: its methods do not look at the other keys' values.
bool ignoresValues(const Request& request) {
    constexpr const char* classes[] = {"CIM_IPConfigurationService", "CIM_PowerManagementService",
                                       "CIM_ProtocolService"};
    return request.operation == Request::Operation::InvokeMethod &&
           std::ranges::find(classes, request.path.className) != std::end(classes);
}

TEST_P(Conformance, refusesWrongKeys) {
    const auto all = tested.instances();
    if (all.empty())
        GTEST_SKIP() << "has no instances";
    const auto requests = changes();
    for (const auto& [name, path, isWellFormed] : wrongPaths(all[0].path)) {
        SCOPED_TRACE(name);
        expectRefused(tested.answer({.operation = Operation::GetInstance, .path = path}),
                      "Failed to Get Instance");
        for (Request request : requests) {
            if (request.operation == Operation::CreateInstance || (isWellFormed && ignoresValues(request)))
                continue; // the keys of what is created are in the instance
            SCOPED_TRACE(toText(request));
            request.path = path;
            request.instance.path = path;
            expectRefused(tested.answer(request));
        }
    }
    EXPECT_EQ(tested.instances(), all) << "nothing was changed";
}

// What no broker of ours makes: a key that is a string without text, or none at all, and one key twice.
class StrangePath {
public:
    enum Kind { NoString, NoText, OtherTwice };
    static const CMPIObjectPath* make(const CMPIObjectPath* real, Kind strangeness, CMPICount index) {
        static const CMPIObjectPathFT* functions;
        static CMPIObjectPathFT table;
        static CMPIObjectPath path;
        static Kind kind;
        static CMPICount strangeKey;
        functions = real->ft;
        kind = strangeness;
        strangeKey = index;
        table = *functions;
        table.getKeyAt = [](const CMPIObjectPath* of, CMPICount i, CMPIString** name, CMPIStatus* status) {
            const bool isOther = i == strangeKey && kind == OtherTwice;
            return strange(functions->getKeyAt(
                               of, isOther ? (i + 1) % functions->getKeyCount(of, nullptr) : i, name, status),
                           i == strangeKey && kind != OtherTwice, kind);
        };
        table.getKey = [](const CMPIObjectPath* of, const char* name, CMPIStatus* status) {
            CMPIString* strangeName = nullptr;
            functions->getKeyAt(of, strangeKey, &strangeName, nullptr);
            const bool isStrange =
                strangeName != nullptr && broker::sameName(CMGetCharsPtr(strangeName, nullptr), name);
            if (isStrange && kind == OtherTwice) {
                if (status != nullptr)
                    *status = {CMPI_RC_ERR_NO_SUCH_PROPERTY, nullptr};
                return CMPIData{CMPI_null, CMPI_notFound, {}};
            }
            return strange(functions->getKey(of, name, status), isStrange, kind);
        };
        path = {real->hdl, &table};
        return &path;
    }
    static CMPIString* stringWithoutText() {
        static const CMPIStringFT table = [] {
            CMPIStringFT functions{};
            functions.ftVersion = CMPICurrentVersion;
            functions.getCharPtr = [](const CMPIString*, CMPIStatus*) -> const char* { return nullptr; };
            return functions;
        }();
        static CMPIString string{nullptr, &table};
        return &string;
    }

private:
    static CMPIData strange(CMPIData key, bool isStrange, Kind kind) {
        if (isStrange) {
            key.type = CMPI_string;
            key.value.string = kind == NoText ? stringWithoutText() : nullptr;
        }
        return key;
    }
};

TEST_P(Conformance, survivesKeysThatNoBrokerShouldSend) {
    const auto all = tested.instances();
    if (all.empty())
        GTEST_SKIP() << "has no instances";
    auto requests = changes();
    requests.push_back({.operation = Operation::GetInstance, .path = all[0].path});
    const auto keyCount = static_cast<CMPICount>(tested.keys().size());
    for (const Request& request : requests)
        for (CMPICount key = 0; key < keyCount; ++key)
            for (const auto kind : {StrangePath::NoString, StrangePath::NoText, StrangePath::OtherTwice}) {
                if (request.operation == Operation::CreateInstance ||
                    (kind == StrangePath::OtherTwice && (keyCount == 1 || ignoresValues(request))))
                    continue;
                SCOPED_TRACE(toText(request) + ", key " + std::to_string(key) + ", strangeness " +
                             std::to_string(kind));
                expectRefused(tested.answer(
                    request, [&](const CMPIObjectPath* path) { return StrangePath::make(path, kind, key); }));
            }
    std::vector<CMPIString*> values(keyCount, StrangePath::stringWithoutText());
    EXPECT_FALSE(tested.find(values.data()));
    values.assign(keyCount, nullptr);
    EXPECT_FALSE(tested.find(values.data()));
    EXPECT_FALSE(tested.find(nullptr));
    EXPECT_EQ(tested.instances(), all) << "nothing was changed";
}

TEST_P(Conformance, refusesWhatItDoesNotSupport) {
    const auto& description = tested.description;
    const struct {
        Operation operation;
        bool isSupported;
        const char* refusal;
    } operations[] = {
        {Operation::EnumerateInstances, isEnumerated(), "Enumerate Instances  not supported"},
        {Operation::EnumerateInstanceNames, isEnumerated(), "Enumerate Instance Names not supported"},
        {Operation::GetInstance, isEnumerated(), "Get Instance not supported"},
        {Operation::ModifyInstance, description.modifies, "SetInstance not supported"},
        {Operation::CreateInstance, description.creates, "CreateInstance not supported"},
        {Operation::DeleteInstance, description.deletes, "DeleteInstance not supported"},
        {Operation::InvokeMethod, !description.servedMethods().empty(), "Invoke Method not supported"},
    };
    for (const auto& [operation, isSupported, refusal] : operations) {
        Request request{.operation = operation, .path = tested.path()};
        request.instance.path = request.path;
        request.method = "NoSuchMethod";
        const Reply reply = tested.answer(request);
        if (!isSupported)
            expectRefused(reply, refusal, CMPI_RC_ERR_NOT_SUPPORTED);
        else if (operation == Operation::InvokeMethod)
            expectRefused(reply);
    }
}

// Of these one is enough.
bool isOptional(const std::string& argument) {
    return argument == "Subject" || argument == "Target";
}

// Each method without its arguments, and with arguments of another type. Some say so in their value and a
// job.
TEST_P(Conformance, refusesWrongArguments) {
    const auto all = tested.instances();
    for (Request change : changes()) {
        const auto arguments = change.arguments;
        if (arguments.empty())
            continue;
        SCOPED_TRACE(toText(change));
        const auto expectNotDone = [&] {
            const Reply reply = tested.answer(change);
            EXPECT_TRUE(!reply.ok() || (!reply.values.empty() && broker::toText(reply.values[0]) != "0"));
            EXPECT_NE(reply.ok(), !reply.message.empty());
        };
        change.arguments.clear();
        expectNotDone();
        for (std::size_t i = 0; i < arguments.size(); ++i)
            for (const broker::Value& wrong :
                 {broker::Value{arguments[i].value.type, {}}, broker::Value{CMPI_real64, 2.0},
                  broker::Value{CMPI_boolean, true}}) {
                if (wrong == arguments[i].value || (wrong.isNull() && isOptional(arguments[i].name)))
                    continue;
                change.arguments = arguments;
                change.arguments[i].value = wrong;
                expectNotDone();
            }
    }
    EXPECT_EQ(tested.instances(), all) << "nothing was changed";
}

} // namespace
