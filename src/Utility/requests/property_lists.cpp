// Which properties a request names, and which it may change.
#include "provider_helper/utility.h"

#include <cstring>
#include <strings.h>

int ExistsInList(const char** list, const char* name) {
    if (name == nullptr)
        return 0;
    if (list == nullptr)
        return 1;
    for (; *list != nullptr; ++list)
        if (strcasecmp(*list, name) == 0)
            return 1;
    return 0;
}

void AddTo_DefaultList(void* table, const char* name, int index) {
    constexpr std::ptrdiff_t rowWidth = sizeof(PHPropertyRow);
    constexpr std::size_t nameWidth = sizeof(PHPropertyRow::name);
    char* row = static_cast<char*>(table) + rowWidth * index;
    // All of the 64 bytes are written, a long name without a terminator among them.
    std::memset(row, 0, nameWidth);
    std::memcpy(row, name, strnlen(name, nameWidth));
}
