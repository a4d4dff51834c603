// A CMPI broker in the process: it loads provider modules as an object manager does and answers requests with
// them.
//
//     broker::Broker broker;
//     broker.loadProvider("libProviderHelperProviders.so", "ProviderHelper");
//     const broker::Reply reply = broker.enumerateInstances({.nameSpace = "root/cimv2", .className =
//     "CIM_Sensor"});
//
// Requests may come from several threads at once. The handlers and the user are set before the first one.
#pragma once

#include "broker/value.h"

#include <cmpift.h>
#include <functional>

namespace broker {

class Frame;
class State;

// Names of the wanted properties; without a list all of them are.
using PropertyList = std::optional<std::vector<std::string>>;

// What narrows an operation on associations (DSP0200); an empty name does not. A class stands for its
// subclasses too, which is for the provider to know. References do not use the last two.
struct AssociationFilter {
    std::string assocClass = {};
    std::string resultClass =
        {};                // of the associated object; of the association where references are asked for
    std::string role = {}; // of the object that is asked about
    std::string resultRole = {};
};

struct Request {
    enum class Operation {
        EnumerateInstances,
        EnumerateInstanceNames,
        GetInstance,
        ModifyInstance,
        CreateInstance,
        DeleteInstance,
        InvokeMethod,
        Associators,
        AssociatorNames,
        References,
        ReferenceNames
    };
    Operation operation;
    ObjectPath path;
    Instance instance = {};        // modify, create
    PropertyList properties = {};  // enumerate, get, modify, associators, references
    std::string method = {};       // invoke
    NamedValues arguments = {};    // invoke
    AssociationFilter filter = {}; // associators, references, and their names
    std::string user = {};         // whom it comes from; empty: whom the broker says
    // Takes each instance as soon as the provider returns it, so that the reply has none. It may still fail then.
    std::function<void(const Instance&)> takeInstance = {};
};

// What a provider returned, and how it ended.
struct Reply {
    CMPIrc code = CMPI_RC_OK;
    std::string message = {};
    std::vector<Instance> instances = {};
    std::size_t taken = 0;              // instances that went to takeInstance
    std::vector<ObjectPath> paths = {}; // of names that were asked for, or of the created instance
    std::vector<Value> values = {};     // a method's return value is the first
    NamedValues arguments = {};         // a method's out-arguments
    bool done = false;                  // the provider said that all is returned

    bool ok() const { return code == CMPI_RC_OK; }
};

// Returns "CMPI_RC_ERR_NOT_SUPPORTED" and the like; the number for codes without a name.
std::string codeName(CMPIrc code);

class LoadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class Broker {
public:
    // Answers a request. One that is set takes the place of the loaded providers.
    using Router = std::function<Reply(const Request& request)>;
    // Receives what providers deliver; an exception makes the delivery fail with its text.
    using IndicationHandler = std::function<void(const std::string& nameSpace, const Instance& indication)>;
    // Receives what providers log and trace.
    using LogHandler = std::function<void(const std::string& id, const std::string& text)>;

    Broker();
    ~Broker(); // ends the providers
    Broker(const Broker&) = delete;
    Broker& operator=(const Broker&) = delete;

    void setRouter(Router router);
    void setIndicationHandler(IndicationHandler handler);
    void setLogHandler(LogHandler handler);
    // Object managers differ in what they put up with. A strict broker
    // - takes no chars as elements of an array of strings,
    // - takes properties and keys only as the class declares them, by name and type,
    // - gives a new instance no properties for its path's keys,
    // - names all that was sent where ModifyInstance has no property list,
    // - hands CreateInstance a path without keys.
    // `declared` tells the type of a class's property: CMPI_null for any, nothing where there is no such one.
    using DeclaredType =
        std::function<std::optional<CMPIType>(const std::string& className, std::string_view property)>;
    void beStrict(DeclaredType declared);
    // Whom requests come from: context entry CMPIPrincipal. Without one, or with "", the entry is missing.
    void setUser(std::string user);

