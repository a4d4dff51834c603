// Object managers are built against CMPI headers of their own: ours must lay everything out as those do.
#include <cmpift.h>
#include <cstddef>
#include <gtest/gtest.h>
#include <vector>

// stub_provider.c
extern "C" {
extern const CMPIBroker* stubBroker;
CMPIInstanceMI* Stub_Create_InstanceMI(const CMPIBroker*, const CMPIContext*, CMPIStatus*);
CMPIMethodMI* Stub_Create_MethodMI(const CMPIBroker*, const CMPIContext*, CMPIStatus*);
}

namespace {

struct Layout {
    const char* name;
    size_t integers; // members at the start that are 4 bytes wide; all others are pointers
    size_t size;
    std::vector<size_t> offsets; // in the order of the standard
};

// clang-format off
// offsetof of each member: the preprocessor rescans once for each.
#define RESCAN(...) RESCAN1(RESCAN1(RESCAN1(RESCAN1(__VA_ARGS__))))
#define RESCAN1(...) RESCAN2(RESCAN2(RESCAN2(RESCAN2(__VA_ARGS__))))
#define RESCAN2(...) RESCAN3(RESCAN3(RESCAN3(RESCAN3(__VA_ARGS__))))
#define RESCAN3(...) __VA_ARGS__
#define PARENTHESES ()
#define OFFSETS_AGAIN() OFFSETS
#define OFFSETS(type, member, ...) offsetof(type, member) __VA_OPT__(, OFFSETS_AGAIN PARENTHESES (type, __VA_ARGS__))
#define LAYOUT(type, integers, ...) Layout{#type, integers, sizeof(type), {RESCAN(OFFSETS(type, __VA_ARGS__))}}
// clang-format on

const std::vector<Layout> layouts{
    LAYOUT(CMPIArgs, 0, hdl, ft),
    LAYOUT(CMPIArray, 0, hdl, ft),
    LAYOUT(CMPIAssociationMI, 0, hdl, ft),
    LAYOUT(CMPIContext, 0, hdl, ft),
    LAYOUT(CMPIDateTime, 0, hdl, ft),
    LAYOUT(CMPIEnumeration, 0, hdl, ft),
    LAYOUT(CMPIIndicationMI, 0, hdl, ft),
    LAYOUT(CMPIInstance, 0, hdl, ft),
    LAYOUT(CMPIInstanceMI, 0, hdl, ft),
    LAYOUT(CMPIMethodMI, 0, hdl, ft),
    LAYOUT(CMPIObjectPath, 0, hdl, ft),
    LAYOUT(CMPIPredicate, 0, hdl, ft),
    LAYOUT(CMPIResult, 0, hdl, ft),
    LAYOUT(CMPISelectCond, 0, hdl, ft),
    LAYOUT(CMPISelectExp, 0, hdl, ft),
    LAYOUT(CMPIString, 0, hdl, ft),
    LAYOUT(CMPISubCond, 0, hdl, ft),
    LAYOUT(CMPIArgsFT, 1, ftVersion, release, clone, addArg, getArg, getArgAt, getArgCount),
    LAYOUT(CMPIArrayFT, 1, ftVersion, release, clone, getSize, getSimpleType, getElementAt, setElementAt),
    LAYOUT(CMPIAssociationMIFT, 2, ftVersion, miVersion, miName, cleanup, associators, associatorNames,
           references, referenceNames, associatorsFiltered, referencesFiltered),
    LAYOUT(CMPIBroker, 0, hdl, bft, eft, xft, mft),
    LAYOUT(CMPIBrokerEncFT, 1, ftVersion, newInstance, newObjectPath, newArgs, newString, newArray,
           newDateTime, newDateTimeFromBinary, newDateTimeFromChars, newSelectExp, classPathIsA, toString,
           isOfType, getType, getMessage, logMessage, trace, newCMPIError, openMessageFile, closeMessageFile,
           getMessage2, newPropertyList, newStringCP, newEnumerationFilter),
    LAYOUT(CMPIBrokerExtFT, 1, ftVersion, resolveFileName, newThread, joinThread, exitThread, cancelThread,
           threadSleep, threadOnce, createThreadKey, destroyThreadKey, getThreadSpecific, setThreadSpecific,
           newMutex, destroyMutex, lockMutex, unlockMutex, newCondition, destroyCondition, condWait,
           timedCondWait, signalCondition, destroyMutex2, lockMutex2, unlockMutex2, destroyCondition2),
    LAYOUT(CMPIBrokerFT, 2, brokerCapabilities, brokerVersion, brokerName, prepareAttachThread, attachThread,
           detachThread, deliverIndication, enumerateInstanceNames, getInstance, createInstance,
           modifyInstance, deleteInstance, execQuery, enumerateInstances, associators, associatorNames,
           references, referenceNames, invokeMethod, setProperty, getProperty, enumerateInstancesFiltered,
           associatorsFiltered, referencesFiltered),
    LAYOUT(CMPIBrokerMemFT, 1, ftVersion, mark, release, cmpiMalloc, cmpiCalloc, cmpiRealloc, cmpiStrDup,
           cmpiFree, freeInstance, freeObjectPath, freeArgs, freeString, freeArray, freeDateTime,
           freeSelectExp, freeChars),
    LAYOUT(CMPIContextFT, 1, ftVersion, release, clone, getEntry, getEntryAt, getEntryCount, addEntry),
    LAYOUT(CMPIDateTimeFT, 1, ftVersion, release, clone, getBinaryFormat, getStringFormat, isInterval),
    LAYOUT(CMPIEnumerationFT, 1, ftVersion, release, clone, getNext, hasNext, toArray),
    LAYOUT(CMPIIndicationMIFT, 2, ftVersion, miVersion, miName, cleanup, authorizeFilter, mustPoll,
           activateFilter, deActivateFilter, enableIndications, disableIndications, authorizeFilterCollection,
           activateFilterCollection, deActivateFilterCollection),
    LAYOUT(CMPIInstanceFT, 1, ftVersion, release, clone, getProperty, getPropertyAt, getPropertyCount,
           setProperty, getObjectPath, setPropertyFilter, setObjectPath, setPropertyWithOrigin),
    LAYOUT(CMPIInstanceMIFT, 2, ftVersion, miVersion, miName, cleanup, enumerateInstanceNames,
           enumerateInstances, getInstance, createInstance, modifyInstance, deleteInstance, execQuery,
           enumerateInstancesFiltered),
    LAYOUT(CMPIMethodMIFT, 2, ftVersion, miVersion, miName, cleanup, invokeMethod),
    LAYOUT(CMPIObjectPathFT, 1, ftVersion, release, clone, setNameSpace, getNameSpace, setHostname,
           getHostname, setClassName, getClassName, addKey, getKey, getKeyAt, getKeyCount,
           setNameSpaceFromObjectPath, setHostAndNameSpaceFromObjectPath, getClassQualifier,
           getPropertyQualifier, getMethodQualifier, getParameterQualifier, toString),
    LAYOUT(CMPIResultFT, 1, ftVersion, release, clone, returnData, returnInstance, returnObjectPath,
           returnDone, returnError),
    LAYOUT(CMPISelectExpFT, 1, ftVersion, release, clone, evaluate, getString, getDOC, getCOD,
           evaluateUsingAccessor),
    LAYOUT(CMPIStringFT, 1, ftVersion, release, clone, getCharPtr, newCharsCP),
};

TEST(CmpiLayout, membersStandInTheStandardsOrder) {
    for (const Layout& layout : layouts) {
        size_t expected = 0;
        for (size_t i = 0; i < layout.offsets.size(); ++i) {
            const size_t width = i < layout.integers ? 4 : sizeof(void*);
            expected = (expected + width - 1) / width * width;
            EXPECT_EQ(layout.offsets[i], expected) << layout.name << ", member " << i;
            expected += width;
        }
        EXPECT_EQ(layout.size, expected) << layout.name;
    }
}

TEST(CmpiValues, areLaidOutForTheirWidestMember) {
    EXPECT_EQ(offsetof(CMPIStatus, msg), sizeof(void*));
    EXPECT_EQ(sizeof(CMPIStatus), 2 * sizeof(void*));
    EXPECT_EQ(offsetof(CMPIData, state), 2U);
    EXPECT_EQ(offsetof(CMPIData, value), alignof(CMPIValue));
    EXPECT_EQ(sizeof(CMPIData), alignof(CMPIValue) + 2 * sizeof(void*)); // the address and length of CMPI_ptr
}

TEST(CmpiValues, haveTheStandardsCodes) {
    const struct {
        int type, code;
    } codes[] = {
        {CMPI_boolean, 0x0002},  {CMPI_char16, 0x0003},   {CMPI_real32, 0x0008},  {CMPI_real64, 0x000C},
        {CMPI_uint8, 0x0080},    {CMPI_uint16, 0x0090},   {CMPI_uint32, 0x00A0},  {CMPI_uint64, 0x00B0},
        {CMPI_sint8, 0x00C0},    {CMPI_sint16, 0x00D0},   {CMPI_sint32, 0x00E0},  {CMPI_sint64, 0x00F0},
        {CMPI_instance, 0x1000}, {CMPI_ref, 0x1100},      {CMPI_args, 0x1200},    {CMPI_string, 0x1600},
        {CMPI_chars, 0x1700},    {CMPI_dateTime, 0x1800}, {CMPI_uint16A, 0x2090}, {CMPI_stringA, 0x3600}};
    for (const auto& [type, code] : codes)
        EXPECT_EQ(type, code);
}

TEST(Stubs, makeProvidersInC) {
    const CMPIBroker broker{};
    stubBroker = nullptr;
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIInstanceMI* const instances = Stub_Create_InstanceMI(&broker, nullptr, &status);
    ASSERT_NE(instances, nullptr);
    EXPECT_EQ(stubBroker, &broker);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED) << "the hook runs last, and sees the arguments";
    EXPECT_EQ(instances->ft->deleteInstance(instances, nullptr, nullptr, nullptr).rc,
              CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_NE(Stub_Create_MethodMI(&broker, nullptr, nullptr), nullptr);
}

} // namespace
