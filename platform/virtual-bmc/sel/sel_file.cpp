#include "virtual-bmc/sel/sel_file.h"

#include <fcntl.h>
#include <unistd.h>

namespace vbmc {
namespace {

off_t placeOf(const Sel& sel, std::uint16_t position) {
    const std::uint32_t slots = sel.capacity + 1U;
    return static_cast<off_t>((sel.head + position) % slots * sizeof(SelRecord));
}

// Counts how many IDs a record is behind the oldest: IDs ascend, and begin anew after the last.
unsigned distance(std::uint16_t oldest, std::uint16_t id) {
    return id >= oldest ? id - oldest : id + Sel::lastId - oldest;
}

} // namespace

SelFile::SelFile(const State& state)
    : path_(state.bulkFile(Sel::bulkFile)), file_(openPrivate(path_, O_RDWR | O_CREAT)) {}

SelRecord SelFile::read(const Sel& sel, std::uint16_t position) const {
    SelRecord record;
    const auto size = pread(file_.get(), record.data(), record.size(), placeOf(sel, position));
    if (size < 0)
        failWithErrno(path_);
    if (size != static_cast<ssize_t>(record.size()))
        vbmc::fail(path_, "records are missing");
    return record;
}

void SelFile::write(const Sel& sel, std::uint16_t position, const SelRecord& record) const {
    if (pwrite(file_.get(), record.data(), record.size(), placeOf(sel, position)) !=
        static_cast<ssize_t>(record.size()))
        failWithErrno(path_);
}

// Where nothing was deleted a record is as many places behind the oldest as its ID; deleted ones bring it
// nearer.
std::optional<std::uint16_t> SelFile::find(const Sel& sel, std::uint16_t id) const {
    if (sel.count == 0)
        return std::nullopt;
    const auto last = static_cast<std::uint16_t>(sel.count - 1);
    if (id == 0x0000 || id == 0xFFFF)
        return id == 0 ? 0 : last;
    const std::uint16_t oldest = PH_SelRecordId(read(sel, 0).data());
    const unsigned wanted = distance(oldest, id);
    unsigned low = 0;
    unsigned high = std::min<unsigned>(wanted, last);
    for (unsigned position = high; low <= high; position = (low + high) / 2) {
        const unsigned found =
            distance(oldest, PH_SelRecordId(read(sel, static_cast<std::uint16_t>(position)).data()));
        if (found == wanted)
            return static_cast<std::uint16_t>(position);
        if (found < wanted)
            low = position + 1;
        else if (position == 0)
            break;
        else
            high = position - 1;
    }
    return std::nullopt;
}

} // namespace vbmc
