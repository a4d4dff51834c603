#include "errors.h"

#include "text_layout.h"

#include <iostream>

namespace phctl {

int complain(const std::string& text, int status) {
    std::cerr << "phctl: " << printable(text) << '\n';
    return status;
}

} // namespace phctl
