// CIM_CLPProtocolEndpoint: the sessions of the command-line protocol daemon.
#include "services/clp_daemon.h"
#include "services/clp_options.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/back-ends/clp_library.h"
#include "Utility/engine/processor_endpoint.h"

#include <cstdio>

constexpr const char* const g_CLPProtocolEndpointKeyList[4] = {"SystemCreationClassName", "CreationClassName",
                                                               "SystemName", "Name"};

namespace ph::clp_protocol_endpoint {
namespace {

using Record = CLPProtocolEndpointRecord;

constexpr const char* className = "CIM_CLPProtocolEndpoint";

constexpr auto properties = joined(endpointProperties<Record>, clp::optionProperties<Record>);

class Sessions {
public:
    Sessions(RecordArray<Record>& all, Detail detail) : all_(all), detail_(detail) {}

    int append() {
        if (PH_GetSPSystemName(systemName_) != 0)
            return -1;
        const ClpLibrary library;
        const auto request = library.find<decltype(&SMP_Frame_Sessions_Req)>("SMP_Frame_Sessions_Req");
        CLPSessionRow* rows = nullptr;
        int count = 0;
        if (request == nullptr || request(&rows, &count) != 0)
            return appendClients();
        const HeapPtr<CLPSessionRow> owner(rows);
        for (int i = 0; i < count; ++i)
            if (append(rows[i].number, &rows[i].options) != 0)
                return -1;
        return 0;
    }

private:
    int appendClients() {
        std::vector<std::uint32_t> processes;
        if (listClpClients(processes) != 0)
            return -1;
        for (const std::uint32_t process : processes)
            if (append(process, nullptr) != 0)
                return -1;
        return 0;
    }

    int append(std::uint32_t number, const CLPOptions* options) {
        Record* session = all_.append();
        if (session == nullptr)
            return -1;
        setHostedKeys(*session, processorClass, systemName_, className);
        std::snprintf(session->Name, sizeof(session->Name), "CLPProtocolEndpoint%u", number);
        return detail_ == Detail::Names ? 0 : PH_Fill_CLPProtocolEndpoint(options, session);
    }

    RecordArray<Record>& all_;
    Detail detail_;
    char systemName_[256] = "";
};

int enumerate(RecordArray<Record>& all, Detail detail) {
    return Sessions(all, detail).append();
}

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_ProtocolEndpoint",
    .source = "the daemon smashclpd through libsmclpdpkt.so, or the processes of its clients",
    .keys = g_CLPProtocolEndpointKeyList,
    .properties = properties,
    .enumerate = enumerate};

} // namespace
} // namespace ph::clp_protocol_endpoint

PH_EXPORT_CLASS_FAMILY(CLPProtocolEndpoint, CLPProtocolEndpointRecord, ph::clp_protocol_endpoint::definition)

int PH_Fill_CLPProtocolEndpoint(const CLPOptions* options, CLPProtocolEndpointRecord* record) {
    ph::fillEndpoint(*record, "ClassName[Session Number]", "SM CLP");
    ph::copyText(record->ElementName, "SM CLP session");
    ph::clp::setOptions(*record, options);
    return 0;
}