    // Loads a module and creates what it has of an instance, a method and an association provider, and of an
    // indication provider when somebody subscribes: through <name>_Create_…MI, else _Generic_Create_…MI. It
    // serves these classes, or with none named every class that no module loaded before does. Throws
    // LoadError, for a module with both kinds of entry points too.
    void loadProvider(const std::string& file, const std::string& name,
                      std::vector<std::string> classes = {});

    // A provider that fails gives a reply with its code and message, and without results.
    Reply execute(const Request& request);
    Reply enumerateInstances(const ObjectPath& path, const PropertyList& properties = {});
    Reply enumerateInstanceNames(const ObjectPath& path);
    Reply getInstance(const ObjectPath& path, const PropertyList& properties = {});
    Reply modifyInstance(const ObjectPath& path, const Instance& instance,
                         const PropertyList& properties = {});
    Reply createInstance(const ObjectPath& path, const Instance& instance);
    Reply deleteInstance(const ObjectPath& path);
    Reply invokeMethod(const ObjectPath& path, const std::string& method, const NamedValues& arguments = {});
    // Every association provider is asked, in the order of loading, until one fails.
    Reply associators(const ObjectPath& path, const AssociationFilter& filter = {},
                      const PropertyList& properties = {});
    Reply associatorNames(const ObjectPath& path, const AssociationFilter& filter = {});
    Reply references(const ObjectPath& path, const AssociationFilter& filter = {},
                     const PropertyList& properties = {});
    Reply referenceNames(const ObjectPath& path, const AssociationFilter& filter = {});

    // Tells the indication provider of the class in `source` that somebody listens with this query, or no
    // longer does: the filter is authorized and activated and indications are enabled, or the reverse. Throws
    // LoadError when the provider cannot be made.
    Reply subscribe(const std::string& query, const ObjectPath& source);
    // Makes the indication provider and enables it, for what it does where nobody listens.
    Reply enableIndications(const ObjectPath& source);
    Reply unsubscribe(const std::string& query, const ObjectPath& source);

    // These are for code that speaks CMPI itself. Objects that are made without a Scope last as long as the
    // broker.
    const CMPIBroker* handle() const;

    // Tests: how often CMPI functions were called, by the names of their table members ("setProperty";
    // "clone" and "release" are those of every object), and the nth call from now that fails, with code 1 and
    // without effect. Unknown names throw std::invalid_argument.
    static std::vector<std::string> callNames();
    unsigned calls(std::string_view name) const;
    void failCall(std::string_view name, unsigned nth); // 0: none fails
    void resetCalls();                                  // counts from 0, none fails

    // CMPI objects that exist, of scopes as well as clones.
    size_t liveObjects() const;

private:
    friend class Scope;
    std::shared_ptr<State> state_;
};

// CMPI objects that the thread makes go with its innermost scope. A request has its own. What an object is
// asked for (a property's text, an array's element) goes with that object.
class Scope {
public:
    explicit Scope(const Broker& broker);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

    // Make CMPI objects of this scope.
    CMPIObjectPath* make(const ObjectPath& path);
    CMPIInstance* make(const Instance& instance);
    CMPIArgs* makeArgs(const NamedValues& arguments = {});
    CMPIContext* makeContext(const NamedValues& entries = {});
    CMPIResult* makeResult();
    CMPIData makeData(const Value& value);

private:
    std::unique_ptr<Frame> frame_;
};

// The property list as providers take it, valid as long as this and the list.
class PropertyNames {
public:
    explicit PropertyNames(const PropertyList& properties);
    const char** names() { return given_ ? names_.data() : nullptr; }

private:
    bool given_;
    std::vector<const char*> names_; // ends with NULL
};

// Turn CMPI objects of this kind of broker into C++ values. Throw std::runtime_error for NULL where nothing
// else is said, and for what a Value cannot express.
Value toValue(const CMPIData& data);
ObjectPath toObjectPath(const CMPIObjectPath* path);
Instance toInstance(const CMPIInstance* instance);
NamedValues toNamedValues(const CMPIArgs* arguments);
std::string toString(const CMPIString* string); // NULL is ""

// What was returned so far through a result of this broker.
Reply toReply(const CMPIResult* result);
// Makes a reply without results from the status.
Reply toReply(const CMPIStatus& status);

} // namespace broker
