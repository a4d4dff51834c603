#include "declared_classes.h"

#include "schema/class_schema.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <stdexcept>
#include <strings.h>

namespace schema {
namespace {

// The words and marks of one declaration.
class Scanner {
public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    bool atEnd() {
        skipBlanks();
        return rest_.empty();
    }
    bool accept(std::string_view mark) {
        skipBlanks();
        if (!rest_.starts_with(mark))
            return false;
        rest_.remove_prefix(mark.size());
        return true;
    }
    void expect(std::string_view mark) {
        if (!accept(mark))
            throw std::runtime_error('"' + std::string(mark) + "\" is missing before \"" +
                                     std::string(rest_) + '"');
    }
    bool acceptWord(std::string_view expected) {
        const std::string_view before = rest_;
        if (!atEnd() && peek() == expected)
            return word(), true;
        rest_ = before;
        return false;
    }
    std::string word() {
        const std::string_view found = peek();
        if (found.empty())
            throw std::runtime_error("a word is missing before \"" + std::string(rest_) + '"');
        rest_.remove_prefix(found.size());
        return std::string(found);
    }
    // Reads up to one of these marks, which stays, or to the end.
    std::string until(std::string_view marks) {
        skipBlanks();
        const std::size_t length = std::min(rest_.find_first_of(marks), rest_.size());
        const std::size_t last = rest_.substr(0, length).find_last_not_of(' ');
        std::string text(rest_.substr(0, last == std::string_view::npos ? 0 : last + 1));
        rest_.remove_prefix(length);
        return text;
    }

private:
    void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size())); }
    std::string_view peek() {
        skipBlanks();
        const auto* const end = std::ranges::find_if_not(
            rest_, [](unsigned char each) { return std::isalnum(each) != 0 || each == '_'; });
        return rest_.substr(0, static_cast<std::size_t>(std::distance(rest_.begin(), end)));
    }

    std::string_view rest_;
};

// "uint16[] Name", "CIM_Job REF Name", "CIM_Error INSTANCE[] Name", "INSTANCE Name"
DeclaredElement readElement(Scanner& text) {
    DeclaredElement element;
    const std::string first = text.word();
    if (first == "INSTANCE") {
        element.type = CMPI_instance;
    } else if (text.acceptWord("REF")) {
        element.type = CMPI_ref;
        element.className = first;
    } else if (text.acceptWord("INSTANCE")) {
        element.type = CMPI_instance;
        element.className = first;
    } else {
        element.type = typeOfName(first);
    }
    if (text.accept("[]"))
        element.type |= CMPI_ARRAY;
    element.name = text.word();
    return element;
}

ValueMap readValues(Scanner& text) {
    ValueMap values;
    if (!text.accept("{"))
        return values;
    do {
        std::string value = text.until("=;}");
        values.emplace_back(std::move(value), text.accept("=") ? text.until(";}") : "");
    } while (text.accept(";"));
    text.expect("}");
    return values;
}

void readWords(Scanner& text, DeclaredElement& element) {
    for (;;) {
        if (text.acceptWord("key"))
            element.isKey = true;
        else if (text.acceptWord("required"))
            element.isRequired = true;
        else if (text.acceptWord("writable"))
            element.isWritable = true;
        else if (text.acceptWord("max"))
            element.maxLength = static_cast<unsigned>(std::stoul(text.word()));
        else if (text.acceptWord("units"))
            element.units = text.until("{;)");
        else
            break;
    }
    element.values = readValues(text);
}

std::vector<DeclaredElement> readParameters(Scanner& text) {
    std::vector<DeclaredElement> parameters;
    while (!text.accept(")")) {
        const bool isInOut = text.acceptWord("inout");
        const bool isOut = !isInOut && text.acceptWord("out");
        if (!isInOut && !isOut)
            text.expect("in ");
        DeclaredElement parameter = readElement(text);
        parameter.isIn = !isOut;
        parameter.isOut = isInOut || isOut;
        readWords(text, parameter);
        parameters.push_back(std::move(parameter));
        text.accept(";");
    }
    return parameters;
}

void readFeature(const std::string& line, DeclaredClass& owner) {
    Scanner text(line);
    DeclaredElement element = readElement(text);
    if (text.accept("(")) {
        DeclaredMethod method{.name = element.name, .type = element.type};
        method.parameters = readParameters(text);
        method.values = readValues(text);
        owner.methods.push_back(std::move(method));
    } else {
        readWords(text, element);
        owner.properties.push_back(std::move(element));
    }
    if (!text.atEnd())
        throw std::runtime_error('"' + text.until("") + "\" is too much");
}

DeclaredClass readHead(const std::string& line) {
    Scanner text(line);
    DeclaredClass head;
    head.isAbstract = text.acceptWord("abstract");
    head.isAssociation = text.acceptWord("association");
    head.isIndication = !head.isAssociation && text.acceptWord("indication");
    if (!head.isAssociation && !head.isIndication)
        text.expect("class ");
    head.name = text.word();
    if (text.accept(":"))
        head.superclass = text.word();
    return head;
}

// Reads a class, or a feature of `owner`. Returns the class that further features belong to.
DeclaredClass* readDeclaration(const std::string& declaration, DeclaredClass* owner,
                               DeclaredClasses& classes) {
    if (declaration.starts_with(' ')) {
        if (owner == nullptr)
            throw std::runtime_error("this feature belongs to no class");
        readFeature(declaration, *owner);
        return owner;
    }
    const DeclaredClass head = readHead(declaration);
    const auto [entry, isNew] = classes.emplace(head.name, head);
    if (!isNew)
        throw std::runtime_error(head.name + " is declared already");
    return &entry->second;
}

} // namespace

bool NameLess::operator()(std::string_view left, std::string_view right) const {
    return std::ranges::lexicographical_compare(
        left, right, {}, [](unsigned char each) { return std::tolower(each); },
        [](unsigned char each) { return std::tolower(each); });
}

CMPIType typeOfName(std::string_view name) {
    constexpr CMPIType types[] = {CMPI_boolean, CMPI_char16, CMPI_uint8,  CMPI_uint16,  CMPI_uint32,
                                  CMPI_uint64,  CMPI_sint8,  CMPI_sint16, CMPI_sint32,  CMPI_sint64,
                                  CMPI_real32,  CMPI_real64, CMPI_string, CMPI_dateTime};
    const auto* const type = std::ranges::find(types, name, elementTypeName);
    if (type == std::end(types))
        throw std::runtime_error("there is no type " + std::string(name));
    return *type;
}

void readClasses(std::istream& file, DeclaredClasses& classes) {
    constexpr std::string_view continuation = "        ";
    int lineNumber = 0;
    int begin = 0; // of the declaration
    std::string declaration;
    DeclaredClass* owner = nullptr;
    const auto take = [&] {
        try {
            if (!declaration.empty())
                owner = readDeclaration(declaration, owner, classes);
        } catch (const std::exception& error) {
            throw std::runtime_error("line " + std::to_string(begin) + ": " + error.what());
        }
    };
    for (std::string line; std::getline(file, line);) {
        ++lineNumber;
        if (line.starts_with('#') || line.empty())
            continue;
        if (line.starts_with(continuation)) {
            declaration += line.substr(continuation.size() - 1);
            continue;
        }
        take();
        declaration = line;
        begin = lineNumber;
    }
    take();
}

} // namespace schema
