// Runs an operation and catches every exception that it throws. No exception may reach a host, because a host
// may be written in C.
#pragma once

#include <exception>
#include <memory>
#include <utility>

#include "client/exceptions/CPPException.h"
#include "platform/trace/FailureNotes.h"

namespace dovrel {

/// The result of one call of an operation.
struct Attempt {
    bool succeeded = false;                 ///< the operation's result; false if the operation threw
    bool threw = false;                     ///< the operation threw instead of returning
    std::unique_ptr<CPPException> failure;  ///< the thrown CPPException, if one was thrown; else null
};

/// Calls `work`, which takes no arguments and returns a bool, once. If `work` throws a pointer to a
/// CPPException, the returned Attempt owns that exception. If `work` throws a std::exception, the text is
/// noted for the error log.
template <typename Work>
Attempt attempt(const Work& work) noexcept {
    try {
        return {work(), false, nullptr};
    } catch (CPPException* caught) {
        return {false, true, std::unique_ptr<CPPException>(caught)};
    } catch (const std::exception& thrown) {
        FailureNotes::addForeignException(thrown.what());
        return {false, true, nullptr};
    } catch (...) {
        return {false, true, nullptr};
    }
}

}  // namespace dovrel
