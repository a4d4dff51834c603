// The configuration of the SSH server, sshd_config(5).
#pragma once

#include <string>

namespace ph {

// Values of keywords as the file has them; empty where it does not say. What the server does then depends on
// its version, and is not known.
struct SshdConfig {
    std::string protocol, ciphers, keepAlive, forwardX11, compression;
};

// Reads "/etc/ssh/sshd_config". A file that is missing, larger than 64 KiB or no text says nothing. What comes
// behind a Match holds for some sessions only, and what comes behind an Include may be overruled by the other
// file: the reading ends there.
SshdConfig readSshdConfig();

// Returns the values of a file with this text.
SshdConfig parseSshdConfig(const std::string& text);

} // namespace ph
