// Makes texts safe for a trace, which is UTF-8 with a line feed at the end of each line. Bytes from
// hosts and servers are converted to readable text (ReadableText.h). Line ends of every kind become line
// feeds. All other control characters except the tab become "\x" and two hexadecimal digits, so they
// have no effect on a terminal.
//
// In an entry, every line after the first begins with four blanks. In a value it begins with four blanks and
// "| ". An entry begins with "dovrel ", and a field of a request or reply begins with four blanks and "> " or
// "< ". So a text from a host or a server cannot look like an entry or a field.
//
// Any thread. All functions throw std::bad_alloc.
#pragma once

#include <cstdint>
#include <string>

namespace dovrel {

/// Returns the text for one entry, without the line feed at its end. Every line after the first is indented.
std::string traceEntryText(const std::string& text);

/// Returns a value for use inside an entry: every line after the first begins with "| ". The entry itself
/// must still go through traceEntryText().
std::string traceValueText(const std::string& value);

/// Returns a value on one line: its line ends are written as "\n".
std::string traceOneLineText(const std::string& value);

constexpr uint32_t kMostTraceBytes = 64;

/// Returns the number of bytes, the first `mostBytes` of them in hexadecimal digits, and their printable ASCII
/// characters (a dot for each other byte): 5 bytes: 68 65 6C 6C 6F "hello". `bytes` may be null if `count` is 0.
std::string traceDataText(const void* bytes, uint32_t count, uint32_t mostBytes = kMostTraceBytes);

/// Returns the number with its unit: "1 byte", "5 bytes".
std::string byteCountText(uint64_t count);

}  // namespace dovrel
