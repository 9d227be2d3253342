// Asks a running server for its interface version, with the request that every host makes before it registers.
#pragma once

#include <cstdint>

namespace dovrel::tools {

/// Returns the interface version of the running server. Launches no server. Throws a pointer to a new CPPException if
/// the exchange fails or the server refuses.
uint32_t queryInterfaceVersion();

}  // namespace dovrel::tools
