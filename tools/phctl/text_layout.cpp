#include "text_layout.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdlib>
#include <cwchar>
#include <ostream>
#include <sys/ioctl.h>
#include <unistd.h>

namespace phctl {
namespace {

constexpr std::string_view ellipsis = "…";

struct Character {
    std::size_t bytes;
    int width; // -1: nothing that can be printed
};

Character next(std::string_view text) {
    if (text[0] >= ' ' && text[0] <= '~') // nearly all there is
        return {1, 1};
    wchar_t wide = 0;
    std::mbstate_t state{};
    const std::size_t length = std::mbrtowc(&wide, text.data(), text.size(), &state);
    if (length == 0 || length > text.size()) // NUL, incomplete or wrong
        return {1, -1};
    return {length, wcwidth(wide)};
}

bool isNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("+-.0123456789") == std::string_view::npos &&
           text.find_first_of("0123456789") != std::string_view::npos;
}

constexpr std::string_view plain = "\x1B[0m";

std::string_view escapeOf(Colour colour) {
    switch (colour) {
    case Colour::Yellow:
        return "\x1B[33m";
    case Colour::Red:
        return "\x1B[31m";
    case Colour::Grey:
        return "\x1B[90m";
    case Colour::None:
        break;
    }
    return "";
}

} // namespace

void useUtf8() {
    if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr)
        std::setlocale(LC_CTYPE, "");
}

std::string printable(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size();) {
        const auto [bytes, width] = next(text.substr(i));
        if (width >= 0) {
            result += text.substr(i, bytes);
        } else {
            constexpr char digits[] = "0123456789ABCDEF";
            for (const char each : text.substr(i, bytes)) {
                const auto byte = static_cast<unsigned char>(each);
                result += {'\\', 'x', digits[byte >> 4], digits[byte & 0xF]};
            }
        }
        i += bytes;
    }
    return result;
}

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    for (std::size_t i = 0; i < text.size();) {
        const Character character = next(text.substr(i));
        width += static_cast<std::size_t>(std::max(character.width, 0));
        i += character.bytes;
    }
    return width;
}

std::string cut(const std::string& text, std::size_t columns) {
    if (displayWidth(text) <= columns)
        return text;
    std::size_t end = 0;
    for (std::size_t width = 0; end < text.size();) {
        const Character character = next(std::string_view(text).substr(end));
        width += static_cast<std::size_t>(std::max(character.width, 0));
        if (width + 1 > columns)
            break;
        end += character.bytes;
    }
    return text.substr(0, end).append(ellipsis);
}

std::size_t terminalWidth(int descriptor) {
    constexpr std::size_t usual = 80;
    winsize size{};
    if (isatty(descriptor) == 0)
        return 0;
    return ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

Layout layoutOf(int descriptor, bool wide) {
    const char* const noColour = std::getenv("NO_COLOR");
    return {.width = wide ? 0 : terminalWidth(descriptor),
            .hasColours = isatty(descriptor) != 0 && (noColour == nullptr || *noColour == '\0')};
}

void Table::add(std::vector<std::string> cells, Colour colour) {
    for (std::string& cell : cells)
        cell = printable(cell);
    cells.resize(head_.size());
    rows_.push_back({std::move(cells), colour});
}

void Table::print(std::ostream& out, const Layout& layout) const {
    constexpr std::string_view gap = "  ";
    struct Column {
        std::size_t width;
        bool isNumeric;
    };
    std::vector<Column> columns;
    for (std::size_t i = 0; i < head_.size(); ++i) {
        Column column{displayWidth(head_[i]), false};
        bool hasText = false;
        for (const Row& row : rows_) {
            const std::string& cell = row.cells[i];
            const bool isNumeric = isNumber(cell);
            column.width = std::max(column.width, displayWidth(cell));
            column.isNumeric = column.isNumeric || isNumeric;
            hasText = hasText || !(isNumeric || cell.empty() || cell == "-");
        }
        column.isNumeric = column.isNumeric && !hasText;
        columns.push_back(column);
    }
    const auto printRow = [&](const std::vector<std::string>& row, Colour colour) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string blanks(columns[i].width - displayWidth(row[i]), ' ');
            line += i == 0 ? "" : gap;
            line += columns[i].isNumeric ? blanks + row[i] : row[i] + blanks;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        const std::string_view escape = layout.hasColours ? escapeOf(colour) : "";
        out << escape << (layout.width > 0 ? cut(line, layout.width) : line) << (escape.empty() ? "" : plain)
            << '\n';
    };
    printRow(head_, Colour::None);
    for (const Row& row : rows_)
        printRow(row.cells, row.colour);
}

} // namespace phctl
