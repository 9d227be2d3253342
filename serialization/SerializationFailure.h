// Throws the exceptions of the writer and the readers.
#pragma once

#include <memory>

namespace dovrel {

/// Throws a new Exception with the message, the detail and the code 0. The catching code owns it. The
/// function is not inlined, so that the rare failure does not slow down the normal path of the operations.
template <class Exception>
[[noreturn, gnu::cold, gnu::noinline]] void throwSerializationFailure(const char* detail,
                                                                      const char* message) {
    auto failure = std::make_unique<Exception>(message);
    failure->setDetail(detail);
    throw failure.release();
}

}  // namespace dovrel
