// The rows as the module's file holds them: five bytes each, which number what many of them share. As they are written
// a row is seven pointers, and with what the dynamic linker needs for each a hundred bytes.
#pragma once

#include "associations/association.h"

#include <array>
#include <cstddef>

namespace associations {

constexpr bool isSameText(const char* left, const char* right) {
    if (left == nullptr || right == nullptr)
        return left == right;
    while (*left != '\0' && *left == *right) { // compilers count the steps: most texts differ soon
        ++left;
        ++right;
    }
    return *left == *right;
}
constexpr bool isSame(const Elements& left, const Elements& right) {
    return isSameText(left.className, right.className) && isSameText(left.property, right.property) &&
           isSameText(left.prefix, right.prefix);
}
constexpr bool isSame(const Meeting& left, const Meeting& right) {
    return isSameText(left.properties[0], right.properties[0]) &&
           isSameText(left.properties[1], right.properties[1]) && left.relation == right.relation;
}
constexpr bool isSame(std::span<const OwnValue> left, std::span<const OwnValue> right) {
    return left.data() == right.data() && left.size() == right.size();
}
constexpr bool isSame(const AssociationClass* left, const AssociationClass* right) {
    return isSameText(left->name, right->name);
}

// A number that differs for most texts: one comparison tells them apart, where clang counts a step for each character.
constexpr std::uint32_t digest(const char* text, std::uint32_t seed = 0) {
    for (; text != nullptr && *text != '\0'; ++text)
        seed = seed * 31 + static_cast<unsigned char>(*text);
    return seed;
}
constexpr std::uint32_t digest(const Elements& elements) {
    return digest(elements.prefix, digest(elements.className));
}
constexpr std::uint32_t digest(const Meeting& meeting) {
    return digest(meeting.properties[1], digest(meeting.properties[0]));
}
constexpr std::uint32_t digest(const AssociationClass* associationClass) {
    return digest(associationClass->name);
}
constexpr std::uint32_t digest(std::span<const OwnValue> values) {
    return static_cast<std::uint32_t>(values.size());
}

// Different things, each of them once.
template <class Thing, std::size_t capacity>
struct Collection {
    std::array<Thing, capacity> things{};
    std::array<std::uint32_t, capacity> digests{};
    std::size_t count = 0;

    constexpr std::uint8_t numberOf(const Thing& thing) const {
        const std::uint32_t wanted = digest(thing);
        std::size_t number = 0;
        while (number < count && (digests[number] != wanted || !isSame(things[number], thing)))
            ++number;
        return static_cast<std::uint8_t>(number);
    }
    constexpr void add(const Thing& thing) {
        if (numberOf(thing) != count)
            return;
        digests[count] = digest(thing);
        things[count++] = thing;
    }
};

template <std::size_t count, class Thing, std::size_t capacity>
consteval std::array<Thing, count> firstOf(const Collection<Thing, capacity>& collection) {
    std::array<Thing, count> things{};
    for (std::size_t i = 0; i < count; ++i)
        things[i] = collection.things[i];
    return things;
}

template <const auto& table>
struct PackedRows {
    static constexpr std::size_t count = std::size(table);

    struct Shared {
        Collection<const AssociationClass*, count> classes;
        Collection<Elements, 2 * count> elements;
        Collection<Meeting, count> meetings;
        Collection<std::span<const OwnValue>, count> values;
    };
    static constexpr Shared collect() {
        Shared shared;
        for (const Row& row : table) {
            shared.classes.add(row.associationClass);
            shared.elements.add(row.ends[0]);
            shared.elements.add(row.ends[1]);
            shared.meetings.add(row.meeting);
            shared.values.add(row.values);
        }
        return shared;
    }
    static constexpr Shared shared = collect();
    static constexpr auto classes = firstOf<shared.classes.count>(shared.classes);
    static constexpr auto elements = firstOf<shared.elements.count>(shared.elements);
    static constexpr auto meetings = firstOf<shared.meetings.count>(shared.meetings);
    static constexpr auto values = firstOf<shared.values.count>(shared.values);
    static_assert(elements.size() <= 256 && meetings.size() <= 256);

    struct Packed {
        std::uint8_t associationClass, ends[2], meeting, values;
    };
    static constexpr std::array<Packed, count> pack() {
        std::array<Packed, count> packed{};
        for (std::size_t i = 0; i < count; ++i)
            packed[i] = {
                shared.classes.numberOf(table[i].associationClass),
                {shared.elements.numberOf(table[i].ends[0]), shared.elements.numberOf(table[i].ends[1])},
                shared.meetings.numberOf(table[i].meeting),
                shared.values.numberOf(table[i].values)};
        return packed;
    }
    static constexpr auto packed = pack();

    static std::vector<Row> unpack() {
        std::vector<Row> rows;
        rows.reserve(count);
        for (const Packed& row : packed)
            rows.push_back({classes[row.associationClass],
                            {elements[row.ends[0]], elements[row.ends[1]]},
                            meetings[row.meeting],
                            values[row.values]});
        return rows;
    }
};

} // namespace associations
