#include "firmware/image.h"

#include "ipmi/message.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <unistd.h>

namespace firmware {
namespace {

constexpr std::array<std::uint8_t, 8> magic{'V', 'B', 'M', 'C', 'I', 'M', 'G', '\n'};
constexpr std::uint8_t formatVersion = 1;
constexpr unsigned mostMajor = 127, mostMinor = 99;

// Reads until the room is full or the file is at its end; nothing when it cannot be read.
std::optional<std::size_t> readAt(int file, std::span<std::uint8_t> room, std::uint64_t place) {
    std::size_t count = 0;
    while (count < room.size()) {
        const ssize_t got =
            pread(file, room.data() + count, room.size() - count, static_cast<off_t>(place + count));
        if (got == 0)
            break;
        if (got > 0)
            count += static_cast<std::size_t>(got);
        else if (errno != EINTR)
            return std::nullopt;
    }
    return count;
}

} // namespace

std::string ImageHead::version() const {
    char text[24];
    std::snprintf(text, sizeof text, "%u.%02u.%02x%02x%02x%02x", major, minor, auxiliary[0], auxiliary[1],
                  auxiliary[2], auxiliary[3]);
    return text;
}

std::optional<ImageHead> readHead(std::span<const std::uint8_t, headSize> bytes) {
    ipmi::Reader reader(bytes);
    ImageHead head;
    const bool isOurs = std::ranges::equal(reader.bytes(magic.size()), magic) && reader.u8() == formatVersion;
    head.major = reader.u8();
    head.minor = reader.u8();
    reader.skip(1);
    std::ranges::copy(reader.bytes(head.auxiliary.size()), head.auxiliary.begin());
    head.manufacturerId = reader.u32();
    head.productId = reader.u16();
    reader.skip(2);
    head.size = reader.u32();
    reader.skip(4);
    std::ranges::copy(reader.bytes(head.digest.size()), head.digest.begin());
    return isOurs && head.major <= mostMajor && head.minor <= mostMinor ? std::optional(head) : std::nullopt;
}

HeadBytes writeHead(ImageHead head, std::span<const std::uint8_t> payload) {
    HeadBytes bytes;
    ipmi::Writer writer(bytes);
    writer.bytes(magic)
        .u8(formatVersion)
        .u8(head.major)
        .u8(head.minor)
        .u8(0)
        .bytes(head.auxiliary)
        .u32(head.manufacturerId)
        .u16(head.productId)
        .u16(0)
        .u32(static_cast<std::uint32_t>(payload.size()))
        .u32(0);
    writer.bytes(Sha256().add(writer.written()).add(payload).finish());
    return bytes;
}

const char* textOf(Fault fault) {
    switch (fault) {
    case Fault::NoImage:
        return "this is no image of firmware for a virtual BMC";
    case Fault::WrongSize:
        return "the image has another size than it says";
    case Fault::WrongDigest:
        return "the image has another digest than it says: it is damaged";
    case Fault::None:
        break;
    }
    return "the image is whole";
}

Fault check(int file, ImageHead& head) {
    HeadBytes bytes;
    if (readAt(file, bytes, 0) != headSize)
        return Fault::NoImage;
    const auto read = readHead(bytes);
    if (!read)
        return Fault::NoImage;
    head = *read;
    Sha256 digest;
    digest.add(std::span(bytes).first(digestPlace));
    std::array<std::uint8_t, 16 * 1024> part;
    std::uint64_t size = 0;
    for (;;) {
        const auto count = readAt(file, part, headSize + size);
        if (!count)
            return Fault::WrongSize;
        digest.add(std::span(part).first(*count));
        size += *count;
        if (*count < part.size())
            break;
    }
    if (size != head.size)
        return Fault::WrongSize;
    return digest.finish() == head.digest ? Fault::None : Fault::WrongDigest;
}

} // namespace firmware
