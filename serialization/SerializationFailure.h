// How the writer and the readers throw.
#pragma once

#include <memory>

namespace dovrel {

/// Throws a new Exception with the message, the detail and the code 0; whoever catches it owns it.
/// Kept out of line, so that the operations do not pay for what they hardly ever do.
template <class Exception>
[[noreturn, gnu::cold, gnu::noinline]] void throwSerializationFailure(const char* detail,
                                                                      const char* message) {
    auto failure = std::make_unique<Exception>(message);
    failure->setDetail(detail);
    throw failure.release();
}

}  // namespace dovrel
