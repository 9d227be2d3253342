// Runs work and catches whatever it throws: nothing of that may reach a host that is written in C.
#pragma once

#include <exception>
#include <memory>
#include <utility>

#include "client/exceptions/CPPException.h"
#include "platform/trace/FailureNotes.h"

namespace dovrel {

/// How one attempt ended.
struct Attempt {
    bool succeeded = false;                 ///< what the work returned; false when it threw
    bool threw = false;                     ///< it did not return
    std::unique_ptr<CPPException> failure;  ///< what was thrown; null when that was no object of the family
};

/// `work` is called once and returns a bool. An exception of the family, thrown by pointer, is taken over. A
/// std::exception is noted for the error log.
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
