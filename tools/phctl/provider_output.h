// Standard output, apart from what providers print on it.
#pragma once

#include <string_view>

namespace phctl {

// While it lives, what providers print does not mix with our output: an object manager has no output either.
// It goes to stderr for who debugs them, and nowhere otherwise.
class ProviderOutput {
public:
    ProviderOutput();
    ~ProviderOutput();
    ProviderOutput(const ProviderOutput&) = delete;
    ProviderOutput& operator=(const ProviderOutput&) = delete;

    // Writes to our output meanwhile, at once. Throws Failure.
    void write(std::string_view text) const;

private:
    class Descriptor {
    public:
        explicit Descriptor(int number) : number_(number) {}
        ~Descriptor();
        Descriptor(const Descriptor&) = delete;
        Descriptor& operator=(const Descriptor&) = delete;
        explicit operator bool() const { return number_ >= 0; }
        int get() const { return number_; }

    private:
        int number_;
    };

    const Descriptor own_;
};

} // namespace phctl
