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

// Makes standard output write as much at once as a pipe takes, if it is none of a terminal. To be called before anything
// is written.
void bufferOutput();

// Replaces everything in the text that would move the cursor or is not UTF-8: it may come from a BMC.
std::string printable(std::string_view text);

// Counts the columns that a printable text takes.
std::size_t displayWidth(std::string_view text);

// Breaks a printable text into lines of at most so many columns (one or more), at blanks where it has some.
std::vector<std::string> wrap(std::string_view text, std::size_t columns);

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
    // `leaving` are the columns that go first where there is no room, in this order; then the last ones do.
    explicit Table(std::vector<std::string> head, std::vector<std::string> leaving = {})
        : head_(std::move(head)), leaving_(std::move(leaving)) {}
    // Takes as many cells as the head has. The whole line gets the colour.
    void add(std::vector<std::string> cells, Colour colour = Colour::None);

    // Tells whether all columns fit, the texts among them as narrow as they may become.
    bool fits(std::size_t width) const;

    // Makes the widest texts go on below, at a blank where there is one, until the columns fit. If they do not,
    // columns are left out, and named below the table. Values are never cut.
    void print(std::ostream& out, const Layout& layout = {}) const;

private:
    struct Column {
        std::size_t index;
        std::size_t width;
        std::size_t least;
        bool isNumeric;
    };
    struct Row {
        std::vector<std::string> cells;
        Colour colour;
    };
    std::vector<Column> columns() const;
    void printRow(std::ostream& out, const std::vector<Column>& columns, const Row& row,
                  bool hasColours) const;

    // Takes a column out, and returns its title.
    std::string leave(std::vector<Column>& columns) const;

    std::vector<std::string> head_, leaving_;
    std::vector<Row> rows_;
};

} // namespace phctl
