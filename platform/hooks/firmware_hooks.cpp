#include "firmware/http_image.h"
#include "firmware/image.h"
#include "hooks/oem.h"
#include "ipmi/oem_commands.h"

#include <platform/sysroot.h>

#include <algorithm>
#include <cctype>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
namespace oem = ipmi::oem;

class File {
public:
    File(const char* path, int flags) : descriptor_(open(path, flags | O_CLOEXEC | O_NONBLOCK, 0600)) {
        struct stat status = {};
        if (descriptor_ < 0 || fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) {
            if (descriptor_ >= 0)
                close(descriptor_);
            throw std::runtime_error(std::string(path) + ": it is no file that can be opened");
        }
        size_ = static_cast<std::uint64_t>(status.st_size);
    }
    ~File() { close(descriptor_); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    int get() const { return descriptor_; }
    std::uint64_t size() const { return size_; } // when it was opened

private:
    int descriptor_;
    std::uint64_t size_ = 0;
};

const char* requirePath(const char* path) {
    if (path == nullptr || path[0] != '/')
        throw std::invalid_argument("no absolute path given");
    return path;
}

// Tells the device's manufacturer and product, and whether it is available.
struct Identity {
    bool isAvailable;
    std::uint32_t manufacturerId;
    std::uint16_t productId;
};
Identity identify(ipmi::Transport& bmc) {
    constexpr std::uint8_t unavailable = 0x80;
    const auto answer = ipmi::run(bmc, ipmi::command::getDeviceId);
    auto reader = answer.reader();
    reader.skip(2); // device ID and revision
    const bool isAvailable = (reader.u8() & unavailable) == 0;
    reader.skip(3); // minor firmware revision, IPMI version, additional devices
    const std::uint32_t manufacturer = reader.u24() & 0xFFFFF;
    const Identity identity{isAvailable, manufacturer, reader.u16()};
    answer.verify(reader);
    return identity;
}

// ---- Sources

void copyFile(const std::string& source, const File& target, std::uint32_t largest) {
    char place[4096];
    if (PH_SysrootPath(source.c_str(), place, sizeof place) != 0)
        throw std::runtime_error("the path is too long");
    const File file(place, O_RDONLY);
    std::uint64_t room = largest;
    char part[16 * 1024];
    while (const ssize_t count = read(file.get(), part, sizeof part)) {
        if (count < 0 || static_cast<std::uint64_t>(count) > room ||
            write(target.get(), part, static_cast<std::size_t>(count)) != count)
            throw std::runtime_error(source + ": it is too large, or cannot be copied");
        room -= static_cast<std::uint64_t>(count);
    }
}

// The library lies beside this one, wherever that is.
decltype(&PH_FetchOverHttp) loadHttp() {
    Dl_info own{};
    if (dladdr(httpImageLibrary, &own) == 0 || own.dli_fname == nullptr)
        return nullptr;
    std::string path = own.dli_fname;
    path.replace(path.rfind('/') + 1, std::string::npos, httpImageLibrary);
    void* library = dlopen(path.c_str(), RTLD_NOW);
    return library != nullptr
               ? reinterpret_cast<decltype(&PH_FetchOverHttp)>(dlsym(library, "PH_FetchOverHttp"))
               : nullptr;
}

void fetch(std::string_view uri, const File& target, std::uint32_t largest, int timeout) {
    constexpr std::string_view file = "file://", http = "http://";
    if (uri.starts_with(file)) {
        uri.remove_prefix(file.size());
        constexpr std::string_view here = "localhost/";
        if (uri.starts_with(here))
            uri.remove_prefix(here.size() - 1);
        if (!uri.starts_with('/'))
            throw std::runtime_error("the file is another machine's");
        return copyFile(std::string(uri), target, largest);
    }
    if (!uri.starts_with(http))
        throw std::runtime_error("there is no such scheme of URIs here");
    static const auto fetchOverHttp = loadHttp();
    if (fetchOverHttp == nullptr ||
        fetchOverHttp(std::string(uri).c_str(), target.get(), largest, timeout) != 0)
        throw std::runtime_error("the image could not be fetched");
}

// ---- Images that are kept

constexpr char storeFolder[] = "/var/lib/firmware";

bool hasPlainName(const fs::path& file) {
    const std::string name = file.filename().string();
    return file.extension() == ".img" && std::ranges::all_of(name, [](unsigned char c) {
               return (c < 0x80 && std::isalnum(c) != 0) || c == '.' || c == '-' || c == '_';
           });
}

std::vector<fs::path> storedFiles() {
    char folder[4096];
    std::vector<fs::path> files;
    if (PH_SysrootPath(storeFolder, folder, sizeof folder) != 0)
        return files;
    std::error_code error; // without the folder there are none
    for (fs::directory_iterator each(folder, error), end; !error && each != end; each.increment(error))
        if (hasPlainName(each->path()))
            files.push_back(each->path());
    std::ranges::sort(files);
    return files;
}

// Returns nothing for what is no image, or cannot be read.
std::optional<firmware::ImageHead> headOf(const fs::path& path) {
    try {
        const File file(path.c_str(), O_RDONLY | O_NOFOLLOW);
        firmware::HeadBytes bytes;
        if (pread(file.get(), bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()))
            return firmware::readHead(bytes);
    } catch (const std::runtime_error&) { // as with one that is gone by now
    }
    return std::nullopt;
}

} // namespace

