// Fetches an image over HTTP: a library of its own, as libcurl brings some thirty libraries along.
#pragma once

#include <cstdint>

extern "C" {

// Writes what the URL ("http://…") names to the file, which is empty. Returns 0; -1 when it is larger than
// `largest` bytes, when the server refuses it, sends nothing for 20 seconds or breaks off, or when `timeout` seconds
// are over.
int PH_FetchOverHttp(const char* url, int file, std::uint32_t largest, int timeout);
}

inline constexpr char httpImageLibrary[] = "libhttp_image.so";
