/* Indications: which alerts a client wants, and where they go. */
#ifndef PROVIDER_HELPER_INDICATIONS_H
#define PROVIDER_HELPER_INDICATIONS_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Filters ------------------------------------------------------------------------------------------- */

/* CIM_IndicationFilter: an enabled platform event filter (PEF) of the BMC, or a filter for CIM-XML listeners
 * in the SMASH database.
 *
 * The name tells which: "IndicationFilter:IPMIPEF-<policy>-<n>" is filter n of the BMC's table (from 1),
 * whose alerts go to that alert policy; "<anything>:CIMXML-<number>" is a row of the database. */
typedef struct {
    char SystemCreationClassName[256]; /* key; "CIM_SPComputerSystem" */
    char CreationClassName[256];       /* key; "CIM_IndicationFilter" */
    char SystemName[256];              /* key; of the service processor */
    char Name[256];                    /* key */
    bool IndividualSubscriptionSupported;
    char SourceNamespace[256];
    char QueryLanguage[256];
    char Query[256];
} IndicationFilterRecord;

/* Requests that change filters; the rest of a request's properties is not looked at.
 *
 *   create   takes Name and Query, and returns the object path. A PEF filter takes the slot that its name
 *            tells, which must not be in use: the slot's other fields stay, its filter is enabled and alerts.
 *            Whether the database has stored a CIM-XML filter is not looked at. Failures:
 *              1 "Key Properties missing"
 *              4 "Invalid key properties : Only 'Name' prop is variable, refer other instances of IF"
 *              1 "Required Query property"
 *              1 "Required Name property"
 *              4 "Invalid format for property "Name"\n"
 *              1 "CreateInstance Failed - Max Filter limit exceeded \n"
 *              1 "CreateInstance Failed - Filter already exists and active \n" (PEF)
 *              1 "Filter already exists and active\n" (CIM-XML)
 *              1 "CQL QueryCompilation Error - Check syntax / filter properties NOTE : Only
 *                (AlertingManagedElement & PerceivedSeverity) supported\n" (one line)
 *              1 "CreateInstance Failed \n"
 *   modify   takes Query. Failures:
 *              1 "Key Properties missing"
 *              1 "ModifyInstance Failed - Given instance does not exist \n"
 *              1 "Required Query property", and that of a query as above
 *              1 "ModifyInstance Failed \n"
 *   delete   clears the slot, or removes the row. A filter of a third kind stays, with success. Failures:
 *              1 "Key Properties missing"
 *              1 "DeleteInstance Failed - Given instance does not exist \n"
 *              1 "Delete Instance Failed \n" */
PH_DECLARE_CLASS_FAMILY(IndicationFilter, IndicationFilterRecord);
PH_EXPORT int PH_Fill_IndicationFilter(const char* query, IndicationFilterRecord* record);
PH_EXPORT extern const char* const g_IndicationFilterKeyList[4];

/* Appends a filter to an array of `*count` records; with `namesOnly` only its keys. Returns -1 for a NULL
 * argument and without memory: then the array is freed, and both are zeroed. */
PH_EXPORT int PH_Create_IndicationFilterInstance(IndicationFilterRecord** records, int* count,
                                                 const char* systemName, const char* name, const char* query,
                                                 int namesOnly);

/* A filter's query:
 *   select * from CIM_AlertIndication [where <condition> [and <condition>]]
 *   condition:  PerceivedSeverity=<number> | AlertingManagedElement=<sensor type>:<sensor number>
 * with sensor type and number in two hexadecimal digits, FFh for any, and no blanks around '='. Of
 * PerceivedSeverity, 1 to 4, 6 and 7 stand for the event severities monitor, information, non-critical, OK,
 * critical and not recoverable; any other value for unspecified.
 *
 * Writes the query of an entry's severity, sensor type and number; `query` holds 256 characters. A severity
 * of several bits reads PerceivedSeverity=0. */
PH_EXPORT void ConstructFilterQuery(char* query, const CIM_PEFEntry* entry);
/* Writes what a query selects into these three fields of an entry. Returns -1 for a text that is no such
 * query, or that asks for sensor 00:00; the fields then have no meaning. Key words are recognised in any
 * case, property names as they are written here. */
PH_EXPORT int CompileQueryAndSeverity(const char* query, CIM_PEFEntry* entry);

/* Returns 0 when the path's SystemCreationClassName, CreationClassName and SystemName are those of all
 * filters. */
PH_EXPORT int ValidateConstantKeyPropertiesIF(const CMPIObjectPath* ref);

/* ---- Listener destinations ----------------------------------------------------------------------------- */

/* A place that alerts are sent to, of each class of destinations. */
typedef struct {
    char SystemCreationClassName[256]; /* key; "CIM_SPComputerSystem" */
    char CreationClassName[256];       /* key */
    char SystemName[256];              /* key; of the service processor */
    char Name[256];                    /* key */
    char ElementName[256];
    char Destination[256];
    char ProtocolText[256]; /* not published */
    uint16_t Protocol;
    uint16_t PersistenceType; /* 3 transient */
} ListenerDestinationRecord;

