// The characters of a trace: UTF-8, with a line feed at the end of each line. Bytes of hosts and servers are
// made readable (ReadableText.h), and line ends of every kind become line feeds. All other control characters
// except the tab become "\x" and two hexadecimal digits, so that they have no effect on a terminal.
//
// The further lines of an entry begin with four blanks, and those of a value with four blanks and "| ". So no
// text of a host or a server can look like an entry, which begins with "dovrel ", or like a field of a
// request or a reply, which begins with four blanks and "> " or "< ".
//
// Any thread. Everything throws std::bad_alloc.
#pragma once

#include <string>

namespace dovrel {

/// Text for one entry of a trace, without the line feed at its end. Every further line is indented.
std::string traceEntryText(const std::string& text);

/// A value for use inside an entry: every further line begins with "| ". The entry itself must still go
/// through traceEntryText().
std::string traceValueText(const std::string& value);

/// A value on one line: its line ends are written as "\n".
std::string traceOneLineText(const std::string& value);

}  // namespace dovrel
