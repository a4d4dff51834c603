// CIM_KVMRedirectionSAP: where the host's screen, keyboard and mouse are redirected to.
#include "redirection/service_access_point.h"

constexpr const char* const g_KVMRedirectionSAPKeyList[4] = {
    ph::redirection::elementKeys[0], ph::redirection::elementKeys[1], ph::redirection::elementKeys[2],
    ph::redirection::elementKeys[3]};

namespace ph::kvm_redirection_sap {
namespace {

using Record = RedirectionSAPRecord;

constexpr Property kvmProperties[] = {
    PH_PROPERTY(Record, KVMProtocol),
};
constexpr auto properties = joined(redirection::accessPointProperties, kvmProperties);

constexpr redirection::AccessPointClass accessPointClass{redirection::kvmAccessPointClass,
                                                         PH_Fill_KVMRedirectionSAP};
constexpr auto definition = redirection::define<accessPointClass>(g_KVMRedirectionSAPKeyList, properties);

} // namespace
} // namespace ph::kvm_redirection_sap

PH_EXPORT_CLASS_FAMILY(KVMRedirectionSAP, RedirectionSAPRecord, ph::kvm_redirection_sap::definition)

int PH_Fill_KVMRedirectionSAP(IPMI20_SESSION_T* session, RedirectionSAPRecord* record) {
    record->KVMProtocol = ph::KVMProtocol::Unknown;
    return ph::redirection::fillAccessPoint(ph::kvm_redirection_sap::accessPointClass.name, session, *record);
}