/* CIM_ListenerDestinationCIMXML: listeners that indications are posted to, kept in the SMASH database. The
 * name is "CIMXML-" and anything, the destination a URL. Protocol is 2.
 *
 *   create   takes Name and Destination, and returns the object path. Failures:
 *              1 "Key Properties missing"
 *              4 "Invalid Key Properties : Only 'Name' prop is variable, refer other instances of LD"
 *              1 "Empty/Invalid value for property 'Name' - Valid Format CIMXML-[ID]"
 *              1 "Empty/Invalid value for property 'Destination'"
 *              1 "Instance already exists"
 *              1 "Create Instance Failed"
 *   modify   takes Destination. Failures:
 *              1 "Key Properties missing"
 *              1 "Given instance does not exist"
 *              7 "Empty/Invalid value for property 'Destination'"
 *              1 "SetInstance Failed"
 *   delete   Failures: the first two of modify, and
 *              1 "Delete Instance Failed" */
PH_DECLARE_CLASS_FAMILY(ListenerDestinationCIMXML, ListenerDestinationRecord);
PH_EXPORT int PH_Fill_ListenerDestinationCIMXML(const CimxmlDestinationRow* row,
                                                ListenerDestinationRecord* record);
PH_EXPORT extern const char* const g_ListenerDestinationCIMXMLKeyList[4];

/* CIM_ListenerDestinationSMTP: alert destinations of the BMC's LANs that are of the e-mail kind. The name is
 * "SMTP:<channel>:<selector>", the channel in two hexadecimal digits and the selector 1 to 15; the
 * destination is "UID:<n>", the BMC's user who is mailed.
 *
 * CIM_ListenerDestinationSNMP: those of the trap kind, with an address. The name begins with "SNMP", the
 * destination is an IPv4 or IPv6 address.
 *
 * Protocol is 1 (other) for both.
 *
 *   create   takes Name and Destination, and returns the object path. A selector of the e-mail kind is in use
 *            for SMTP whomever it mails, one of the trap kind for SNMP when it has an address; a selector of
 *            any other kind is taken over. An e-mail destination gets a subject and a message of its own.
 *            Failures, in this order:
 *              1 "Key Properties missing"
 *              4 "Invalid Key Properties : Only 'Name' prop is variable, refer other instances of LD"
 *              1 "Required Name property"
 *              1 "Required Destination property"
 *              1 "Name Format Error / Index threshold error - Check the requested Name \n"
 *              4 "Invalid protocol mentioned in  'Name' property \n" (SMTP)
 *              4 "Invalid protocol mentioned in Name property \n" (SNMP)
 *              1 "Requested Destination Index already active\n"
 *              1 "Invalid Destination format for SMTP \n"
 *              1 "Invalid Destination Address\n" (SNMP, for 0.0.0.0 and ::)
 *              1 "Create Instance Failed"
 *   modify   takes Destination. Failures:
 *              1 "Key Properties missing"
 *              1 "Given instance does not exist"
 *              those of the destination as above
 *              1 "SetInstance Failed"
 *   delete   makes the selector a trap destination without an address, and forgets whom it mails. Failures:
 *            the first two of modify, and
 *              1 "Delete Instance Failed"
 *
 * User 0 ("UID:0", and any text that has no number) changes nothing, with success. */
PH_DECLARE_CLASS_FAMILY(ListenerDestinationSMTP, ListenerDestinationRecord);
PH_DECLARE_CLASS_FAMILY(ListenerDestinationSNMP, ListenerDestinationRecord);
PH_EXPORT int PH_Fill_ListenerDestinationSMTP(const char* destination, ListenerDestinationRecord* record);
PH_EXPORT int PH_Fill_ListenerDestinationSNMP(const char* destination, ListenerDestinationRecord* record);
PH_EXPORT extern const char* const g_ListenerDestinationSMTPKeyList[4];
PH_EXPORT extern const char* const g_ListenerDestinationSNMPKeyList[4];

/* These work as PH_Create_IndicationFilterInstance does. */
PH_EXPORT int PH_Create_ListenerDestinationSMTPInstance(ListenerDestinationRecord** records, int* count,
                                                        const char* systemName, const char* name,
                                                        const char* destination, int namesOnly);
PH_EXPORT int PH_Create_ListenerDestinationSNMPInstance(ListenerDestinationRecord** records, int* count,
                                                        const char* systemName, const char* name,
                                                        const char* destination, int namesOnly);

/* Returns 0 for "http://<host>:<port>" with whatever follows, -1 for any other text and for NULL. The host
 * is an IPv4 address: names are refused, and so are IPv6 addresses, because the host ends at the first
 * ':'. */
PH_EXPORT int ValidateCIMXMLDestination(const char* url);
/* These work as ValidateConstantKeyPropertiesIF does; LD is for SMTP. */
PH_EXPORT int ValidateConstantKeyPropertiesLD(const CMPIObjectPath* ref);
PH_EXPORT int ValidateConstantKeyPropertiesLDSNMP(const CMPIObjectPath* ref);
PH_EXPORT int ValidateConstantKeyPropertiesLDCIMXML(const CMPIObjectPath* ref);

#ifdef __cplusplus
}
#endif

#endif
