// Mail messages as they go over the wire (RFC 5322 and MIME).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mail {

struct Message {
    std::string host; // that the mail comes from
    std::string sender;
    std::vector<std::string> recipients;
    std::string subject;
    std::string body;
};

// A plain address, name@domain of printable ASCII characters without quotes, comments and lists: the kind
// that can stand in a header and in an SMTP command as it is.
bool isAddress(std::string_view text);

// The whole message with a new Message-ID: lines end with CR LF, all bytes are ASCII, no line is longer than
// RFC 5322 allows, whatever subject and body hold. Host and addresses are taken as they are.
std::string compose(const Message& message);

} // namespace mail
