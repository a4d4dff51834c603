#include "smash-db/sync/smbios_source.h"

#include "ipmi/command.h"
#include "ipmi/oem_commands.h"

#include <platform/sysroot.h>

#include <algorithm>

namespace smash {
namespace {

namespace fs = std::filesystem;

using Progress = std::function<void(std::size_t, std::size_t)>;

bool hasOemCommands(const DeviceRecord& controller) {
    return controller.manufacturerId == ipmi::oem::manufacturer && controller.productId == ipmi::oem::product;
}

// Returns nothing from a BMC that has no table of its host.
std::vector<std::uint8_t> readBmcTable(ipmi::Transport& bmc, const Progress& progress) {
    constexpr std::size_t mostBytes = 256 * 1024; // in 4,096 messages
    std::vector<std::uint8_t> table;
    std::size_t size = 0;
    do {
        std::uint8_t request[5];
        ipmi::Writer(request).u32(static_cast<std::uint32_t>(table.size())).u8(ipmi::oem::smbiosPart);
        const auto answer = ipmi::askIfKnown(bmc, ipmi::oem::readSmbiosTable, request);
        if (!answer)
            return {};
        auto reader = answer->reader();
        const std::uint32_t total = reader.u32();
        answer->verify(reader);
        if (total > mostBytes)
            throw smbios::NoTable("it has " + std::to_string(total) + " bytes");
        if (!table.empty() && total != size)
            throw smbios::NoTable("it was changed while it was read");
        size = total;
        const auto part = reader.rest();
        if (part.size() != std::min<std::size_t>(ipmi::oem::smbiosPart, size - table.size()))
            throw smbios::NoTable("the BMC does not return all of it");
        table.insert(table.end(), part.begin(), part.end());
        if (size > 0)
            progress(table.size(), size);
    } while (table.size() < size);
    return table;
}

fs::path keptFile() {
    char path[4096];
    if (PH_SysrootPath(keptSmbiosFile, path, sizeof path) != 0)
        throw std::runtime_error(std::string(keptSmbiosFile) + ": the path is too long");
    return path;
}

// It has serial numbers, which are nobody's business.
void keep(const fs::path& file) {
    const fs::path kept = keptFile();
    if (fs::exists(kept) && fs::equivalent(file, kept))
        return;
    fs::path fresh = kept;
    fresh += ".new";
    fs::copy_file(file, fresh, fs::copy_options::overwrite_existing);
    fs::permissions(fresh, fs::perms::owner_read | fs::perms::owner_write);
    fs::rename(fresh, kept);
}

} // namespace

std::optional<SmbiosTable> findSmbiosTable(ipmi::Transport& bmc, const DeviceRecord& controller,
                                           const fs::path& file, std::vector<SyncRemark>& remarks,
                                           const Progress& progress) {
    if (!file.empty()) {
        SmbiosTable found{smbios::readTable(file), file.string()};
        keep(file);
        return found;
    }
    const auto remark = [&](const std::exception& error) {
        remarks.push_back({"SMBIOS table", error.what(), true});
    };
    try {
        if (hasOemCommands(controller))
            if (auto bytes = readBmcTable(bmc, progress); !bytes.empty())
                return SmbiosTable{smbios::Table(std::move(bytes)), "the BMC"};
    } catch (const ipmi::CompletionCodeError& error) {
        remark(error);
    } catch (const ipmi::ShortAnswerError& error) {
        remark(error);
    } catch (const smbios::NoTable& error) {
        remark(error);
    }
    try {
        if (const fs::path kept = keptFile(); fs::exists(kept))
            return SmbiosTable{smbios::readTable(kept), kept.string()};
    } catch (const smbios::NoTable& error) {
        remark(error);
    }
    return std::nullopt;
}

void noteOtherSystem(const smbios::Hardware& hardware, const DeviceRecord& host,
                     std::vector<SyncRemark>& remarks) {
    // BMCs and firmware do not agree on the order of the first eight bytes.
    constexpr std::size_t begin = 19;
    constexpr std::string_view nil = "0000-000000000000";
    const std::string_view guid = host.guid;
    if (!hardware.system || hardware.system->uuid.size() < begin || guid.size() < begin)
        return;
    const std::string_view ofTable = std::string_view(hardware.system->uuid).substr(begin);
    const std::string_view ofBmc = guid.substr(begin);
    if (ofBmc != nil && ofBmc != ofTable)
        remarks.push_back({"SMBIOS table", "its UUID " + hardware.system->uuid +
                                               " is not the GUID that the BMC has of its host"});
}

} // namespace smash