int CIM_GetFirmwareUpdate(IPMI20_SESSION_T* session, CIM_FirmwareUpdate* update, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(update != nullptr);
        *update = {};
        auto& bmc = hooks::sessionOf(session, timeout);
        const auto answer = hooks::askOem(bmc, oem::getFirmwareUpdate, {});
        if (!answer)
            return;
        auto reader = answer->reader();
        update->isSupported = 1;
        update->state = std::min<std::uint8_t>(reader.u8(), CIM_FIRMWARE_FAILED);
        update->percent = std::min<std::uint8_t>(reader.u8(), 100);
        update->largestImage = reader.u32();
        answer->verify(reader);
        if (!identify(bmc).isAvailable)
            update->state = CIM_FIRMWARE_ACTIVATING;
    });
}

int CIM_FetchFirmware(const char* uri, const char* path, std::uint32_t largest, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(uri != nullptr);
        const File target(requirePath(path), O_WRONLY | O_CREAT | O_NOFOLLOW);
        if (ftruncate(target.get(), 0) != 0)
            throw std::runtime_error("the former image cannot be removed");
        fetch(uri, target, largest, timeout);
    });
}

int CIM_CheckFirmware(IPMI20_SESSION_T* session, const char* path, CIM_FirmwareImage* image, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(image != nullptr);
        *image = {};
        const File file(requirePath(path), O_RDONLY | O_NOFOLLOW);
        firmware::ImageHead head;
        if (const auto fault = firmware::check(file.get(), head); fault != firmware::Fault::None)
            throw std::runtime_error(firmware::textOf(fault));
        const Identity bmc = identify(hooks::sessionOf(session, timeout));
        if (head.manufacturerId != bmc.manufacturerId || head.productId != bmc.productId)
            throw std::runtime_error("the image is for another BMC");
        image->size = static_cast<std::uint32_t>(file.size());
        head.version().copy(image->version, sizeof image->version - 1);
    });
}

int CIM_GetStoredFirmware(IPMI20_SESSION_T* session, CIM_StoredFirmware* stored, std::uint8_t* count,
                          int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(stored != nullptr && count != nullptr);
        const Identity bmc = identify(hooks::sessionOf(session, timeout));
        *count = 0;
        for (const fs::path& file : storedFiles()) {
            const auto head = headOf(file);
            const std::string name = file.stem().string();
            if (!head || head->manufacturerId != bmc.manufacturerId || head->productId != bmc.productId ||
                name.size() >= sizeof stored->name || *count == CIM_MAX_STORED_FIRMWARE)
                continue;
            CIM_StoredFirmware& image = stored[(*count)++];
            image = {};
            name.copy(image.name, sizeof image.name - 1);
            (std::string("file://") + storeFolder + '/' + file.filename().string())
                .copy(image.uri, sizeof image.uri - 1);
            head->version().copy(image.version, sizeof image.version - 1);
        }
    });
}

int CIM_BeginFirmwareUpdate(IPMI20_SESSION_T* session, std::uint32_t size, std::uint8_t* transfer,
                            int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(transfer != nullptr);
        std::array<std::uint8_t, 4> request;
        const auto answer = hooks::runOem(hooks::sessionOf(session, timeout), oem::beginFirmwareUpdate,
                                          ipmi::Writer(request).u32(size).written());
        auto reader = answer.reader();
        *transfer = reader.u8();
        answer.verify(reader);
    });
}

int CIM_WriteFirmware(IPMI20_SESSION_T* session, std::uint8_t transfer, const char* path,
                      std::uint32_t offset, std::uint32_t count, int timeout) {
    return hooks::guarded(__func__, [&] {
        const File file(requirePath(path), O_RDONLY | O_NOFOLLOW);
        auto& bmc = hooks::sessionOf(session, timeout);
        while (count > 0) {
            std::array<std::uint8_t, 5 + oem::firmwareBlockSize> request;
            const std::size_t size = std::min<std::size_t>(count, oem::firmwareBlockSize);
            ipmi::Writer(request).u8(transfer).u32(offset);
            if (pread(file.get(), request.data() + 5, size, offset) != static_cast<ssize_t>(size))
                throw std::runtime_error("the image is shorter than it was");
            hooks::runOem(bmc, oem::writeFirmwareBlock, std::span(request).first(5 + size));
            offset += static_cast<std::uint32_t>(size);
            count -= static_cast<std::uint32_t>(size);
        }
    });
}

int CIM_FinishFirmwareUpdate(IPMI20_SESSION_T* session, std::uint8_t transfer, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::runOem(hooks::sessionOf(session, timeout), oem::finishFirmwareUpdate, {transfer});
    });
}

int CIM_CancelFirmwareUpdate(IPMI20_SESSION_T* session, std::uint8_t transfer, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::runOem(hooks::sessionOf(session, timeout), oem::cancelFirmwareUpdate, {transfer});
    });
}
