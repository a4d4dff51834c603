// Storage that a platform's function writes to: between guards, and filled with a pattern before the call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace phctl::check {

// What is wrong with a text in a field of fixed size; nothing for one that is NUL-terminated UTF-8.
std::string faultOfText(const std::string& name, std::string_view field);

class Output {
public:
    // `name` says what it is for in a report.
    Output(std::string name, std::size_t size);
    virtual ~Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // The function finds this in it, instead of a pattern.
    void preset(const void* value);
    void fill(std::uint8_t pattern);

    const std::string& name() const { return name_; }
    void* data() { return bytes_.data() + guardSize; }
    const void* data() const { return bytes_.data() + guardSize; }
    bool areGuardsIntact() const;
    virtual bool isUntouched() const; // never true of one that was preset
    // What is wrong with it after a success; nothing for one that is as it has to be.
    virtual std::string fault() const { return {}; }

private:
    static constexpr std::size_t guardSize = 256; // bytes, on both sides

    std::string name_;
    std::size_t size_;
    std::vector<std::uint8_t> bytes_;
    std::vector<std::uint8_t> preset_;
    std::uint8_t pattern_ = 0;
};

// A number, a pointer or a structure.
template <class T>
class Out : public Output {
public:
    explicit Out(std::string name)
        : Output(std::move(name), sizeof(T)) { // NOLINT(bugprone-sizeof-expression)
        static_assert(std::is_trivially_copyable_v<T>);
    }
    Out(std::string name, const T& value) : Out(std::move(name)) { preset(&value); }

    operator T*() { return static_cast<T*>(data()); }
    T* operator->() { return static_cast<T*>(data()); }
    T& operator*() { return *static_cast<T*>(data()); }
};

// Room for so many of them, which a function may fill in part.
template <class T>
class OutArray : public Output {
public:
    OutArray(std::string name, std::size_t count, bool isFilled = false)
        : Output(std::move(name), sizeof(T) * count), isFilled_(isFilled) {}

    operator T*() { return static_cast<T*>(data()); }
    bool isUntouched() const override { return isFilled_ && Output::isUntouched(); }

private:
    bool isFilled_; // always, by a success
};

// A text that has to end within so many bytes.
class OutText : public Output {
public:
    OutText(std::string name, std::size_t size) : Output(std::move(name), size), size_(size) {}

    operator char*() { return static_cast<char*>(data()); }
    std::string fault() const override;

private:
    std::size_t size_;
};

} // namespace phctl::check
