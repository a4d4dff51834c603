// Extrinsic methods (DSP0200, 5.3.3).
#pragma once

#include "cimxml/message_writer.h"
#include "operations/caller.h"
#include "operations/objects.h"

namespace server {

// Throws CimError.
cimxml::Body invokeMethod(const std::string& name, const cimxml::ExtrinsicCall& call, Objects& objects,
                          const Caller& caller);

// Throws CimError where the caller may less.
void requireAccess(const Caller& caller, Access needed);

} // namespace server
