// What a host was started with may be no text. Private to the layer.
#pragma once

namespace portability {

/// Foundation takes the arguments and the environment of the process for UTF-8. Where they are not, it raises
/// an exception when it first needs them, for a line in the system log already, and ends the process the
/// second time. This lets it take them for Latin 1 instead, in which every byte is a character. Done once,
/// when the code is loaded and before anything of Foundation is used; later calls do nothing.
void makeHostTextsReadable();

}  // namespace portability
