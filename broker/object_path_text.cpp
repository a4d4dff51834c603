#include "broker/value.h"

#include <algorithm>
#include <charconv>

namespace broker {

namespace {

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\')
            result += '\\';
        result += character;
    }
    return result + '"';
}

bool startsName(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z') ||
           character == '_' || static_cast<unsigned char>(character) >= 0x80; // UTF-8
}

bool continuesName(char character) {
    return startsName(character) || (character >= '0' && character <= '9');
}

class Parser {
public:
    explicit Parser(std::string_view text) : text_(text) {}

    ObjectPath parse() {
        ObjectPath path;
        if (text_.starts_with("//")) {
            const size_t slash = text_.find('/', 2);
            if (slash == std::string_view::npos || slash == 2)
                fail("expected a host name and '/' after \"//\"");
            path.host = text_.substr(2, slash - 2);
            position_ = slash + 1;
        }
        // The colon after a namespace comes before any key, whose text may hold colons too.
        const size_t colon = text_.find_first_of(":.\"=", position_);
        if (colon != std::string_view::npos && text_[colon] == ':') {
            path.nameSpace = nameSpace(colon);
            position_ = colon + 1;
        } else if (!path.host.empty()) {
            fail("expected a namespace and ':' after the host");
        }
        path.className = name("a class name");
        if (atEnd())
            return path;
        expect('.', "after the class name");
        do {
            const size_t start = position_;
            std::string key = name("a key name");
            if (find(path.keys, key) != nullptr) {
                position_ = start;
                fail("key \"" + key + "\" is given twice");
            }
            expect('=', "after key name \"" + key + "\"");
            Value keyValue = value(key);
            path.keys.push_back({std::move(key), std::move(keyValue)});
        } while (accept(','));
        if (!atEnd())
            fail("expected ',' or the end after the value of key \"" + path.keys.back().name + "\"");
        return path;
    }

private:
    [[noreturn]] void fail(const std::string& message) const { throw PathSyntaxError(message, position_); }
    bool atEnd() const { return position_ == text_.size(); }

    bool accept(char character) {
        if (atEnd() || text_[position_] != character)
            return false;
        ++position_;
        return true;
    }

    void expect(char character, const std::string& where) {
        if (!accept(character))
            fail(std::string("expected '") + character + "' " + where);
    }

    std::string name(const char* what) {
        const size_t start = position_;
        if (!atEnd() && startsName(text_[position_]))
            while (!atEnd() && continuesName(text_[position_]))
                ++position_;
        if (position_ == start)
            fail(std::string("expected ") + what);
        return std::string(text_.substr(start, position_ - start));
    }

    // A namespace consists of names with slashes between them.
    std::string nameSpace(size_t end) {
        const size_t start = position_;
        do
            name("a name in the namespace");
        while (accept('/'));
        if (position_ != end)
            fail("expected '/' or ':' in the namespace");
        return std::string(text_.substr(start, end - start));
    }

    Value value(const std::string& key) {
        if (accept('"'))
            return {CMPI_string, string(key)};
        const size_t end = std::min(text_.find(',', position_), text_.size());
        const std::string_view word = text_.substr(position_, end - position_);
        Value value = keyWord(word, key);
        position_ = end;
        return value;
    }

    Value keyWord(std::string_view word, const std::string& key) {
        if (sameName(word, "TRUE") || sameName(word, "FALSE"))
            return {CMPI_boolean, sameName(word, "TRUE")};
        if (!word.starts_with('-'))
            return {CMPI_uint64, number<std::uint64_t>(word, key)};
        const auto negative = number<std::int64_t>(word, key);
        if (negative == 0) // it is written without a sign
            return {CMPI_uint64, std::uint64_t{0}};
        return {CMPI_sint64, negative};
    }

    std::string string(const std::string& key) {
        std::string result;
        while (!atEnd()) {
            const char character = text_[position_++];
            if (character == '"')
                return result;
            if (character != '\\') {
                result += character;
            } else {
                if (atEnd() || (text_[position_] != '"' && text_[position_] != '\\'))
                    fail("expected '\"' or '\\' after a backslash in the value of key \"" + key + '"');
                result += text_[position_++];
            }
        }
        fail("missing '\"' at the end of the value of key \"" + key + '"');
    }

    template <class Number>
    Number number(std::string_view word, const std::string& key) const {
        Number number{};
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
        if (error == std::errc::result_out_of_range)
            fail("the value of key \"" + key + "\" does not fit 64 bits");
        if (error != std::errc{} || end != word.data() + word.size())
            fail("expected a quoted text, an integer, TRUE or FALSE as value of key \"" + key + '"');
        return number;
    }

    std::string_view text_;
    size_t position_ = 0;
};

} // namespace

std::string toText(const ObjectPath& path) {
    std::string text;
    if (!path.host.empty())
        text += "//" + path.host + '/';
    if (!path.nameSpace.empty())
        text += path.nameSpace + ':';
    text += path.className;
    char separator = '.';
    for (const NamedValue& key : path.keys) {
        const CMPIType type = key.value.type;
        const bool plain = type == CMPI_boolean || (type & CMPI_INTEGER) != 0 || key.value.isNull();
        text += separator + key.name + '=' + (plain ? toText(key.value) : quoted(toText(key.value)));
        separator = ',';
    }
    return text;
}

ObjectPath parseObjectPath(std::string_view text) {
    return Parser(text).parse();
}

} // namespace broker
