// How structs of the machine stand in JSON: each describes its fields once, for reading and for writing.
//
//     void Fru::fields(Fields& fields) {
//         fields.required("id", id);
//         fields("name", name);
//     }
//
// Reading is strict: a wrong type, a number out of its range and a member that nothing knows are errors that
// name their place. A field that is missing keeps its default, and one that has its default is not written.
#pragma once

#include "virtual-bmc/state/part.h"
#include "virtual-bmc/virtual_bmc.h"

#include <concepts>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vbmc {

// Says where a value is, as a chain up to the root.
struct Place {
    const Place* parent = nullptr;
    const char* name = nullptr; // of a member; null: an element of an array
    std::size_t index = 0;

    std::string text() const; // "sensors[3].m"
};

[[noreturn]] void fail(const Place& place, const std::string& reason);

// A word that stands for a code.
struct Choice {
    int code;
    const char* name;
};
const char* nameOf(std::span<const Choice> choices, int code); // null for none

class Fields {
public:
    Fields(const Json& object, const Place& place);       // reads
    Fields(Json& object, const Json* defaults = nullptr); // writes

    bool isReading() const { return place_ != nullptr; }
    const Place& place() const { return *place_; }

    template <class T>
    void operator()(const char* name, T& value);
    template <class T>
    void required(const char* name, T& value);
    template <std::integral T>
    void number(const char* name, T& value, int least, int most);
    // Reads one of the words, or with `orNumber` the code itself.
    template <class T>
    void choice(const char* name, T& value, std::span<const Choice> choices, bool orNumber = false);

    void finish() const; // after the last field: nothing else may be there

private:
    const Json* find(const char* name);
    void put(const char* name, Json value, bool always = false);

    const Place* place_ = nullptr;
    const Json* source_ = nullptr;
    Json::const_iterator next_; // where the next field is expected
    std::vector<std::string_view> names_;
    Json* target_ = nullptr;
    const Json* defaults_ = nullptr;
};

template <class T>
concept Struct = requires(T& value, Fields& fields) {
    value.fields(fields);
};
template <class T>
concept OwnForm = requires(T& value, const Json& json, const Place& place) {
    value.fromJson(json, place);
    { value.toJson() } -> std::same_as<Json>;
};

std::int64_t readInteger(const Json& json, const Place& place, std::int64_t least, std::int64_t most);
int readChoice(const Json& json, const Place& place, std::span<const Choice> choices, bool orNumber);
std::vector<std::uint8_t> readHex(const Json& json, const Place& place); // "01 02 ff", "0102ff"
std::string writeHex(std::span<const std::uint8_t> bytes);
bool isUtf8(const std::string& text); // as a text in JSON has to be
void readBool(const Json& json, const Place& place, bool& value);
void readText(const Json& json, const Place& place, std::string& value);
void requireArray(const Json& json, const Place& place);

template <class T>
void read(const Json& json, const Place& place, T& value);
template <class T>
Json write(T& value);

template <class T>
void readElements(const Json& json, const Place& place, std::vector<T>& values) {
    requireArray(json, place);
    values.clear();
    values.resize(json.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        read(json[i], Place{&place, nullptr, i}, values[i]);
}

template <class T>
void readPresent(const Json& json, const Place& place, std::optional<T>& value) {
    read(json, place, value.emplace());
}

template <class T>
void read(const Json& json, const Place& place, T& value) {
    if constexpr (OwnForm<T>) {
        value.fromJson(json, place);
    } else if constexpr (Struct<T>) {
        Fields fields(json, place);
        value.fields(fields);
        fields.finish();
        if constexpr (requires { value.check(place); })
            value.check(place);
    } else if constexpr (std::is_same_v<T, bool>) {
        readBool(json, place, value);
    } else if constexpr (std::is_integral_v<T>) {
        value = static_cast<T>(
            readInteger(json, place, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
    } else if constexpr (std::is_same_v<T, std::string>) {
        readText(json, place, value);
    } else if constexpr (std::is_same_v<T, std::vector<std::uint8_t>>) {
        value = readHex(json, place);
    } else if constexpr (requires { value.emplace(); }) {
        readPresent(json, place, value);
    } else {
        readElements(json, place, value);
    }
}

// Finds what a struct with default values writes: these fields are left out.
template <Struct T>
const Json& defaultsOf() {
    static const Json defaults = [] {
        Json json = Json::object();
        T value{};
        Fields fields(json);
        value.fields(fields);
        return json;
    }();
    return defaults;
}

template <class T>
Json write(T& value) {
    if constexpr (OwnForm<T>) {
        return value.toJson();
    } else if constexpr (Struct<T>) {
        Json json = Json::object();
        Fields fields(json, &defaultsOf<T>());
        value.fields(fields);
        return json;
    } else if constexpr (std::is_same_v<T, std::vector<std::uint8_t>>) {
        return writeHex(value);
    } else if constexpr (std::is_arithmetic_v<T> || std::is_same_v<T, std::string>) {
        return value;
    } else if constexpr (requires { value.has_value(); }) {
        return value.has_value() ? write(*value) : Json();
    } else {
        Json json = Json::array();
        for (auto& element : value)
            json.push_back(write(element));
        return json;
    }
}

template <class T>
void Fields::operator()(const char* name, T& value) {
    if (!isReading())
        put(name, write(value));
    else if (const Json* const json = find(name))
        read(*json, Place{place_, name}, value);
}

template <class T>
void Fields::required(const char* name, T& value) {
    if (!isReading())
        return put(name, write(value), true);
    const Json* const json = find(name);
    if (json == nullptr)
        fail(*place_, std::string("'") + name + "' is missing");
    read(*json, Place{place_, name}, value);
}

template <std::integral T>
void Fields::number(const char* name, T& value, int least, int most) {
    if (!isReading())
        put(name, value);
    else if (const Json* const json = find(name))
        value = static_cast<T>(readInteger(*json, Place{place_, name}, least, most));
}

template <class T>
void Fields::choice(const char* name, T& value, std::span<const Choice> choices, bool orNumber) {
    if (isReading()) {
        if (const Json* const json = find(name))
            value = static_cast<T>(readChoice(*json, Place{place_, name}, choices, orNumber));
    } else if (const char* const word = nameOf(choices, static_cast<int>(value))) {
        put(name, word);
    } else {
        put(name, static_cast<int>(value));
    }
}

} // namespace vbmc
