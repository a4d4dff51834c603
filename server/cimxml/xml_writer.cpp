#include "cimxml/xml_writer.h"

#include "interop/xml_text.h"

namespace cimxml {
namespace {

constexpr std::size_t partSize = 16 * 1024;

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

// Readers turn other line ends and, in attributes, tabs into what is simpler: references keep them.
void XmlWriter::escape(std::string_view text) {
    for (const char c : interop::xmlText(text))
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
