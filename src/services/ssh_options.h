// The configuration of the SSH server in DMTF's values.
#pragma once

#include "provider_helper/service_sessions.h"
#include "services/sshd_config.h"

namespace ph {

// Fills the options of a zeroed record. Returns 0, or -1 when memory is short.
int fillSshOptions(const SshdConfig& config, SSHOptions& options);
int readSshOptions(SSHOptions& options);

} // namespace ph
