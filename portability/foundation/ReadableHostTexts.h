// Lets Foundation start in a host whose arguments or environment are not UTF-8. Private to the layer.
#pragma once

namespace portability {

/// Foundation reads the arguments and the environment of the process as UTF-8. If they are not UTF-8,
/// it raises an exception when it first needs them, which may be for a line in the system log, and ends
/// the process the second time. This function makes Foundation read them as Latin 1 instead, in which
/// every byte is a character. It runs once, when the code is loaded and before Foundation is used;
/// later calls do nothing. The environment is not changed. Any thread.
void makeHostTextsReadable();

}  // namespace portability
