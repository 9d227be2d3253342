// Whether this process could show windows at all. Private to the layer.
#pragma once

namespace portability {

/// Asks the X server that the environment names; false when there is none or it does not answer. Any thread.
bool windowSystemAnswers();

}  // namespace portability
