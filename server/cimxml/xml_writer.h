// Writes XML as a stream: a long answer is never whole in memory.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

namespace cimxml {

struct Attribute {
    std::string_view name, value;
};

class XmlWriter {
public:
    // Takes parts of the text, of some kilobytes each. What it throws ends the writing.
    using Sink = std::function<void(std::string_view)>;

    explicit XmlWriter(Sink sink) : sink_(std::move(sink)) {}

    // Writes an element with what `body` writes in it. It has an end tag even if that is nothing: parsers of
    // some clients know the short form of few elements.
    template <class Body>
    void element(const char* name, std::initializer_list<Attribute> attributes, Body body) {
        begin(name, attributes);
        closeTag();
        body();
        end(name);
    }
    void element(const char* name, std::initializer_list<Attribute> attributes = {}) {
        begin(name, attributes);
        end(name);
    }
    void textElement(const char* name, std::string_view text) {
        begin(name, {});
        this->text(text);
        end(name);
    }
    // Characters that XML cannot carry become U+FFFD.
    void text(std::string_view text);
    void declaration();
    // Hands over what is left.
    void flush();

private:
    void begin(const char* name, std::initializer_list<Attribute> attributes);
    void end(const char* name);
    void closeTag();
    void escape(std::string_view text);
    void replace(std::string_view special);

    Sink sink_;
    std::string buffer_;
    bool tagIsOpen_ = false; // its '>' is still to come
};

} // namespace cimxml
