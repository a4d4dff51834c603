// Installing firmware, as far as that leaves the BMC's as it is.
#include "check_platform/probe.h"
#include "check_platform/rows.h"

#include <algorithm>
#include <cstdlib>
#include <unistd.h>

namespace phctl::check {
namespace {

// A file that is no image: it is empty.
class EmptyFile {
public:
    EmptyFile() {
        const int file = mkstemp(path_);
        if (file < 0)
            throw NotPossible("there is no room for a file");
        close(file);
    }
    ~EmptyFile() { unlink(path_); }
    EmptyFile(const EmptyFile&) = delete;
    EmptyFile& operator=(const EmptyFile&) = delete;

    const char* path() const { return path_; }

private:
    char path_[32] = "/tmp/phctl-firmware-XXXXXX";
};

void getFirmwareUpdate(Probe& probe) {
    Out<CIM_FirmwareUpdate> update("the update");
    if (auto call =
            probe.call<decltype(CIM_GetFirmwareUpdate)>("", probe.session(), update, probe.timeout())) {
        call.expect(update->isSupported <= 1, "isSupported is neither 0 nor 1");
        call.expect(update->state <= CIM_FIRMWARE_FAILED, "the state is none");
        call.expect(update->percent <= 100, "percent is above 100");
        call.expect(update->isSupported == 1 || (update->state | update->percent | update->largestImage) == 0,
                    "there is an update though none is supported");
    }
}

void fetchFirmware(Probe& probe) {
    const EmptyFile target;
    for (const char* uri : {"file:///no-such-folder/no-such-image", "no-such-scheme://image"})
        probe.call<decltype(CIM_FetchFirmware)>(uri, uri, target.path(), 1024U, probe.timeout())
            .expectFailure("an image that there is not");
}

void checkFirmware(Probe& probe) {
    const EmptyFile file;
    Out<CIM_FirmwareImage> image("the image");
    probe
        .call<decltype(CIM_CheckFirmware)>("an empty file", probe.session(), file.path(), image,
                                           probe.timeout())
        .expectFailure("an empty file");
}

void getStoredFirmware(Probe& probe) {
    OutArray<CIM_StoredFirmware> stored("the images", CIM_MAX_STORED_FIRMWARE);
    Out<std::uint8_t> count("the count");
    auto call =
        probe.call<decltype(CIM_GetStoredFirmware)>("", probe.session(), stored, count, probe.timeout());
    if (!call)
        return;
    call.expect(*count <= CIM_MAX_STORED_FIRMWARE, "there are more images than room");
    for (int i = 0; i < std::min<int>(*count, CIM_MAX_STORED_FIRMWARE); ++i) {
        const CIM_StoredFirmware& image = static_cast<const CIM_StoredFirmware*>(stored)[i];
        call.expectText("the name", image.name);
        call.expectText("the URI", image.uri);
        call.expectText("the version", image.version);
    }
}

constexpr const char* changesFirmware = "it is part of installing another firmware";
} // namespace

std::span<const Row> firmwareRows() {
    static constexpr Row rows[] = {
        {"CIM_GetFirmwareUpdate", getFirmwareUpdate},
        {"CIM_FetchFirmware", fetchFirmware},
        {"CIM_CheckFirmware", checkFirmware},
        {"CIM_GetStoredFirmware", getStoredFirmware},
        {"CIM_BeginFirmwareUpdate", nullptr, true, changesFirmware},
        {"CIM_WriteFirmware", nullptr, true, changesFirmware},
        {"CIM_FinishFirmwareUpdate", nullptr, true, changesFirmware},
        {"CIM_CancelFirmwareUpdate", nullptr, true, changesFirmware},
    };
    return rows;
}

} // namespace phctl::check
