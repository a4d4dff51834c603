/* Delivery of alerts: events of the BMC's log become mails, or CIM_AlertIndication instances that are posted
 * to CIM-XML listeners. */
#ifndef PROVIDER_HELPER_ALERT_DELIVERY_H
#define PROVIDER_HELPER_ALERT_DELIVERY_H

#include "platform/event_descriptions.h"
#include "platform/interop.h"
#include "platform/mail.h"
#include "platform/sel_event_message.h"
#include "provider_helper/sensors.h"
#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Monitor ------------------------------------------------------------------------------------------- */

/* Creates the event pipe when it is not there, and links the object manager's interop library. Called once,
 * before the monitor is started. A pipe that cannot be created ends the process with status 0: a BMC's object
 * manager is restarted then. */
PH_EXPORT void PH_Init_Indication(void);

/* Body of the monitor thread: reads messages from the event pipe and delivers each in turn. Detaches itself,
 * and does not return while the process lasts. It ends when the pipe cannot be opened, and with a line on
 * standard error when the object manager's broker, context or memory manager cannot be had. A message that
 * cannot be delivered is dropped. */
PH_EXPORT void* ReadSELEvents_And_Deliver(void* unused);

/* Removes the event pipe. The interop library stays open. */
PH_EXPORT void PH_Delete_Pipe(void);

/* What PH_Init_Indication found; NULL for what is not there. The first three are of the interop library, the
 * others of the process's global symbols. */
PH_EXPORT extern void* g_InteropLibHandle;
PH_EXPORT extern GenerateIndicationResponse GenerateCIMXML;
PH_EXPORT extern SendIndications DeliverIndication;
PH_EXPORT extern GetBrokerFunction pGetBroker;
PH_EXPORT extern GetContextFunction pGetContext;
PH_EXPORT extern GetHeapFunction GetHeap;
PH_EXPORT extern ReleaseHeapFunction ReleaseHeap;

/* ---- Events in words ----------------------------------------------------------------------------------- */

enum { ALERT_ARGUMENTS = 5 };

typedef struct {
    int32_t argumentCount;
    char Description[256];
    char EventID[64];                  /* SEL record ID, two hexadecimal digits or more */
    char AlertingManagedElement[256];  /* "<sensor type>:<sensor number>", decimal; empty: no such sensor */
    int32_t AlertingElementFormat;     /* 1 other */
    int32_t AlertType;                 /* 5 device alert */
    char PerceivedSeverity[64];        /* "<number> (<text>)"; empty: none is known */
    char SystemName[256];              /* empty */
    char SystemCreationClassName[256]; /* empty */
    char OwningEntity[64];
    uint32_t EventTime; /* seconds, as the SEL has it */
    char MessageID[64]; /* decimal */
    /* The sensor's ElementName, channel, destination, "Asserted" or "Deasserted", sensor type. */
    char MessageArguments[ALERT_ARGUMENTS][64];
} AlertRecord;

/* Fills a zeroed alert. Returns -1 when the sensors cannot be read. */
PH_EXPORT int SelToAlert(const SelEventMessage* message, AlertRecord* alert, int destination, int channel);

/* Writes texts of a SEL record (16 bytes) into EVENT_TEXT_SIZE bytes, with the event-description library.
 * Returns -1 when it is not open, and when it has no such text: then it is closed. */
PH_EXPORT int get_sensor_type(const uint8_t* record, char* text);
PH_EXPORT int get_alert_severity_level(const uint8_t* record, char* text);
PH_EXPORT int get_description(const uint8_t* record, char* text);
/* The event-description library, while an alert is filled. */
PH_EXPORT extern void* handle;

/* Finds the number that the SMASH database has for a description ("Unknown" for NULL and ""), or -1. */
PH_EXPORT int get_message_id(const char* description);

/* ---- Indications --------------------------------------------------------------------------------------- */

/* Makes a CIM_AlertIndication of namespace root/interop, which the caller releases. Returns 0, or 1 and no
 * instance. */
PH_EXPORT int Create_AlertIndication_Instance(const CMPIBroker* broker, const CMPIContext* context,
                                              const AlertRecord* alert, CMPIInstance** instance,
                                              const SelEventMessage* message);
/* Sets its properties. Returns 0, or 1 at the first that cannot be set. IndicationTime's microseconds are
 * counted in 32 bits; it is missing for an event without a time. */
PH_EXPORT int Set_AlertIndication_Properties(const CMPIBroker* broker, const CMPIContext* context,
                                             const AlertRecord* alert, CMPIInstance* instance,
                                             const SelEventMessage* message);

/* Delivers through the broker in namespace root/interop; when that fails, as often and at such intervals
 * as the first CIM_IndicationService says, in namespace root/cimv2. The second function does only the
 * retries. Returns 0 when the indication was delivered. */
PH_EXPORT int Deliver_SEL_Indication(const CMPIBroker* broker, const CMPIContext* context,
                                     const CMPIInstance* instance);
PH_EXPORT int RetryDeliverIndication(const CMPIBroker* broker, const CMPIContext* context,
                                     const CMPIInstance* instance);

/* Writes 1024 bytes to the pipe /tmp/Alert_fifo, when somebody reads from it. */
enum { ALERT_PIPE_MESSAGE_SIZE = 1024 };
PH_EXPORT void SendIndication(const char* buffer);

/* ---- Mails --------------------------------------------------------------------------------------------- */

/* Fills a zeroed mail to the user of an e-mail alert destination. Returns -1 when the destination's user
 * has no address, when there is no server, or when the BMC cannot be asked. The request holds the server's
 * password then. */
PH_EXPORT int ConvertAlertToMail(const AlertRecord* alert, AlertMailRequest* mail, uint8_t selector,
                                 uint8_t channel);

/* Appends "\r\n<name>\t\t:\t<value>" to a text, with one tab less behind a name of 16 characters or more.
 * The caller's buffer has room for it. Appends nothing and returns -1 for an empty value. */
PH_EXPORT int AddPropertyValToBuffer(char* buffer, const char* name, const char* value);
/* Appends the line "Severity" for 0, 2, 3, 6 and 7 (DMTF PerceivedSeverity). Returns 0. */
PH_EXPORT int GetEventSev(int severity, char* buffer);

/* ---- Sensors of events --------------------------------------------------------------------------------- */

/* Returns the broker's instances of CIM_Sensor in root/cimv2; NULL when it gives none. */
PH_EXPORT CMPIEnumeration* CacheSensorInstances(const CMPIBroker* broker, const CMPIContext* context);
/* Returns the next instance with this sensor number (5 for 0), or NULL. */
PH_EXPORT CMPIInstance* GetSpecificEventSensorObjectInstances(int sensorNumber, CMPIEnumeration* sensors);
/* Returns 1 when a DeviceID numbers this sensor, 0 otherwise. */
PH_EXPORT int IsEventingSensor(const char* deviceId, int sensorNumber);
/* See PH_Parse_Sensor_DeviceID. Returns 0. */
PH_EXPORT int ReturnParsedSensorDeviceID(const char* deviceId, PHSensorDeviceId* parts);

/* Copies a string property, cut to `size` - 1 characters; empty for one that is missing. Returns 0. */
PH_EXPORT int get_cmpi_str_property_value(const CMPIInstance* instance, const char* name, char* buffer,
                                          int size);
/* Does the same, and writes the text of the instance's object path. Returns -1 when there is no path. */
PH_EXPORT int get_alerting_managed_element_from_instance(const CMPIInstance* instance, const char* name,
                                                         char* buffer, int size, char* path, int pathSize);

#ifdef __cplusplus
}
#endif

#endif
