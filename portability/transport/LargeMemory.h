// Gives the memory of large messages back to the system some time after the last of them. Private to the layer.
#pragma once

namespace portability {

/// Must be called when a large block of shared memory is not in use any more. A second after the last of these
/// calls, a thread of its own frees the unused large blocks and tells the peers of unused connections which
/// blocks they can free. The thread starts with the first call and then ends. Without memory for a thread the
/// blocks stay until the next call. Thread-safe. Does not change errno.
void freeLargeMemoryLater() noexcept;

}  // namespace portability
