#include "virtual-bmc/state/json_fields.h"

#include <algorithm>
#include <charconv>

namespace vbmc {

std::string Place::text() const {
    if (name == nullptr && parent == nullptr)
        return {};
    const std::string above = parent != nullptr ? parent->text() : "";
    if (name == nullptr)
        return above + "[" + std::to_string(index) + "]";
    return above.empty() ? name : above + "." + name;
}

void fail(const Place& place, const std::string& reason) {
    const std::string text = place.text();
    throw Error(text.empty() ? reason : text + ": " + reason);
}

const char* nameOf(std::span<const Choice> choices, int code) {
    const auto found = std::ranges::find(choices, code, &Choice::code);
    return found != choices.end() ? found->name : nullptr;
}

Fields::Fields(const Json& object, const Place& place) : place_(&place), source_(&object) {
    if (!object.is_object())
        fail(place, "an object is expected, not " + std::string(object.type_name()));
    next_ = object.begin();
}

Fields::Fields(Json& object, const Json* defaults) : target_(&object), defaults_(defaults) {}

const Json* Fields::find(const char* name) {
    names_.emplace_back(name);
    auto found = next_;
    if (found == source_->end() || found.key() != name)
        found = source_->find(name);
    if (found == source_->end())
        return nullptr;
    next_ = std::next(found);
    return &*found;
}

void Fields::finish() const {
    for (const auto& [name, value] : source_->items())
        if (std::ranges::find(names_, name) == names_.end())
            fail(*place_, "'" + name + "' is unknown here");
}

void Fields::put(const char* name, Json value, bool always) {
    if (!always && value.is_null())
        return;
    if (!always && defaults_ != nullptr)
        if (const auto usual = defaults_->find(name); usual != defaults_->end() && *usual == value)
            return;
    target_->emplace(name, std::move(value));
}

std::int64_t readInteger(const Json& json, const Place& place, std::int64_t least, std::int64_t most) {
    const std::string range = std::to_string(least) + " to " + std::to_string(most);
    std::int64_t value = 0;
    if (json.is_string()) {
        const auto& text = json.get_ref<const std::string&>();
        const char* const end = text.data() + text.size();
        if (!text.starts_with("0x") || std::from_chars(text.data() + 2, end, value, 16).ptr != end ||
            text.size() == 2)
            fail(place, "'" + text + "' is no number; " + range + ", in hexadecimal as \"0x1F\"");
    } else if (json.is_number_integer() && !(json.is_number_unsigned() && json.get<std::uint64_t>() >> 63)) {
        value = json.get<std::int64_t>();
    } else {
        fail(place, "an integer is expected: " + range);
    }
    if (value < least || value > most)
        fail(place, std::to_string(value) + " is not allowed: " + range);
    return value;
}

int readChoice(const Json& json, const Place& place, std::span<const Choice> choices, bool orNumber) {
    if (json.is_string()) {
        const auto& text = json.get_ref<const std::string&>();
        for (const Choice& choice : choices)
            if (text == choice.name)
                return choice.code;
        if (!orNumber || !text.starts_with("0x")) {
            std::string known;
            for (const Choice& choice : choices)
                known += (known.empty() ? "" : ", ") + std::string(choice.name);
            fail(place, "'" + text + "' is unknown; known are " + known);
        }
    } else if (!orNumber) {
        fail(place, "a word is expected");
    }
    return static_cast<int>(readInteger(json, place, 0, 0xFF));
}

std::vector<std::uint8_t> readHex(const Json& json, const Place& place) {
    std::string text;
    readText(json, place, text);
    std::erase(text, ' ');
    std::vector<std::uint8_t> bytes(text.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char* const end = text.data() + 2 * i + 2;
        if (std::from_chars(end - 2, end, bytes[i], 16).ptr != end)
            fail(place, "two hexadecimal digits a byte are expected");
    }
    if (text.size() % 2 != 0)
        fail(place, "two hexadecimal digits a byte are expected");
    return bytes;
}

std::string writeHex(std::span<const std::uint8_t> bytes) {
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

bool isUtf8(const std::string& text) {
    try {
        return !Json(text).dump().empty();
    } catch (const Json::exception&) {
        return false;
    }
}

void readBool(const Json& json, const Place& place, bool& value) {
    if (!json.is_boolean())
        fail(place, "true or false is expected");
    value = json.get<bool>();
}

void readText(const Json& json, const Place& place, std::string& value) {
    if (!json.is_string())
        fail(place, "a text is expected");
    value = json.get<std::string>();
}

void requireArray(const Json& json, const Place& place) {
    if (!json.is_array())
        fail(place, "an array is expected, not " + std::string(json.type_name()));
}

} // namespace vbmc
