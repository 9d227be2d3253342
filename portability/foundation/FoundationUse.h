// Keeping what belongs to the host while Foundation is used. Private to the layer.
#pragma once

namespace portability {

/// From beginFoundationUse to the matching endFoundationUse, GNUstep can change neither the action of a signal
/// nor the locale of the process on the calling thread: it is told that it has done so. What it does on other
/// threads, on behalf of a host that uses it as well, is done. Uses may be nested. Any thread, several at a
/// time; neither function sends a message.
///
/// Without it GNUstep ignores SIGPIPE at the first message to a class of its own, where the host has left that
/// signal's action at the default, and calls setlocale when it first needs the user's settings, beside whatever
/// other threads do with the locale.
void beginFoundationUse() noexcept;
void endFoundationUse() noexcept;

}  // namespace portability
