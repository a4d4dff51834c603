// Text for terminals and pipes: what characters take how many columns, and tables.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace phctl {

// Makes wcwidth and the conversion of UTF-8 work whatever the environment says. To be called once, at start.
void useUtf8();

// Replaces everything in the text that would move the cursor or is not UTF-8: it may come from a BMC.
std::string printable(std::string_view text);

// Counts the columns that a printable text takes.
std::size_t displayWidth(std::string_view text);

// Cuts the text to a number of columns; "…" is the last one of a text that was cut.
std::string cut(const std::string& text, std::size_t columns);

// Returns the columns of the terminal behind a descriptor; 0 when it is not a terminal.
std::size_t terminalWidth(int descriptor);

// What the text is printed on.
struct Layout {
    std::size_t width = 0; // columns; 0: no limit
    bool hasColours = false;
};

// Returns the layout of the terminal behind a descriptor; NO_COLOR in the environment turns colours off.
// Anything else than a terminal has no limit and no colours, as has the width of a `wide` layout.
Layout layoutOf(int descriptor, bool wide = false);

enum class Colour { None, Yellow, Red, Grey };

// Prints rows under a head line, in aligned columns. Columns that hold only numbers are flush right.
class Table {
public:
    explicit Table(std::vector<std::string> head) : head_(std::move(head)) {}
    // Takes as many cells as the head has. The whole line gets the colour.
    void add(std::vector<std::string> cells, Colour colour = Colour::None);
    // Lines are cut to the layout's width.
    void print(std::ostream& out, const Layout& layout) const;
    void print(std::ostream& out, std::size_t width) const { print(out, Layout{.width = width}); }

private:
    struct Row {
        std::vector<std::string> cells;
        Colour colour;
    };

    std::vector<std::string> head_;
    std::vector<Row> rows_;
};

} // namespace phctl
