#include "sel_position.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <platform/sysroot.h>

namespace {

namespace fs = std::filesystem;

constexpr char signature[8] = "SELPOS1";

struct Stored {
    char signature[sizeof(::signature)];
    SelPosition position;
};

// The path is empty when it is too long.
fs::path placeOfFile() {
    char path[4096];
    return PH_SysrootPath("/var/lib/provider-helper/sel-position", path, sizeof(path)) == 0 ? path : "";
}

} // namespace

std::optional<SelPosition> loadSelPosition() {
    Stored stored{};
    std::ifstream file(placeOfFile(), std::ios::binary);
    if (!file.read(reinterpret_cast<char*>(&stored), sizeof(stored)) ||
        std::memcmp(stored.signature, signature, sizeof(signature)) != 0)
        return std::nullopt;
    return stored.position;
}

// The file is replaced, so that it is whole at any time.
bool saveSelPosition(const SelPosition& position) {
    Stored stored{.signature = {}, .position = position};
    std::memcpy(stored.signature, signature, sizeof(signature));
    const fs::path place = placeOfFile();
    std::error_code error;
    fs::create_directories(place.parent_path(), error);
    const fs::path draft = place.string() + ".new";
    std::ofstream file(draft, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(&stored), sizeof(stored));
    file.close();
    if (!file)
        return false;
    fs::rename(draft, place, error);
    return !error;
}

void forgetSelPosition() {
    std::error_code error;
    fs::remove(placeOfFile(), error);
}
