// bmc image: makes an image of firmware for the virtual BMC.
#include "commands.h"
#include "errors.h"
#include "firmware/image.h"
#include "ipmi/oem_commands.h"
#include "numbers.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <vector>

namespace phctl {
namespace {

struct ImageOptions {
    std::string file, version;
    std::string payload;      // empty: a filling
    unsigned kilobytes = 256; // of it
    std::uint32_t manufacturer = ipmi::oem::manufacturer;
    unsigned product = ipmi::oem::product;
};

[[noreturn]] void refuseVersion(const std::string& version) {
    throw UsageError('"' + version +
                     "\" is no version (0.0 to 127.99, and behind another point 8 hexadecimal digits)");
}

// "2.15", or with an auxiliary revision as phctl prints it: "2.15.0007a1b2".
firmware::ImageHead headOf(const ImageOptions& options) {
    constexpr std::uint8_t mostMajor = 127, mostMinor = 99;
    const std::string_view text = options.version;
    const std::size_t first = std::min(text.find('.'), text.size());
    const std::size_t second = std::min(text.find('.', first + 1), text.size());
    const auto part = [&](std::size_t begin, std::size_t end, std::uint8_t most) {
        const auto number =
            readNumber<std::uint8_t>(text.substr(std::min(begin, end), end - std::min(begin, end)));
        if (number.value_or(most + 1) > most)
            refuseVersion(options.version);
        return number.value_or(0);
    };
    firmware::ImageHead head;
    head.major = part(0, first, mostMajor);
    head.minor = part(first + 1, second, mostMinor);
    if (second < text.size()) {
        const std::string_view digits = text.substr(second + 1);
        const auto number = readNumber<std::uint32_t>(digits, 16);
        if (!number || digits.size() != 2 * head.auxiliary.size())
            refuseVersion(options.version);
        for (std::size_t i = 0; i < head.auxiliary.size(); ++i)
            head.auxiliary[i] = static_cast<std::uint8_t>(number.value_or(0) >> (24 - 8 * i));
    }
    head.manufacturerId = options.manufacturer;
    head.productId = static_cast<std::uint16_t>(options.product);
    return head;
}

std::vector<std::uint8_t> payloadOf(const ImageOptions& options) {
    if (options.payload.empty()) {
        std::vector<std::uint8_t> filling(options.kilobytes * std::size_t{1024});
        for (std::size_t i = 0; i < filling.size(); ++i)
            filling[i] = static_cast<std::uint8_t>(i * 167 >> 4);
        return filling;
    }
    std::ifstream file(options.payload, std::ios::binary);
    if (!file)
        throw Failure("cannot read " + options.payload);
    return {std::istreambuf_iterator<char>(file), {}};
}

int makeImage(const ImageOptions& options) {
    const firmware::ImageHead described = headOf(options);
    const auto payload = payloadOf(options);
    const auto head = firmware::writeHead(described, payload);
    std::ofstream file(options.file, std::ios::binary);
    file.write(reinterpret_cast<const char*>(head.data()), static_cast<std::streamsize>(head.size()));
    file.write(reinterpret_cast<const char*>(payload.data()), static_cast<std::streamsize>(payload.size()));
    if (!file.flush())
        throw Failure("cannot write " + options.file);
    std::cout << options.file << ": firmware " << described.version() << ", " << head.size() + payload.size()
              << " bytes\n";
    return done;
}

void addImageOptions(Command command) {
    auto options = std::make_shared<ImageOptions>();
    command.option("FILE", options->file, "The image").required();
    command.option("--firmware-version", options->version, "Its version, such as 2.15 or 2.15.00070002")
        .required();
    const auto payload = command.option("--payload", options->payload, "File that the image holds");
    command.option("--kilobytes", options->kilobytes, "Size of what it holds otherwise")
        .showsDefault()
        .range(1, 1024 * 1024)
        .excludes(payload);
    command.option("--manufacturer", options->manufacturer, "Manufacturer ID of the BMC that it is for")
        .showsDefault();
    command.option("--product", options->product, "Its product ID").showsDefault().range(0, 0xFFFF);
    command.footer("CIM_SoftwareInstallationService installs it.\n\nExample:\n"
                   "  phctl bmc image /tmp/bmc.img --firmware-version 2.15");
    command.action([options] { return makeImage(*options); });
}

} // namespace

void addImageCommand(Command bmc) {
    bmc.subcommand("image", "Make an image of firmware for it", addImageOptions);
}

} // namespace phctl
