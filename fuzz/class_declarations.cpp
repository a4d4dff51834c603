// Declarations of classes, which the schema is compiled from.
#include "declared_classes.h"
#include "target.h"

#include <sstream>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream file(std::string(reinterpret_cast<const char*>(data), size));
    schema::DeclaredClasses classes;
    try {
        schema::readClasses(file, classes);
        for (const auto& [name, declared] : classes)
            require(name == declared.name && !name.empty(), "a class has its name");
    } catch (const std::runtime_error& error) {
        require(*error.what() != '\0', "an error says something");
    }
    return 0;
}
