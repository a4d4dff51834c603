#include "feature_file.h"

#include <platform/support.h>
#include <platform/sysroot.h>

#include <cerrno>
#include <limits>
#include <unistd.h>

namespace support {

FeatureFile::FeatureFile() : entries_(nullptr, iniparser_freedict) {
    char path[4096];
    // iniparser complains about a missing file on standard error, and having none is a usual case.
    if (PH_SysrootPath("/conf/features.ini", path, sizeof path) == 0 && access(path, R_OK) == 0)
        entries_.reset(iniparser_load(path));
}

const char* FeatureFile::find(const std::string& key) const {
    return entries_ != nullptr ? iniparser_getstring(entries_.get(), key.c_str(), nullptr) : nullptr;
}

bool FeatureFile::isEnabled(const std::string& key) const {
    return find(key) != nullptr && iniparser_getboolean(entries_.get(), key.c_str(), 0) == 1;
}

std::optional<std::int64_t> FeatureFile::number(const std::string& key) const {
    const char* const text = find(key);
    if (text == nullptr || *text == '\0')
        return std::nullopt;
    char* end = nullptr;
    errno = 0;
    const long long value = std::strtoll(text, &end, 0);
    if (errno != 0 || *end != '\0' || value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    return value;
}

} // namespace support

using support::FeatureFile;

int RetrieveCoreFeatures(CoreFeatures* features) {
    if (features == nullptr)
        return -1;
    *features = {};
    try {
        const FeatureFile file;
        for (int word = 0; word < CORE_FEATURE_WORDS; ++word)
            features->words[word] =
                static_cast<std::uint32_t>(file.number("core:" + std::to_string(word)).value_or(0));
    } catch (const std::bad_alloc&) {
        *features = {};
    }
    return 0;
}

int IsFeatureEnabled(const char* feature) {
    try {
        return feature != nullptr && FeatureFile().isEnabled(std::string("enabled:") + feature) ? 1 : 0;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

int GetMacrodefine_getint(const char* name, int defaultValue) {
    try {
        if (name == nullptr)
            return defaultValue;
        return static_cast<int>(FeatureFile().number(std::string("numbers:") + name).value_or(defaultValue));
    } catch (const std::bad_alloc&) {
        return defaultValue;
    }
}
