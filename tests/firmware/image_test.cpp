// Images of firmware: their head, and what is found out about damaged ones.
#include "firmware/image.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

std::string hexadecimal(const firmware::Digest& digest) {
    std::string text;
    for (const std::uint8_t byte : digest) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", byte);
        text += digits;
    }
    return text;
}

// The examples of FIPS 180-2, and lengths at which the last block has no room for its end.
TEST(Sha256, HasTheDigestsOfTheStandard) {
    const std::pair<std::string, const char*> examples[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {std::string(1'000'000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"}};
    for (const auto& [text, expected] : examples) {
        const std::span bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
        EXPECT_EQ(hexadecimal(firmware::Sha256().add(bytes).finish()), expected) << text.size();
        firmware::Sha256 inParts;
        for (std::size_t i = 0; i < bytes.size(); i += 63)
            inParts.add(bytes.subspan(i, std::min<std::size_t>(63, bytes.size() - i)));
        EXPECT_EQ(hexadecimal(inParts.finish()), expected) << text.size() << " bytes in parts";
    }
}

class ImageFile {
public:
    explicit ImageFile(const std::vector<std::uint8_t>& bytes) : file_(std::tmpfile()) {
        std::fwrite(bytes.data(), 1, bytes.size(), file_);
        std::fflush(file_);
    }
    ~ImageFile() { std::fclose(file_); }
    firmware::Fault check(firmware::ImageHead& head) const { return firmware::check(fileno(file_), head); }

private:
    std::FILE* file_;
};

TEST(Image, TellsWhetherItIsWhole) {
    // As long as what is read at a time, and a byte more or less.
    for (const std::size_t size : {0U, 1U, 16U * 1024 - 1, 16U * 1024, 40'000U}) {
        const std::vector<std::uint8_t> payload(size, 0x5A);
        const auto head = firmware::writeHead(
            {.major = 2, .minor = 5, .auxiliary = {0, 7, 0, 1}, .manufacturerId = 32473, .productId = 9},
            payload);
        std::vector<std::uint8_t> image(head.begin(), head.end());
        image.insert(image.end(), payload.begin(), payload.end());
        firmware::ImageHead read;
        EXPECT_EQ(ImageFile(image).check(read), firmware::Fault::None) << size;
        EXPECT_EQ(read.version(), "2.05.00070001");
        EXPECT_EQ(read.manufacturerId, 32473U);
        EXPECT_EQ(read.productId, 9);
        EXPECT_EQ(read.size, size);

        auto longer = image;
        longer.push_back(0);
        EXPECT_EQ(ImageFile(longer).check(read), firmware::Fault::WrongSize) << size;
        image.pop_back();
        EXPECT_EQ(ImageFile(image).check(read),
                  size > 0 ? firmware::Fault::WrongSize : firmware::Fault::NoImage)
            << size;
    }
}

TEST(Image, IsDamagedByAnyByte) {
    const std::vector<std::uint8_t> payload(100, 1);
    const auto head = firmware::writeHead({.major = 1}, payload);
    std::vector<std::uint8_t> image(head.begin(), head.end());
    image.insert(image.end(), payload.begin(), payload.end());
    firmware::ImageHead read;
    for (std::size_t i = 0; i < image.size(); ++i) {
        auto damaged = image;
        damaged[i] ^= 1;
        EXPECT_NE(ImageFile(damaged).check(read), firmware::Fault::None) << i;
    }
}

} // namespace
