// /conf/features.ini, which stands for what a firmware's build configuration would say:
//
//   [core]     a feature word's number = its value     63 = 1
//   [enabled]  a build switch = yes or no              CONFIG_KZP_FEATURE_LMEDIA_SUPPORT = yes
//   [numbers]  a build-time definition = its number    MAX_USERS = 16
//   [debug]    log = yes writes the debug log
//
// Names are compared without regard to case, numbers are in C notation. Without the file, or with one that
// cannot be parsed, every feature is off and every number unknown.
#pragma once

#include <cstdint>
#include <iniparser/iniparser.h>
#include <memory>
#include <optional>
#include <string>

namespace support {

class FeatureFile {
public:
    FeatureFile();

    bool isEnabled(const std::string& key) const;
    // Returns nothing where there is no such key or its value is no number of 32 bits.
    std::optional<std::int64_t> number(const std::string& key) const;

private:
    const char* find(const std::string& key) const;

    std::unique_ptr<dictionary, void (*)(dictionary*)> entries_;
};

} // namespace support
