// FailureReport: what the user is told about one failure.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "client/exceptions/CPPException.h"

namespace dovrel {

/// All texts are in the system's encoding.
struct FailureReport {
    /// Takes the failure and deletes it. None stands for something thrown that was no object of the family.
    FailureReport(std::unique_ptr<CPPException> failure, const char* applicationName);

    /// Whether the user may have the operation tried again.
    bool offersRetry() const;

    uint32_t typeCode = 0;
    std::string message;  ///< the failure's own
    std::string body;     ///< of the alert: head, application, message, explanation
};

/// The key of the text that explains failures of a type code; every code without a text of its own is
/// unrecoverable.
const char* explanationKey(uint32_t typeCode);

}  // namespace dovrel
