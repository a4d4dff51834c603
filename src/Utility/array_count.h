// Comma-separated texts as lists.
#pragma once

namespace ph {

// PH_GetArrayCount without its bound of 255 characters.
int splitList(const char* text, char*** list, int* count);

} // namespace ph
