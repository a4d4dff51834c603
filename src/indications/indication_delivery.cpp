// Indications through the broker, and to the process behind the alert pipe.
#include "platform/sysroot.h"
#include "provider_helper/alert_delivery.h"
#include "Utility/values/cmpi_ptr.h"

#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr const char* alertPipe = "/tmp/Alert_fifo";
constexpr int debugLevel = 134;

// The indication service says how often and at what interval to retry. Without attempts there are no retries,
// without an interval there are no pauses.
struct RetryPolicy {
    std::uint16_t attempts = 0;
    std::uint32_t seconds = 0;
};

RetryPolicy readRetryPolicy(const CMPIBroker* broker, const CMPIContext* context) {
    RetryPolicy policy;
    const ph::CmpiPtr<CMPIObjectPath> path(
        CMNewObjectPath(broker, PH_INTEROP_NAMESPACE, "CIM_IndicationService", nullptr));
    if (path == nullptr)
        return {};
    const ph::CmpiPtr<CMPIEnumeration> services(
        CBEnumInstances(broker, context, path.get(), nullptr, nullptr));
    if (services == nullptr || !CMHasNext(services.get(), nullptr))
        return {};
    const CMPIInstance* service = CMGetNext(services.get(), nullptr).value.inst;
    if (service == nullptr ||
        GetUINT16Value(CMGetProperty(service, "DeliveryRetryAttempts", nullptr), &policy.attempts) != 0)
        return {};
    (void)GetUINT32Value(CMGetProperty(service, "DeliveryRetryInterval", nullptr), &policy.seconds);
    return policy;
}

// Keeps a signal SIGPIPE of this thread from ending the process: a pipe's reader may go at any time.
class IgnoreBrokenPipe {
public:
    IgnoreBrokenPipe() {
        sigemptyset(&brokenPipe_);
        sigaddset(&brokenPipe_, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &brokenPipe_, &before_);
    }
    ~IgnoreBrokenPipe() {
        constexpr std::timespec noWait{};
        if (sigismember(&before_, SIGPIPE) == 0)
            sigtimedwait(&brokenPipe_, nullptr, &noWait);
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    IgnoreBrokenPipe(const IgnoreBrokenPipe&) = delete;
    IgnoreBrokenPipe& operator=(const IgnoreBrokenPipe&) = delete;

private:
    sigset_t brokenPipe_{};
    sigset_t before_{};
};

} // namespace

int Deliver_SEL_Indication(const CMPIBroker* broker, const CMPIContext* context,
                           const CMPIInstance* instance) {
    const CMPIStatus status = CBDeliverIndication(broker, context, PH_INTEROP_NAMESPACE, instance);
    return status.rc == CMPI_RC_OK ? 0 : RetryDeliverIndication(broker, context, instance);
}

int RetryDeliverIndication(const CMPIBroker* broker, const CMPIContext* context,
                           const CMPIInstance* instance) {
    const RetryPolicy policy = readRetryPolicy(broker, context);
    for (unsigned attempt = 0; attempt < policy.attempts; ++attempt) {
        sleep(policy.seconds);
        if (CBDeliverIndication(broker, context, "root/cimv2", instance).rc == CMPI_RC_OK)
            return 0;
    }
    return 1;
}

void SendIndication(const char* buffer) {
    char path[4096];
    const int pipe = PH_SysrootPath(alertPipe, path, sizeof(path)) == 0
                         ? open(path, O_WRONLY | O_NONBLOCK | O_CLOEXEC)
                         : -1;
    if (pipe < 0) {
        IDBG_LINUXAPP_DbgOut(debugLevel, "%s - Opening pipe failed", "SendIndication");
        return;
    }
    const IgnoreBrokenPipe whileWriting;
    if (write(pipe, buffer, ALERT_PIPE_MESSAGE_SIZE) != ALERT_PIPE_MESSAGE_SIZE)
        IDBG_LINUXAPP_DbgOut(debugLevel, "%s - Write on pipe failed", "SendIndication");
    close(pipe);
}
