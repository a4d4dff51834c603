#include "value_words.h"

#include "schema/class_schema.h"

#include <charconv>
#include <optional>

namespace phctl {
namespace {

std::optional<std::int64_t> number(std::string_view text) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

// "32768..65535", "..10" or "100..", of which a missing end is open.
bool isInRange(std::string_view range, std::string_view text) {
    const std::size_t dots = range.find("..");
    const auto value = number(text);
    if (dots == std::string_view::npos || !value)
        return false;
    const auto first = number(range.substr(0, dots)), last = number(range.substr(dots + 2));
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
