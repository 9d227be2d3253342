// OperationResult: how an operation of the session ended. No exception may reach a host, because a host may
// be written in C. So the functions below catch everything that is thrown.
#pragma once

#include <exception>
#include <memory>
#include <optional>

#include "InterProcessCommunication/POSOperations.h"
#include "client/exceptions/CPPException.h"
#include "platform/trace/FailureNotes.h"

namespace dovrel {

struct OperationResult {
    std::optional<POSOutcome> outcome;      ///< what the operation returned; nothing if it threw
    std::unique_ptr<CPPException> failure;  ///< the thrown CPPException, if one was thrown; else null
};

/// Calls `operation`, which takes no arguments and returns a POSOutcome, once. If it throws a pointer to a
/// CPPException, the result owns that exception. If it throws a std::exception, the text is noted for the
/// error log.
template <typename Operation>
OperationResult runCatching(const Operation& operation) noexcept {
    try {
        return {operation(), nullptr};
    } catch (CPPException* caught) {
        return {std::nullopt, std::unique_ptr<CPPException>(caught)};
    } catch (const std::exception& thrown) {
        FailureNotes::addForeignException(thrown.what());
        return {};
    } catch (...) {
        return {};
    }
}

/// Calls `work`, which takes no arguments and returns nothing, once. Returns false if it throws.
template <typename Work>
bool ignoringFailures(const Work& work) noexcept {
    const OperationResult result = runCatching([&work] {
        work();
        return POSOutcome::kDone;
    });
    return result.outcome.has_value();
}

}  // namespace dovrel
