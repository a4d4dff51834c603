#include <platform/support.h>

#include <arpa/inet.h>

namespace {

int toText(int family, const uint8_t* address, char* text, socklen_t size) {
    const bool isWritten =
        address != nullptr && text != nullptr && inet_ntop(family, address, text, size) != nullptr;
    return isWritten ? 0 : -1;
}

} // namespace

int ConvertIPnumToStr(const uint8_t* address, char* text) {
    return toText(AF_INET, address, text, INET_ADDRSTRLEN);
}

int ConvertIP6numToStr(const uint8_t* address, char* text) {
    return toText(AF_INET6, address, text, INET6_ADDRSTRLEN);
}
