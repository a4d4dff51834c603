// Object paths as texts. What is read can be written, and is the same when it is read again.
#include "broker/value.h"
#include "target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        const broker::ObjectPath path = broker::parseObjectPath(text);
        require(broker::parseObjectPath(toText(path)) == path, "a path that was written reads back");
    } catch (const broker::PathSyntaxError& error) {
        require(error.position <= size, "the error is in the text");
    }
    return 0;
}
