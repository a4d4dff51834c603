#include "hooks/system_info_reader.h"

#include "ipmi/command.h"
#include "ipmi/text.h"

#include <array>
#include <optional>
#include <stdexcept>

namespace hooks {
namespace {

namespace completion = ipmi::completion;

constexpr std::size_t blockSize = 16;
constexpr std::size_t headSize = 2; // of the first block: encoding and length

enum class Encoding : std::uint8_t { Latin1 = 0, Utf8 = 1, Unicode = 2 };

std::string decode(std::uint8_t encoding, std::span<const std::uint8_t> bytes) {
    switch (static_cast<Encoding>(encoding & 0x0F)) {
    case Encoding::Latin1:
        return ipmi::decodeLatin1(bytes);
    case Encoding::Utf8:
        return ipmi::decodeUtf8(bytes);
    case Encoding::Unicode:
        return ipmi::decodeUtf16(bytes);
    }
    throw std::runtime_error("the text has an encoding that IPMI does not know");
}

// Returns the answer with a block, which may be short at the end of a text; nothing when the BMC has not got
// it.
std::optional<ipmi::Answer> readBlock(ipmi::Transport& bmc, std::uint8_t parameter, std::uint8_t block) {
    constexpr std::uint8_t notSupported = 0x80; // of this command
    const std::uint8_t request[] = {0, parameter, block, 0};
    const auto answer = ipmi::ask(bmc, ipmi::command::getSystemInfo, request);
    const std::uint8_t code = answer.code();
    if (code == notSupported || completion::meansUnknown(code) || completion::meansAbsent(code))
        return std::nullopt;
    if (code != completion::success)
        throw ipmi::CompletionCodeError(ipmi::command::getSystemInfo, code);
    return answer;
}

} // namespace

std::string readSystemInfo(ipmi::Transport& bmc, std::uint8_t parameter) {
    std::array<std::uint8_t, 0xFF> bytes;
    std::size_t length = 0, count = 0;
    std::uint8_t encoding = 0;
    for (std::uint8_t block = 0; block == 0 || count < length; ++block) {
        const auto answer = readBlock(bmc, parameter, block);
        if (!answer)
            break;
        auto reader = answer->reader();
        reader.skip(2); // revision of the parameter, and number of the block
        if (block == 0) {
            encoding = reader.u8();
            length = reader.u8();
        }
        answer->verify(reader);
        const std::size_t most = block == 0 ? blockSize - headSize : blockSize;
        const auto part = reader.bytes(std::min({reader.left(), most, length - count}));
        if (part.empty())
            break; // the text is shorter than its length says
        std::ranges::copy(part, bytes.begin() + static_cast<std::ptrdiff_t>(count));
        count += part.size();
    }
    return decode(encoding, std::span(bytes).first(count));
}

} // namespace hooks
