// A class's published properties as data: name, kind and place in the record.
#pragma once

#include "Utility/requests/request.h"

#include <algorithm>
#include <array>
#include <cmpidt.h>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

namespace ph {

// How a value is stored in a record, and with that the CIM type it is published as.
enum class Kind : std::uint8_t {
    Boolean,
    Uint8,
    Uint16,
    Uint32,
    Uint64,
    Sint8,
    Sint16,
    Sint32,
    Sint64,
    Real32,
    Real64,
    Text,          // char[N]: string
    TextRef,       // const char*: string, NULL leaves the property out
    Uint16List,    // int[N] up to the first negative entry: uint16[]
    Uint16ListRef, // const int*, the same elsewhere
    Uint16Slots,   // uint16_t[N] up to the first FFFFh: uint16[]; none leaves the property out
    StringList,    // char*[N] up to NULL, heap strings of the record: string[]; none leaves the property out
    Uint8Values,   // std::span<const T>, computed: an array of T; an empty one leaves the property out
    Uint16Values,
    Uint64Values,
    Sint32Values,
    DateTimeText,  // char[N]: datetime of this DMTF text; an empty one leaves the property out
    DateTimeValue, // ph::DateTime: datetime
    Reference, // ph::Reference: a path in the request's namespace; one without a class leaves the property
               // out
    Instance,  // ph::EmbeddedInstance: an instance as a value; one without a record leaves the property out
};

// The CIM type that values of a kind are published as.
constexpr CMPIType typeOf(Kind kind) {
    switch (kind) {
    case Kind::Boolean:
        return CMPI_boolean;
    case Kind::Uint8:
        return CMPI_uint8;
    case Kind::Uint16:
        return CMPI_uint16;
    case Kind::Uint32:
        return CMPI_uint32;
    case Kind::Uint64:
        return CMPI_uint64;
    case Kind::Sint8:
        return CMPI_sint8;
    case Kind::Sint16:
        return CMPI_sint16;
    case Kind::Sint32:
        return CMPI_sint32;
    case Kind::Sint64:
        return CMPI_sint64;
    case Kind::Real32:
        return CMPI_real32;
    case Kind::Real64:
        return CMPI_real64;
    case Kind::Text:
    case Kind::TextRef:
        return CMPI_string;
    case Kind::Uint16List:
    case Kind::Uint16ListRef:
    case Kind::Uint16Slots:
        return CMPI_uint16A;
    case Kind::StringList:
        return CMPI_stringA;
    case Kind::Uint8Values:
        return CMPI_uint8A;
    case Kind::Uint16Values:
        return CMPI_uint16A;
    case Kind::Uint64Values:
        return CMPI_uint64A;
    case Kind::Sint32Values:
        return CMPI_sint32A;
    case Kind::DateTimeText:
    case Kind::DateTimeValue:
        return CMPI_dateTime;
    case Kind::Reference:
        return CMPI_ref;
    case Kind::Instance:
        return CMPI_instance;
    }
    return CMPI_null;
}

// A datetime that is published from its number. Without one it is made from no text, the broker's value for a
// time that is not known; a broker that has none leaves the property out.
struct DateTime {
    static constexpr std::uint64_t none = ~std::uint64_t{0};
    std::uint64_t microseconds; // since 1970 UTC, or of the interval
};

struct ClassFamily;

// Another instance as a record names it: by its class and keys, which are texts.
struct Reference {
    struct Key {
        const char* name; // nullptr behind the last
        const char* text;
    };
    const char* className;
    Key keys[maxKeys];
};

// Another instance as a part of this one, with all its properties: the record of its class.
struct EmbeddedInstance {
    const ClassFamily* family;
    const void* record;
};

template <class T>
consteval Kind kindOf() {
    if constexpr (std::is_same_v<T, std::span<const std::uint8_t>>)
        return Kind::Uint8Values;
    else if constexpr (std::is_same_v<T, std::span<const std::uint16_t>>)
        return Kind::Uint16Values;
    else if constexpr (std::is_same_v<T, std::span<const std::uint64_t>>)
        return Kind::Uint64Values;
    else if constexpr (std::is_same_v<T, std::span<const std::int32_t>>)
        return Kind::Sint32Values;
    else if constexpr (std::is_array_v<T>) {
        using Element = std::remove_extent_t<T>;
        if constexpr (std::is_same_v<Element, char>)
            return Kind::Text;
        else if constexpr (std::is_same_v<Element, int>)
            return Kind::Uint16List;
        else if constexpr (std::is_same_v<Element, std::uint16_t>)
            return Kind::Uint16Slots;
        else {
            static_assert(std::is_same_v<Element, char*>, "no CIM type for this array");
            return Kind::StringList;
        }
    } else if constexpr (std::is_same_v<T, bool>)
        return Kind::Boolean;
    else if constexpr (std::is_same_v<T, const char*>)
        return Kind::TextRef;
    else if constexpr (std::is_same_v<T, const int*>)
        return Kind::Uint16ListRef;
    else if constexpr (std::is_same_v<T, DateTime>)
        return Kind::DateTimeValue;
    else if constexpr (std::is_same_v<T, Reference>)
        return Kind::Reference;
    else if constexpr (std::is_same_v<T, EmbeddedInstance>)
        return Kind::Instance;
    else if constexpr (std::is_same_v<T, float>)
        return Kind::Real32;
    else if constexpr (std::is_same_v<T, double>)
        return Kind::Real64;
    else {
        static_assert(std::is_integral_v<T> && !std::is_same_v<T, char>, "no CIM type for this field");
        constexpr bool isSigned = std::is_signed_v<T>;
        switch (sizeof(T)) {
        case 1:
            return isSigned ? Kind::Sint8 : Kind::Uint8;
        case 2:
            return isSigned ? Kind::Sint16 : Kind::Uint16;
        case 4:
            return isSigned ? Kind::Sint32 : Kind::Uint32;
        default:
            return isSigned ? Kind::Sint64 : Kind::Uint64;
        }
    }
}

struct Property {
    const char* name;
    Kind kind;
    bool isKey;
    std::size_t offset;
    bool (*condition)(const void* record);            // nullptr: always published
    void (*compute)(const void* record, void* value); // nullptr: the value is the field at `offset`
    const char* className = nullptr; // that a reference or embedded instance is declared with
};

// A list as the engine sees it.
struct Values {
    const void* first;
    std::size_t count;
};

// Room for the value of a compute function: every kind but the arrays.
union ComputedValue {
    std::uint64_t integer;
    double real;
    const void* pointer;
    Values values;
    Reference reference;
    EmbeddedInstance instance;
};

namespace detail {

template <class F>
struct Signature;
template <class R, class Record>
struct Signature<R (*)(const Record&)> {
    using Result = R;
    using Argument = Record;
};

template <auto Function>
using ResultOf = typename Signature<decltype(Function)>::Result;

template <auto Function>
bool condition(const void* record) {
    return Function(*static_cast<const typename Signature<decltype(Function)>::Argument*>(record));
}

template <auto Function>
void compute(const void* record, void* value) {
    using Result = ResultOf<Function>;
    static_assert(sizeof(Result) <= sizeof(ComputedValue));
    const Result result =
        Function(*static_cast<const typename Signature<decltype(Function)>::Argument*>(record));
    if constexpr (requires { result.data(); })
        *static_cast<Values*>(value) = {result.data(), result.size()};
    else
        *static_cast<Result*>(value) = result;
}

} // namespace detail

// One table out of two: a class's own properties behind those of the class it extends. The extended record is
// the first member of the extending one, so that offsets hold for both.
template <std::size_t A, std::size_t B>
consteval std::array<Property, A + B> joined(const std::array<Property, A>& first,
                                             const Property (&second)[B]) {
    std::array<Property, A + B> all{};
    std::copy(first.begin(), first.end(), all.begin());
    std::copy(second, second + B, all.begin() + A);
    return all;
}

// Does the same with a plain table.
template <std::size_t A, std::size_t B>
consteval std::array<Property, A + B> joined(const Property (&first)[A], const Property (&second)[B]) {
    return joined(std::to_array(first), second);
}

// A property that is published as its field of the record holds it.
consteval Property stored(const char* name, Kind kind, std::size_t offset,
                          bool (*condition)(const void*) = nullptr) {
    return {name, kind, false, offset, condition, nullptr};
}

consteval Property key(const char* name, Kind kind, std::size_t offset) {
    return {name, kind, true, offset, nullptr, nullptr};
}

// A property whose value `Function` makes from the record.
template <auto Function>
consteval Property computed(const char* name, bool (*condition)(const void*) = nullptr) {
    constexpr Kind kind = kindOf<detail::ResultOf<Function>>();
    static_assert(kind != Kind::Reference && kind != Kind::Instance, "declared with a class");
    return {name, kind, false, 0, condition, detail::compute<Function>};
}

// Does the same for a reference or an embedded instance.
template <auto Function>
consteval Property toClass(const char* name, const char* className) {
    constexpr Kind kind = kindOf<detail::ResultOf<Function>>();
    static_assert(kind == Kind::Reference || kind == Kind::Instance);
    return {name, kind, false, 0, nullptr, detail::compute<Function>, className};
}

} // namespace ph

// A row of a property table. `test` is bool(const Record&); `function` returns the value from a const
// Record&.
#define PH_FIELD(Record, field) #field, ::ph::kindOf < decltype(Record::field)>(), offsetof(Record, field)
#define PH_KEY(Record, field) ::ph::key(PH_FIELD(Record, field))
#define PH_PROPERTY(Record, field) ::ph::stored(PH_FIELD(Record, field))
#define PH_PROPERTY_IF(Record, field, test)                                                                  \
    ::ph::stored(PH_FIELD(Record, field), ::ph::detail::condition<&test>)
// A text in DMTF's form of a point in time or an interval, published as datetime.
#define PH_DATETIME(Record, field) ::ph::stored(#field, ::ph::Kind::DateTimeText, offsetof(Record, field))
#define PH_COMPUTED(name, function) ::ph::computed<&function>(name)
#define PH_COMPUTED_IF(name, function, test) ::ph::computed<&function>(name, ::ph::detail::condition<&test>)
// `function` returns the Reference or EmbeddedInstance to an instance of the class or of one derived from it.
#define PH_TO_CLASS(name, className, function) ::ph::toClass<&function>(name, className)
