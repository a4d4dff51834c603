// Comma-separated texts as lists.
#include "provider_helper/utility.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace ph {
namespace {

void freeList(char** list, int count) {
    for (int i = 0; i < count; ++i)
        std::free(list[i]);
    std::free(list);
}

int split(std::string_view text, char*** list, int* count) {
    const int fields = static_cast<int>(std::count(text.begin(), text.end(), ',')) + 1;
    char** texts = static_cast<char**>(std::calloc(static_cast<std::size_t>(fields), sizeof(char*)));
    if (texts == nullptr)
        return -1;
    int filled = 0;
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(','), text.size()));
        if (text.empty())
            break;
        const std::size_t end = std::min(text.find(','), text.size());
        std::string_view token = text.substr(0, end);
        token.remove_prefix(std::min(token.find_first_not_of(" \t"), token.size()));
        texts[filled] = strndup(token.data(), token.size());
        if (texts[filled] == nullptr) {
            freeList(texts, filled);
            return -1;
        }
        ++filled;
        text.remove_prefix(end);
    }
    *list = texts;
    *count = fields;
    return 0;
}

constexpr std::size_t workBuffer = 256;

} // namespace
} // namespace ph

int PH_GetArrayCount(const char* text, char*** list, int* count) {
    if (text == nullptr || *text == '\0') {
        *count = 0;
        return 0;
    }
    return ph::split(std::string_view(text, strnlen(text, ph::workBuffer - 1)), list, count);
}
