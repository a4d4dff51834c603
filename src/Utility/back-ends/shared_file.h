// Files in folders that every user writes to, as streams.
#pragma once

#include "platform/shared_file.h"

#include <cstdio>
#include <memory>

namespace ph {

using FilePtr = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// Returns nullptr for a file that cannot be opened or must not be trusted. A file that is written is emptied.
inline FilePtr readShared(const char* absolutePath) {
    const int descriptor = PH_OpenSharedFile(absolutePath, O_RDONLY);
    return {descriptor != -1 ? fdopen(descriptor, "r") : nullptr, std::fclose};
}
inline FilePtr writeShared(const char* absolutePath) {
    const int descriptor = PH_OpenSharedFile(absolutePath, O_WRONLY | O_CREAT);
    return {descriptor != -1 && ftruncate(descriptor, 0) == 0 ? fdopen(descriptor, "w") : nullptr,
            std::fclose};
}

} // namespace ph
