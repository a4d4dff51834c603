// The monitor thread: from the event pipe to the destinations.
#include "provider_helper/alert_delivery.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/back-ends/dynamic_library.h"
#include "Utility/values/cmpi_ptr.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

void* g_InteropLibHandle = nullptr;
GenerateIndicationResponse GenerateCIMXML = nullptr;
SendIndications DeliverIndication = nullptr;
GetBrokerFunction pGetBroker = nullptr;
GetContextFunction pGetContext = nullptr;
GetHeapFunction GetHeap = nullptr;
ReleaseHeapFunction ReleaseHeap = nullptr;

namespace {

constexpr const char* interopLibrary = "/usr/local/lib/libinterop_provider.so";
constexpr mode_t everyoneWrites = 0666;

// Where the object manager runs, for the life of the thread.
struct Attachment {
    const CMPIBroker* broker;
    const CMPIContext* context;
};

// The path is empty when it is too long.
struct PipePath {
    PipePath() {
        if (PH_SysrootPath(SEL_EVENT_PIPE, text, sizeof(text)) != 0)
            text[0] = '\0';
    }
    char text[4096] = "";
};

template <class Function>
void link(Function& function, void* library, const char* symbol) {
    function = reinterpret_cast<Function>(dlsym(library, symbol));
}

bool makeAlert(const SelEventMessage& message, AlertRecord& alert) {
    return SelToAlert(&message, &alert, message.destination, message.channel) == 0;
}

void deliverMail(const SelEventMessage& message) {
    AlertRecord alert{};
    AlertMailRequest mail{};
    if (makeAlert(message, alert) &&
        ConvertAlertToMail(&alert, &mail, static_cast<std::uint8_t>(message.destination),
                           static_cast<std::uint8_t>(message.channel)) == 0)
        smtp_mail(&mail);
    explicit_bzero(&mail, sizeof(mail)); // the server's password
}

// An event for nobody costs nothing but the question who is there.
void deliverCimxml(const Attachment& attachment, const SelEventMessage& message) {
    ph::Database database;
    if (GenerateCIMXML == nullptr || DeliverIndication == nullptr || !database.open())
        return;
    CimxmlDestinationRow listener{};
    std::snprintf(listener.name, sizeof(listener.name), "CIMXML-%d", message.destination);
    AlertRecord alert{};
    CMPIInstance* made = nullptr;
    if (db_get_listener_destination(database.get(), &listener) != 0 || !makeAlert(message, alert) ||
        Create_AlertIndication_Instance(attachment.broker, attachment.context, &alert, &made, &message) != 0)
        return;
    const ph::CmpiPtr<CMPIInstance> indication(made);
    char* rendered = nullptr;
    const int result = GenerateCIMXML(indication.get(), &rendered);
    const ph::HeapPtr<char> text(rendered);
    if (result == 0 && text != nullptr && *text != '\0')
        DeliverIndication(listener.destination, text.get());
}

// Opens the pipe for writing too, so that it never ends when its last writer closes it. Returns -1 where
// there is none; a file of another kind, which anybody may have put there, would never have a reader wait.
int openPipe() {
    const int pipe = open(PipePath().text, O_RDWR | O_CLOEXEC);
    struct stat status {};
    if (pipe >= 0 && fstat(pipe, &status) == 0 && S_ISFIFO(status.st_mode))
        return pipe;
    if (pipe >= 0)
        close(pipe);
    return -1;
}

// A message that cannot be delivered is dropped.
void deliver(const Attachment& attachment, const SelEventMessage& message) {
    if (message.kind == SEL_EVENT_TO_MAIL)
        deliverMail(message);
    else if (message.kind == SEL_EVENT_TO_CIMXML)
        deliverCimxml(attachment, message);
}

// A short message leaves the end of the one before it in the buffer.
void readMessage(int pipe, SelEventMessage& message) {
    while (read(pipe, &message, sizeof(message)) <= 0) {
    }
}

bool attach(Attachment& attachment) {
    attachment = {pGetBroker != nullptr ? pGetBroker() : nullptr,
                  pGetContext != nullptr ? pGetContext() : nullptr};
    if (attachment.broker == nullptr || attachment.context == nullptr) {
        std::fputs("QOM Linkage error - Unable to start indication monitor thread \n", stderr);
        return false;
    }
    CBAttachThread(attachment.broker, attachment.context);
    if (GetHeap == nullptr || GetHeap() == nullptr) {
        std::fputs("Memory manager asociation failed  - Unable to start indication monitor thread \n",
                   stderr);
        return false;
    }
    return true;
}

} // namespace

void PH_Init_Indication(void) {
    const PipePath pipe;
    if (access(pipe.text, F_OK) != 0 && mkfifo(pipe.text, everyoneWrites) != 0)
        std::exit(0);
    if (g_InteropLibHandle != nullptr)
        return;
    g_InteropLibHandle = ph::openLibrary(interopLibrary);
    if (g_InteropLibHandle == nullptr)
        return;
    link(GenerateCIMXML, g_InteropLibHandle, "qom_generate_indication_response");
    link(DeliverIndication, g_InteropLibHandle, "qom_send_indications");
    // These belong to the object manager, and are found only when it has made them visible to the whole
    // process.
    link(pGetBroker, RTLD_DEFAULT, "GetBroker");
    link(pGetContext, RTLD_DEFAULT, "GetContext");
    link(GetHeap, RTLD_DEFAULT, "qom_get_heap");
    link(ReleaseHeap, RTLD_DEFAULT, "qom_release_heap");
}

void* ReadSELEvents_And_Deliver(void* /*unused*/) {
    pthread_detach(pthread_self());
    SelEventMessage message{};
    const int pipe = openPipe();
    if (pipe < 0)
        return nullptr;
    Attachment attachment{};
    if (!attach(attachment)) {
        close(pipe);
        return nullptr;
    }
    for (;;) {
        readMessage(pipe, message);
        deliver(attachment, message);
    }
}

void PH_Delete_Pipe(void) {
    unlink(PipePath().text);
    // A linked library stays loaded, because the monitor thread still runs in it.
    if (g_InteropLibHandle == nullptr)
        ph::closeLibrary(g_InteropLibHandle);
}
