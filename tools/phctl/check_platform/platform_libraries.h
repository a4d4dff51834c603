// The platform's libraries, opened as libProviderHelper and the dynamic linker find them.
#pragma once

#include <string>
#include <vector>

namespace phctl::check {

class Libraries {
public:
    // Opens those that every platform has, and `also` if it is another one.
    explicit Libraries(const char* also);

    // Finds a function; nullptr where no library has it, or only a stub of it.
    void* find(const char* function) const;
    // Why a library could not be opened; nothing when it was.
    std::string faultOf(const std::string& library) const;

private:
    struct Library {
        std::string name;
        void* handle;
        std::string fault;
    };
    std::vector<Library> libraries_;
};

} // namespace phctl::check
