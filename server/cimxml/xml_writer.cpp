#include "cimxml/xml_writer.h"

#include "interop/xml_text.h"

#include <algorithm>

namespace cimxml {
namespace {

constexpr std::size_t partSize = 16 * 1024;

// Stands in XML as it is; most texts are of nothing else.
bool isPlain(char c) {
    return c >= 0x20 && c < 0x7F && c != '&' && c != '<' && c != '>' && c != '"';
}

} // namespace

void XmlWriter::declaration() {
    buffer_ += "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";
}

void XmlWriter::begin(const char* name, std::initializer_list<Attribute> attributes) {
    closeTag();
    buffer_.append("<").append(name);
    for (const Attribute& attribute : attributes) {
        if (attribute.name.empty())
            continue;
        buffer_.append(" ").append(attribute.name).append("=\"");
        escape(attribute.value);
        buffer_ += '"';
    }
    tagIsOpen_ = true;
}

void XmlWriter::end(const char* name) {
    if (tagIsOpen_)
        buffer_ += "/>";
    else
        buffer_.append("</").append(name).append(">");
    tagIsOpen_ = false;
    if (buffer_.size() >= partSize)
        flush();
}

void XmlWriter::text(std::string_view text) {
    closeTag();
    escape(text);
}

void XmlWriter::flush() {
    if (!buffer_.empty())
        sink_(buffer_);
    buffer_.clear();
}

void XmlWriter::closeTag() {
    if (tagIsOpen_)
        buffer_ += '>';
    tagIsOpen_ = false;
}

void XmlWriter::escape(std::string_view text) {
    while (!text.empty()) {
        const std::size_t plain =
            static_cast<std::size_t>(std::ranges::find_if_not(text, isPlain) - text.begin());
        buffer_.append(text.substr(0, plain));
        text.remove_prefix(plain);
        const std::size_t special =
            static_cast<std::size_t>(std::ranges::find_if(text, isPlain) - text.begin());
        replace(text.substr(0, special));
        text.remove_prefix(special);
    }
}

// Readers turn other line ends and, in attributes, tabs into what is simpler: references keep them.
void XmlWriter::replace(std::string_view special) {
    for (const char c : interop::xmlText(special))
        switch (c) {
        case '&':
            buffer_ += "&amp;";
            break;
        case '<':
            buffer_ += "&lt;";
            break;
        case '>':
            buffer_ += "&gt;";
            break;
        case '"':
            buffer_ += "&quot;";
            break;
        case '\t':
        case '\n':
        case '\r':
            buffer_.append("&#").append(std::to_string(c)).append(";");
            break;
        default:
            buffer_ += c;
        }
}

} // namespace cimxml
