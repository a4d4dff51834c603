// Configurations of the SSH server. What is published of one keeps to its record.
#include "target.h"

#include "services/ssh_options.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ph::SshdConfig config = ph::parseSshdConfig(std::string(reinterpret_cast<const char*>(data), size));
    SSHOptions options{};
    require(ph::fillSshOptions(config, options) == 0, "there is memory");
    const auto endOf = [](const auto& list) { return std::ranges::find(list, 0xFFFF); };
    require(endOf(options.EnabledSSHVersions) != std::end(options.EnabledSSHVersions), "the versions end");
    const auto* const end = endOf(options.EnabledEncryptionAlgorithms);
    require(end != std::end(options.EnabledEncryptionAlgorithms), "the algorithms end");
    auto others = std::count(std::cbegin(options.EnabledEncryptionAlgorithms), end, 1);
    for (char** name = options.OtherEnabledEncryptionAlgorithm; *name != nullptr; ++name, --others)
        std::free(*name);
    require(others == 0, "each other algorithm has a name");
    return 0;
}
