#include "text_layout.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <iterator>
#include <ostream>
#include <sys/ioctl.h>
#include <unistd.h>

namespace phctl {
namespace {

constexpr std::string_view gap = "  ";
constexpr std::size_t narrowestText = 10, narrowestName = 20; // columns that a text keeps

struct Character {
    std::size_t bytes;
    int width; // -1: nothing that can be printed
};

// ASCII is nearly all there is.
bool isPlain(char character) {
    return character >= ' ' && character <= '~';
}

std::size_t plainLength(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::find_if_not(text, isPlain) - text.begin());
}

Character next(std::string_view text) {
    if (isPlain(text[0]))
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

// Returns the columns that a line takes, with the gaps.
template <class Column>
std::size_t total(const std::vector<Column>& columns, std::size_t Column::*width) {
    std::size_t sum = columns.empty() ? 0 : (columns.size() - 1) * gap.size();
    for (const Column& column : columns)
        sum += column.*width;
    return sum;
}

} // namespace

void useUtf8() {
    if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr)
        std::setlocale(LC_CTYPE, "");
}

void bufferOutput() {
    constexpr std::size_t pipeSize = 64 * 1024;
    if (isatty(STDOUT_FILENO) == 0)
        std::setvbuf(stdout, nullptr, _IOFBF, pipeSize);
}

std::string printable(std::string_view text) {
    std::string result(text.substr(0, plainLength(text)));
    for (std::size_t i = result.size(); i < text.size();) {
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
    std::size_t width = plainLength(text);
    for (std::size_t i = width; i < text.size();) {
        const Character character = next(text.substr(i));
        width += static_cast<std::size_t>(std::max(character.width, 0));
        i += character.bytes;
    }
    return width;
}

std::vector<std::string> wrap(std::string_view text, std::size_t columns) {
    std::vector<std::string> lines;
    while (displayWidth(text) > columns) {
        std::size_t end = 0, blank = 0;
        for (std::size_t width = 0; end < text.size();) {
            const Character character = next(text.substr(end));
            width += static_cast<std::size_t>(std::max(character.width, 0));
            if (text[end] == ' ')
                blank = end;
            if (width > columns && end > 0)
                break;
            end += character.bytes;
        }
        const std::size_t lineEnd = blank > 0 ? blank : end;
        lines.emplace_back(text.substr(0, lineEnd));
        text.remove_prefix(blank > 0 ? lineEnd + 1 : lineEnd);
    }
    lines.emplace_back(text);
    return lines;
}

Layout layoutOf(int descriptor, bool wide) {
    constexpr std::size_t usual = 80;
    if (isatty(descriptor) == 0)
        return {};
    const char* const noColour = std::getenv("NO_COLOR");
    Layout layout{.width = 0, .hasColours = noColour == nullptr || *noColour == '\0'};
    winsize size{};
    if (!wide)
        layout.width = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
    return layout;
}

void Table::add(std::vector<std::string> cells, Colour colour) {
    for (std::string& cell : cells)
        cell = printable(cell);
    cells.resize(head_.size());
    rows_.push_back({std::move(cells), colour});
}

std::vector<Table::Column> Table::columns() const {
    std::vector<Column> columns;
    for (std::size_t i = 0; i < head_.size(); ++i) {
        const std::size_t headWidth = displayWidth(head_[i]);
        Column column{i, headWidth, headWidth, false};
        bool hasText = false;
        for (const Row& row : rows_) {
            const std::string& cell = row.cells[i];
            const bool isNumeric = isNumber(cell);
            column.width = std::max(column.width, displayWidth(cell));
            column.isNumeric = column.isNumeric || isNumeric;
            hasText = hasText || !(isNumeric || cell.empty() || cell == "-");
        }
        column.isNumeric = column.isNumeric && !hasText;
        // The first column names what the others are about.
        const std::size_t narrowest = i == 0 ? narrowestName : narrowestText;
        column.least =
            column.isNumeric ? column.width : std::max(headWidth, std::min(column.width, narrowest));
        columns.push_back(column);
    }
    return columns;
}

bool Table::fits(std::size_t width) const {
    return width == 0 || total(columns(), &Column::least) <= width;
}

void Table::printRow(std::ostream& out, const std::vector<Column>& columns, const Row& row,
                     bool hasColours) const {
    std::vector<std::vector<std::string>> cells;
    std::size_t height = 1;
    for (const Column& column : columns) {
        cells.push_back(wrap(row.cells[column.index], column.width));
        height = std::max(height, cells.back().size());
    }
    for (std::size_t y = 0; y < height; ++y) {
        std::string line;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const std::string cell = y < cells[i].size() ? cells[i][y] : std::string();
            const std::string blanks(columns[i].width - displayWidth(cell), ' ');
            line += i == 0 ? "" : gap;
            line += columns[i].isNumeric ? blanks + cell : cell + blanks;
        }
        line.erase(line.find_last_not_of(' ') + 1);
        if (hasColours && row.colour != Colour::None)
            out << escapeOf(row.colour) << line << plain << '\n';
        else
            out << line << '\n';
    }
}

std::string Table::leave(std::vector<Column>& columns) const {
    auto gone = std::prev(columns.end());
    for (const std::string& title : leaving_) {
        const auto found = std::ranges::find(
            columns, title, [&](const Column& column) -> const std::string& { return head_[column.index]; });
        if (found != columns.end()) {
            gone = found;
            break;
        }
    }
    std::string title = head_[gone->index];
    columns.erase(gone);
    return title;
}

void Table::print(std::ostream& out, const Layout& layout) const {
    std::vector<Column> shown = columns();
    std::string left;
    if (layout.width > 0) {
        while (shown.size() > 1 && total(shown, &Column::least) > layout.width)
            left += (left.empty() ? " " : ", ") + leave(shown);
        // Texts give way, the widest first, until the others are as wide.
        while (total(shown, &Column::width) > layout.width) {
            const auto widest = std::ranges::max_element(
                shown, {}, [](const Column& each) { return each.width > each.least ? each.width : 0; });
            if (widest->width <= widest->least)
                break;
            --widest->width;
        }
    }
    printRow(out, shown, {head_, Colour::None}, false);
    for (const Row& row : rows_)
        printRow(out, shown, row, layout.hasColours);
    if (!left.empty())
        out << "Not shown for want of room:" << left << " (--wide)\n";
}

} // namespace phctl
