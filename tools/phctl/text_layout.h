// Text for terminals and pipes: what characters take how many columns, and tables.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace phctl {

// Makes wcwidth and the conversion of UTF-8 work whatever the environment says. Once, at start.
void useUtf8();

// The text with everything that would move the cursor or is no UTF-8 replaced: it may come from a BMC.
std::string printable(std::string_view text);

// Columns that a printable text takes.
std::size_t displayWidth(std::string_view text);

// The text cut to a number of columns, with "…" as the last one where it is.
std::string cut(const std::string& text, std::size_t columns);

// Columns of the terminal that a descriptor is; 0: it is none.
std::size_t terminalWidth(int descriptor);

// Rows under a head line, in aligned columns. Those of nothing but numbers are flush right.
class Table {
public:
    explicit Table(std::vector<std::string> head) : head_(std::move(head)) {}
    void add(std::vector<std::string> row); // as many cells as the head has
    // Lines are cut to `width` columns; 0: they are not.
    void print(std::ostream& out, std::size_t width) const;

private:
    std::vector<std::string> head_;
    std::vector<std::vector<std::string>> rows_;
};

} // namespace phctl
