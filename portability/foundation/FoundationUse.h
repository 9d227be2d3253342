// Protects the host's signals and locale while Foundation is used. Private to the layer.
#pragma once

namespace portability {

/// Between beginFoundationUse and the matching endFoundationUse, GNUstep's calls on this thread cannot change
/// a signal's action or the locale of the process. These calls only appear to succeed. GNUstep's calls on
/// other threads, which a host may make itself, still take effect. Uses can be nested. Any thread, several at
/// the same time. Neither function sends a message.
///
/// Without this, GNUstep ignores SIGPIPE at the first message to one of its classes if the host has left that
/// signal at its default action. It also calls setlocale when it first reads the user's settings, which is a
/// data race with other threads that use the locale.
void beginFoundationUse() noexcept;
void endFoundationUse() noexcept;

}  // namespace portability
