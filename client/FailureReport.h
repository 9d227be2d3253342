// FailureReport: the texts about one failure for the user, the error log and the trace.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "client/exceptions/CPPException.h"
#include "platform/trace/FailureNotes.h"

namespace dovrel {

/// Texts of the library are in the system's encoding. The bytes of names and texts from hosts and servers are
/// kept unchanged.
struct FailureReport {
    /// Takes ownership of the failure and deletes it. Null means that the thrown object was not a CPPException.
    FailureReport(std::unique_ptr<CPPException> failure, const char* applicationName);

    /// Returns whether the alert offers to try the operation again. Only that of a refused registration does.
    bool offersRetry() const;

    uint32_t typeCode = 0;
    std::string message;  ///< the exception's message
    std::string detail;   ///< the place in the code; "" if the exception does not name one
    std::string status;   ///< the operating system's status and its name; "" if there is none
    std::string body;     ///< the text of the alert: head, application, message, explanation
    bool isShown = true;  ///< whether an alert is shown
};

/// Returns the key of the text that explains failures of a type code. A code without a text of its own has
/// the text about unrecoverable failures.
const char* explanationKey(uint32_t typeCode);

/// Returns the trace entry, with everything that the alert does not tell. Texts of the host or the server are
/// included only if the trace shows contents.
std::string traceText(const FailureReport& report, const FailureNotes& notes);

}  // namespace dovrel
