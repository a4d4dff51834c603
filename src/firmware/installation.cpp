#include "firmware/installation.h"

#include "platform/shared_file.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/guard.h"
#include "Utility/jobs/running_job.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <memory>
#include <optional>
#include <pthread.h>
#include <strings.h>
#include <sys/file.h>
#include <thread>

namespace ph::firmware {
namespace {

constexpr const char* turnFile = "/tmp/firmware_installation.lock";
constexpr const char* imageFile = "/tmp/firmware_installation.image";
constexpr int fetchTimeout = 1800;          // seconds
constexpr unsigned activationTimeout = 900; // seconds, in steps of one
constexpr std::uint32_t pieceSize = 16384;  // bytes

// Where the steps begin, in per cent.
constexpr int checking = 20, writing = 25, activating = 90, atMost = 99;

constinit std::atomic<unsigned> running = 0;

struct Failure {
    const char* status;
    std::uint16_t errorType;
    CMPIrc code;
};
using Result = std::optional<Failure>; // nothing: it went well

constexpr Failure notFetched{"Image not available", ErrorType::Communications, CMPI_RC_ERR_FAILED};
constexpr Failure notValid{"Image not valid", ErrorType::Software, CMPI_RC_ERR_INVALID_PARAMETER};
constexpr Failure notTaken{"Image not taken by the BMC", ErrorType::Hardware, CMPI_RC_ERR_FAILED};
constexpr Failure notStarted{"Image not started by the BMC", ErrorType::Hardware, CMPI_RC_ERR_FAILED};

// The thread's own.
struct Order {
    Turn turn;
    char uri[longestUri + 1];
    char job[64];
    std::uint32_t largestImage;
};

// The image, where others cannot reach it.
class ImageFile {
public:
    ImageFile() {
        const int file = PH_OpenSharedFile(imageFile, O_WRONLY | O_CREAT);
        isOurs_ = file >= 0 && close(file) == 0 && PH_SysrootPath(imageFile, path_, sizeof path_) == 0;
    }
    ~ImageFile() {
        if (isOurs_)
            unlink(path_);
    }
    ImageFile(const ImageFile&) = delete;
    ImageFile& operator=(const ImageFile&) = delete;

    bool isOurs() const { return isOurs_; }
    const char* path() const { return path_; }

private:
    char path_[4096];
    bool isOurs_;
};

Result hand(IpmiSession& session, const char* image, std::uint32_t size, RunningJob& job) {
    std::uint8_t transfer = 0;
    job.report("Writing the image", writing);
    if (CIM_BeginFirmwareUpdate(session.get(), size, &transfer, hookTimeout) != 0)
        return notTaken;
    bool isTaken = true;
    for (std::uint32_t offset = 0; isTaken && offset < size; offset += pieceSize) {
        isTaken = CIM_WriteFirmware(session.get(), transfer, image, offset,
                                    std::min(pieceSize, size - offset), hookTimeout) == 0;
        job.report("Writing the image",
                   writing + static_cast<int>(std::uint64_t{offset} * (activating - writing) / size));
    }
    if (isTaken && CIM_FinishFirmwareUpdate(session.get(), transfer, hookTimeout) == 0)
        return std::nullopt;
    (void)CIM_CancelFirmwareUpdate(session.get(), transfer, hookTimeout);
    return notTaken;
}

// A BMC that restarts may end sessions, and lets none be opened for a while.
Result awaitActivation(RunningJob& job) {
    for (unsigned second = 0; second < activationTimeout; ++second) {
        CIM_FirmwareUpdate update{};
        IpmiSession session;
        const bool answers = session.open() &&
                             CIM_GetFirmwareUpdate(session.get(), &update, hookTimeout) == 0 &&
                             update.isSupported != 0;
        if (answers && update.state == CIM_FIRMWARE_FAILED)
            return notStarted;
        if (answers && update.state == CIM_FIRMWARE_IDLE)
            return std::nullopt;
        job.report("Restarting",
                   activating + std::min<int>(update.percent, 100) * (atMost - activating) / 100);
        sleep(1);
    }
    return notStarted;
}

Result install(const Order& order, RunningJob& job) {
    const ImageFile image;
    CIM_FirmwareImage found{};
    job.report("Fetching the image", 1);
    if (!image.isOurs() || CIM_FetchFirmware(order.uri, image.path(), order.largestImage, fetchTimeout) != 0)
        return notFetched;
    job.report("Checking the image", checking);
    {
        IpmiSession session;
        if (!session.open())
            return notTaken;
        if (CIM_CheckFirmware(session.get(), image.path(), &found, hookTimeout) != 0)
            return notValid;
        if (const Result failure = hand(session, image.path(), found.size, job))
            return failure;
    }
    return awaitActivation(job);
}

void carryOut(const Order& order) {
    RunningJob job(order.job);
    const Result failure = guarded(Result(notTaken), [&] { return install(order, job); });
    if (failure)
        job.fail(failure->status, failure->errorType, failure->code);
    else
        job.complete();
    order.turn.note("");
}

void* thread(void* order) {
    {
        const std::unique_ptr<Order> owned(static_cast<Order*>(order));
        carryOut(*owned);
    }
    --running;
    return nullptr;
}

} // namespace

bool readUpdate(CIM_FirmwareUpdate& update) {
    IpmiSession session;
    if (!session.open())
        return false;
    if (CIM_GetFirmwareUpdate(session.get(), &update, hookTimeout) != 0)
        update = {};
    return true;
}

Turn::Turn() : file_(PH_OpenSharedFile(turnFile, O_RDWR | O_CREAT)) {
    if (file_ >= 0 && flock(file_, LOCK_EX | LOCK_NB) != 0)
        close(std::exchange(file_, -1));
    char job[64] = "";
    if (file_ >= 0 && pread(file_, job, sizeof job - 1, 0) > 0) {
        RunningJob(job).fail("Interrupted", ErrorType::Software, CMPI_RC_ERR_FAILED);
        note("");
    }
}

// On a full file system nothing is noted, and the job of a process that is killed is given up when its time is over.
void Turn::note(const char* job) const {
    const std::size_t length = std::strlen(job);
    [[maybe_unused]] const bool isNoted =
        ftruncate(file_, 0) == 0 && pwrite(file_, job, length, 0) == static_cast<ssize_t>(length);
}

Turn::~Turn() {
    if (file_ >= 0)
        close(file_);
}

bool knowsScheme(const char* uri) {
    return strncmp(uri, "file://", 7) == 0 || strncmp(uri, "http://", 7) == 0;
}

bool begin(Turn turn, const char* uri, const char* job, std::uint32_t largestImage) {
    auto order = std::make_unique<Order>(Order{std::move(turn), {}, {}, largestImage});
    copyText(order->uri, uri);
    copyText(order->job, job);
    pthread_t started;
    order->turn.note(order->job);
    ++running;
    if (pthread_create(&started, nullptr, thread, order.get()) != 0) {
        --running;
        order->turn.note("");
        return false;
    }
    (void)order.release(); // the thread's
    pthread_detach(started);
    return true;
}

} // namespace ph::firmware

int PH_WaitForInstallation(unsigned int seconds) {
    constexpr auto step = std::chrono::milliseconds(20);
    for (auto left = std::chrono::milliseconds(std::chrono::seconds(seconds));
         ph::firmware::running != 0 && left.count() > 0; left -= step)
        std::this_thread::sleep_for(step);
    return ph::firmware::running == 0 ? 0 : -1;
}
