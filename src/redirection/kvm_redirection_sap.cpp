// CIM_KVMRedirectionSAP: where the host's screen, keyboard and mouse are redirected to.
#include "redirection/service_access_point.h"

constexpr const char* const g_KVMRedirectionSAPKeyList[4] = {
    ph::redirection::elementKeys[0], ph::redirection::elementKeys[1], ph::redirection::elementKeys[2],
    ph::redirection::elementKeys[3]};

namespace {

using Record = RedirectionSAPRecord;

constexpr ph::Property kvmProperties[] = {
    PH_PROPERTY(Record, KVMProtocol),
};
constexpr auto properties = ph::joined(ph::redirection::accessPointProperties, kvmProperties);

constexpr ph::redirection::AccessPointClass accessPointClass{ph::redirection::kvmAccessPointClass,
                                                             PH_Fill_KVMRedirectionSAP};
constexpr auto definition = ph::redirection::define<accessPointClass>(g_KVMRedirectionSAPKeyList, properties);

} // namespace

PH_EXPORT_CLASS_FAMILY(KVMRedirectionSAP, Record, definition)

int PH_Fill_KVMRedirectionSAP(IPMI20_SESSION_T* session, RedirectionSAPRecord* record) {
    record->KVMProtocol = ph::KVMProtocol::Unknown;
    return ph::redirection::fillAccessPoint(accessPointClass.name, session, *record);
}
