#include "value_words.h"

#include "numbers.h"
#include "schema/class_schema.h"

namespace phctl {
namespace {

// "32768..65535", "..10" or "100..", of which a missing end is open.
bool isInRange(std::string_view range, std::string_view text) {
    const std::size_t dots = range.find("..");
    const auto value = readNumber<std::int64_t>(text);
    if (dots == std::string_view::npos || !value)
        return false;
    const auto first = readNumber<std::int64_t>(range.substr(0, dots)),
               last = readNumber<std::int64_t>(range.substr(dots + 2));
    return (first || last) && (!first || *first <= *value) && (!last || *value <= *last);
}

std::string wordsOf(std::span<const schema::Value> map, const std::string& text) {
    constexpr std::string_view others = "..";
    std::string_view rest;
    for (const auto& [value, meaning] : map) {
        if (value == text || isInRange(value, text))
            return std::string(meaning);
        if (value == others)
            rest = meaning;
    }
    return std::string(rest);
}

} // namespace

std::string valueWords(std::string_view className, std::string_view property, const broker::Value& value) {
    const schema::Class* described = schema::find(className);
    const schema::Property* declared = described != nullptr ? described->property(property) : nullptr;
    if (declared == nullptr || declared->values.empty() || value.as<std::monostate>() != nullptr)
        return {};
    const auto* array = value.as<broker::Value::Array>();
    if (array == nullptr)
        return wordsOf(declared->values, broker::toText(value));
    std::string all;
    bool hasWords = false;
    for (const broker::Value& element : *array) {
        const std::string words = wordsOf(declared->values, broker::toText(element));
        hasWords = hasWords || !words.empty();
        all += (all.empty() ? "" : ", ") + (words.empty() ? "?" : words);
    }
    return hasWords ? all : std::string();
}

} // namespace phctl
