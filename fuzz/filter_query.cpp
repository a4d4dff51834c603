// Filter queries of clients. What compiles is written and read again: the same alerts are meant.
#include "target.h"

#include "provider_helper/indications.h"

#include <cstring>
#include <string>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string query(reinterpret_cast<const char*>(data), size);
    CIM_PEFEntry entry;
    std::memset(&entry, 0xA5, sizeof entry);
    if (CompileQueryAndSeverity(query.c_str(), &entry) != 0)
        return 0;
    char written[256];
    ConstructFilterQuery(written, &entry);
    require(std::strlen(written) < sizeof written, "the query fits");
    CIM_PEFEntry again;
    std::memset(&again, 0xA5, sizeof again);
    require(CompileQueryAndSeverity(written, &again) == 0, "a query that was written compiles");
    require(std::memcmp(&entry, &again, sizeof entry) == 0, "a query that was written means the same");
    return 0;
}
