// CIM_CLPProtocolEndpoint: the sessions of the command-line protocol daemon.
#include "services/clp_daemon.h"
#include "services/clp_options.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/back-ends/clp_library.h"
#include "Utility/engine/processor_endpoint.h"

#include <cstdio>

constexpr const char* const g_CLPProtocolEndpointKeyList[4] = {"SystemCreationClassName", "CreationClassName",
                                                               "SystemName", "Name"};

namespace {

using Record = CLPProtocolEndpointRecord;

constexpr const char* className = "CIM_CLPProtocolEndpoint";

constexpr auto properties = ph::joined(ph::endpointProperties<Record>, ph::clp::optionProperties<Record>);

class Sessions {
public:
    Sessions(ph::RecordArray<Record>& all, ph::Detail detail) : all_(all), detail_(detail) {}

    int append() {
        if (PH_GetSPSystemName(systemName_) != 0)
            return -1;
        const ph::ClpLibrary library;
        const auto request = library.find<decltype(&SMP_Frame_Sessions_Req)>("SMP_Frame_Sessions_Req");
        CLPSessionRow* rows = nullptr;
        int count = 0;
        if (request == nullptr || request(&rows, &count) != 0)
            return appendClients();
        const ph::HeapPtr<CLPSessionRow> owner(rows);
        for (int i = 0; i < count; ++i)
            if (append(rows[i].number, &rows[i].options) != 0)
                return -1;
        return 0;
    }

private:
    int appendClients() {
        std::vector<std::uint32_t> processes;
        if (ph::listClpClients(processes) != 0)
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
        ph::setHostedKeys(*session, ph::processorClass, systemName_, className);
        std::snprintf(session->Name, sizeof(session->Name), "CLPProtocolEndpoint%u", number);
        return detail_ == ph::Detail::Names ? 0 : PH_Fill_CLPProtocolEndpoint(options, session);
    }

    ph::RecordArray<Record>& all_;
    ph::Detail detail_;
    char systemName_[256] = "";
};

int enumerate(ph::RecordArray<Record>& all, ph::Detail detail) {
    return Sessions(all, detail).append();
}

constexpr ph::ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_ProtocolEndpoint",
    .source = "the daemon smashclpd through libsmclpdpkt.so, or the processes of its clients",
    .keys = g_CLPProtocolEndpointKeyList,
    .properties = properties,
    .enumerate = enumerate};

} // namespace

PH_EXPORT_CLASS_FAMILY(CLPProtocolEndpoint, Record, definition)

int PH_Fill_CLPProtocolEndpoint(const CLPOptions* options, Record* record) {
    ph::fillEndpoint(*record, "ClassName[Session Number]", "SM CLP");
    ph::copyText(record->ElementName, "SM CLP session");
    ph::clp::setOptions(*record, options);
    return 0;
}
