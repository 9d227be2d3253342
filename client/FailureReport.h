// FailureReport: what the user, the error log and the trace are told about one failure.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "client/exceptions/CPPException.h"
#include "platform/trace/FailureNotes.h"

namespace dovrel {

/// The library's own texts are in the system's encoding. Names and texts of hosts and servers keep their
/// bytes.
struct FailureReport {
    /// Takes ownership of the failure and deletes it. Null stands for a thrown object outside the family.
    FailureReport(std::unique_ptr<CPPException> failure, const char* applicationName);

    /// Whether the user may have the operation tried again.
    bool offersRetry() const;

    uint32_t typeCode = 0;
    std::string message;  ///< the failure's own
    std::string detail;   ///< the place in the code; "" if the exception does not tell it
    std::string status;   ///< the operating system's status and its name; "" if there is none
    std::string body;     ///< of the alert: head, application, message, explanation
    bool isShown = true;  ///< whether an alert is shown
};

/// The key of the text that explains failures of a type code. Every code without a text of its own has the
/// text about unrecoverable failures.
const char* explanationKey(uint32_t typeCode);

/// The entry for the trace, with everything that the alert does not tell. It holds nothing that the host or
/// the server said, except at the level of contents.
std::string traceText(const FailureReport& report, const FailureNotes& notes);

}  // namespace dovrel
