#include "mail/message.h"

#include <algorithm>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <random>

namespace mail {
namespace {

bool isPrintable(char c) {
    return c >= ' ' && c <= '~';
}

bool isControl(char c) {
    return static_cast<unsigned char>(c) < ' ' || c == '\x7F';
}

bool continuesCharacter(char c) { // of UTF-8
    return (c & 0xC0) == 0x80;
}

std::string base64(std::string_view bytes) {
    static constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group = group << 8 | (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0U);
        for (std::size_t k = 0; k < 4; ++k)
            text += k <= count ? digits[group >> (18 - 6 * k) & 0x3F] : '=';
    }
    return text;
}

// A header field. Control characters in its text, line ends among them, become blanks; what is more than
// ASCII becomes encoded words (RFC 2047), and so does what would be read as one.
std::string field(const std::string& name, std::string text) {
    const std::string start = name + ": ";
    std::replace_if(text.begin(), text.end(), isControl, ' ');
    if (std::all_of(text.begin(), text.end(), isPrintable) && text.find("=?") == std::string::npos)
        return start + text;
    constexpr std::size_t longestLine = 76;
    constexpr std::size_t frameSize = 12; // of a word: "=?UTF-8?B?" and "?="
    std::string lines = start;
    std::size_t column = start.size();
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t most = (longestLine - column - frameSize) / 4 * 3; // bytes in base64
        std::size_t size = std::min(most, rest.size());
        while (size < rest.size() && size > most - 4 && continuesCharacter(rest[size]))
            --size; // words hold whole characters
        if (lines.size() > start.size())
            lines += "\r\n ";
        lines += "=?UTF-8?B?" + base64(rest.substr(0, size)) + "?=";
        rest.remove_prefix(size);
        column = 1;
    }
    return lines;
}

// Quoted-printable (RFC 2045, 6.7). A text's own line ends, CR LF or LF, become CR LF.
class QuotedPrintable {
public:
    static std::string encode(std::string_view text) {
        QuotedPrintable result;
        while (!text.empty()) {
            const std::size_t end = std::min(text.find('\n'), text.size());
            std::string_view line = text.substr(0, end);
            if (line.ends_with('\r') && end < text.size())
                line.remove_suffix(1);
            result.line(line);
            text.remove_prefix(std::min(end + 1, text.size()));
        }
        return result.out_;
    }

private:
    void line(std::string_view text) {
        column_ = 0;
        for (std::size_t i = 0; i < text.size(); ++i)
            character(text[i], i + 1 == text.size());
        out_ += "\r\n";
    }

    void character(char c, bool isLast) {
        constexpr std::size_t longestLine = 76; // with the = of a soft end
        // Three characters is the most that one becomes.
        if (column_ + (isLast ? 3 : 4) > longestLine) {
            out_ += "=\r\n";
            column_ = 0;
        }
        const bool isBlank = c == ' ' || c == '\t';
        const bool isSafe = isBlank ? !isLast : isPrintable(c) && c != '=';
        // SMTP gives a meaning to dots that begin a line.
        if (isSafe && !(c == '.' && column_ == 0)) {
            out_ += c;
            column_ += 1;
            return;
        }
        static constexpr char digits[] = "0123456789ABCDEF";
        const auto byte = static_cast<unsigned char>(c);
        out_ += {'=', digits[byte >> 4], digits[byte & 0x0F]};
        column_ += 3;
    }

    std::string out_;
    std::size_t column_ = 0;
};

// The date is in UTC. strftime would use the language of the locale.
std::string dateText(std::time_t time) {
    static constexpr const char* days[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static constexpr const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    std::tm utc{};
    gmtime_r(&time, &utc);
    char text[64];
    std::snprintf(text, sizeof text, "%s, %02d %s %d %02d:%02d:%02d +0000", days[utc.tm_wday], utc.tm_mday,
                  months[utc.tm_mon], utc.tm_year + 1900, utc.tm_hour, utc.tm_min, utc.tm_sec);
    return text;
}

std::string newMessageId(std::time_t time, const std::string& host) {
    std::random_device random;
    char text[64];
    std::snprintf(text, sizeof text, "%" PRId64 ".%08x%08x", static_cast<std::int64_t>(time), random(),
                  random());
    return "<" + std::string(text) + "@" + host + ">";
}

} // namespace

bool isAddress(std::string_view text) {
    constexpr std::string_view special = "<>()[]\\,;:\" ";
    const std::size_t at = text.find('@');
    return at != std::string_view::npos && at > 0 && at + 1 < text.size() && at == text.rfind('@') &&
           std::all_of(text.begin(), text.end(),
                       [&](char c) { return isPrintable(c) && special.find(c) == std::string_view::npos; });
}

std::string compose(const Message& message) {
    const std::time_t now = std::time(nullptr);
    std::string recipients;
    for (const std::string& recipient : message.recipients)
        recipients += (recipients.empty() ? "" : ",\r\n ") + recipient;
    return "From: " + message.sender + "\r\nTo: " + recipients + "\r\n" + field("Subject", message.subject) +
           "\r\nDate: " + dateText(now) + "\r\nMessage-ID: " + newMessageId(now, message.host) +
           "\r\nAuto-Submitted: auto-generated" // RFC 3834: not to be answered by an absence notice
           "\r\nMIME-Version: 1.0"
           "\r\nContent-Type: text/plain; charset=UTF-8"
           "\r\nContent-Transfer-Encoding: quoted-printable\r\n\r\n" +
           QuotedPrintable::encode(message.body);
}

} // namespace mail
