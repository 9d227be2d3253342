// Writes lines of the system log without Foundation. Private to the layer.
#pragma once

namespace portability {

/// Writes a line to standard error: the time, the program's name, the process and the thread, then `message`
/// (UTF-8) and a line feed, unless the message ends with one. Control characters of the message, except line feed
/// and tab, are written as "\x" and two hexadecimal digits. If standard error is closed, sends the message to
/// the system's log daemon. Other failures, including a lack of memory, are ignored. The host's signals, locale
/// and descriptors stay as they are. Any thread; the lines of several threads do not mix.
void writeLogLine(const char* message) noexcept;

}  // namespace portability
