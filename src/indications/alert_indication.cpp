// Alerts as CIM_AlertIndication instances.
#include "provider_helper/alert_delivery.h"
#include "Utility/values/cmpi_ptr.h"
#include "Utility/values/refused_type.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr const char* nameSpace = PH_INTEROP_NAMESPACE;
constexpr const char* className = "CIM_AlertIndication";

// Sets the properties of an instance until one cannot be set.
class PropertyWriter {
public:
    explicit PropertyWriter(CMPIInstance* instance) : instance_(instance) {}

    void text(const char* name, const char* value) {
        if (*value != '\0')
            set(name, reinterpret_cast<const CMPIValue*>(value), CMPI_chars);
    }
    void number(const char* name, int number) {
        CMPIValue value{};
        value.uint16 = static_cast<CMPIUint16>(number);
        set(name, &value, CMPI_uint16);
    }
    // Makes an object of the broker's; nullptr when it could not be made.
    template <class Object>
    void object(const char* name, Object* CMPIValue::*member, CMPIType type,
                const ph::CmpiPtr<Object>& object) {
        CMPIValue value{};
        value.*member = object.get();
        failed_ = failed_ || object == nullptr;
        set(name, &value, type);
    }
    // A text that begins with a number. Brokers that know the class's type take the number only.
    void severity(const CMPIBroker* broker, const char* name, const char* text) {
        const ph::CmpiPtr<CMPIString> string(CMNewString(broker, text, nullptr));
        object(name, &CMPIValue::string, CMPI_string, string);
        if (string == nullptr || !ph::isRefusedType(lastCode_))
            return;
        failed_ = false;
        number(name, std::atoi(text));
    }
    bool failed() const { return failed_; }

private:
    void set(const char* name, const CMPIValue* value, CMPIType type) {
        if (failed_)
            return;
        lastCode_ = CMSetProperty(instance_, name, value, type).rc;
        failed_ = lastCode_ != CMPI_RC_OK;
    }

    CMPIInstance* instance_;
    CMPIrc lastCode_ = CMPI_RC_OK;
    bool failed_ = false;
};

// The product has 32 bits: the time of an event wraps every 4295 seconds of its count.
CMPIUint64 microseconds(std::uint32_t seconds) {
    return static_cast<std::uint32_t>(seconds * 1'000'000U);
}

} // namespace

int Set_AlertIndication_Properties(const CMPIBroker* broker, const CMPIContext* /*context*/,
                                   const AlertRecord* alert, CMPIInstance* instance,
                                   const SelEventMessage* /*message*/) {
    PropertyWriter properties(instance);
    if (alert->EventTime != 0)
        properties.object("IndicationTime", &CMPIValue::dateTime, CMPI_dateTime,
                          ph::CmpiPtr<CMPIDateTime>(CMNewDateTimeFromBinary(
                              broker, microseconds(alert->EventTime), false, nullptr)));
    properties.text("Description", alert->Description);
    properties.text("EventID", alert->EventID);
    properties.number("AlertingElementFormat", alert->AlertingElementFormat);
    properties.number("AlertType", alert->AlertType);
    properties.severity(broker, "PerceivedSeverity", alert->PerceivedSeverity);
    properties.text("SystemCreationClassName", alert->SystemCreationClassName);
    properties.text("SystemName", alert->SystemName);
    properties.text("OwningEntity", alert->OwningEntity);
    properties.text("MessageID", alert->MessageID);
    properties.text("AlertingManagedElement", alert->AlertingManagedElement);
    properties.object(
        "MessageArguments", &CMPIValue::array, CMPI_stringA,
        ph::CmpiPtr<CMPIArray>(Dup_const_string_Array(broker, alert->argumentCount, alert->MessageArguments,
                                                      sizeof(alert->MessageArguments[0]))));
    return properties.failed() ? 1 : 0;
}

int Create_AlertIndication_Instance(const CMPIBroker* broker, const CMPIContext* context,
                                    const AlertRecord* alert, CMPIInstance** instance,
                                    const SelEventMessage* message) {
    *instance = nullptr;
    const ph::CmpiPtr<CMPIObjectPath> path(CMNewObjectPath(broker, nameSpace, className, nullptr));
    if (path == nullptr)
        return 1;
    ph::CmpiPtr<CMPIInstance> made(CMNewInstance(broker, path.get(), nullptr));
    if (made == nullptr || Set_AlertIndication_Properties(broker, context, alert, made.get(), message) != 0)
        return 1;
    *instance = made.release();
    return 0;
}
