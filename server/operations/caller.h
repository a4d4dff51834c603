// Whom a request comes from.
#pragma once

#include <string>

namespace server {

// What users may do; each of them what those before may, too.
enum class Access { None, Read, Operate, Administer };

struct Caller {
    std::string user;    // empty: nobody has logged in
    std::string address; // numeric
    Access access = Access::None;
    std::string host; // what the client calls this server; part of full paths
};

} // namespace server
