// Values of a client's request as texts: numbers, addresses, comma lists.
#include "broker/broker.h"
#include "input.h"
#include "target.h"

#include "provider_helper/utility.h"

#include <arpa/inet.h>
#include <cstring>

namespace {

void readNumbers(const CMPIData& data) {
    std::uint8_t byte = 0;
    std::int8_t signedByte = 0;
    std::uint64_t number = 0;
    std::int64_t signedNumber = 0;
    CMPIBoolean boolean = 0;
    std::uint64_t text = 0;
    const bool isNumber = ParseToUnsignedInt(data, &text) == 0;
    if (GetUINT8Value(data, &byte) == 0)
        require(isNumber && text == byte, "a number has one value");
    if (GetUINT64Value(data, &number) == 0)
        require(isNumber && text == number, "a number has one value");
    std::int64_t signedText = 0;
    const bool isSigned = ParseToSignedInt(data, &signedText) == 0;
    if (GetSINT8Value(data, &signedByte) == 0)
        require(isSigned && signedText == signedByte, "a number has one value");
    if (GetSINT64Value(data, &signedNumber) == 0)
        require(isSigned && signedText == signedNumber, "a number has one value");
    if (GetBoolValue(data, &boolean) == 0)
        require(boolean <= 1, "a boolean is true or false");
}

void readList(const char* text) {
    char** list = nullptr;
    int count = 0;
    if (PH_GetArrayCount(text, &list, &count) != 0 || list == nullptr)
        return;
    require(count > 0, "a list has entries");
    for (int i = 0; i < count; ++i) {
        require(list[i] == nullptr || std::strchr(list[i], ',') == nullptr, "an entry has no comma");
        std::free(list[i]);
    }
    std::free(list);
}

void readAddresses(const char* text) {
    std::uint8_t ipv4[4];
    std::uint8_t mac[6] = {};
    in_addr address{};
    PH_ConvertStrToIP(text, ipv4);
    if (inet_pton(AF_INET, text, &address) == 1) {
        require(PH_ConvertStrToIP(text, ipv4) == 0 && std::memcmp(ipv4, &address, sizeof ipv4) == 0,
                "an address is read as it is");
    }
    GetMACAddress(text, mac);
    ConvertStrToMAC(text, mac);
    char written[18];
    require(ConvertMACNumToMACFormatStr(mac, written) == 17 && std::strlen(written) == 17,
            "a MAC has 17 characters");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = textOf(data, size);
    static const broker::Broker broker;
    broker::Scope scope(broker);
    readNumbers(scope.makeData({CMPI_string, text}));
    readList(text.c_str());
    readAddresses(text.c_str());
    IsValidIntValue(text.c_str(), 0);
    IsValidIntValue(text.c_str(), 1);
    return 0;
}
