// FailureNotes: what is known about the failure of an operation besides its exception, for the error log. The
// transport notes the platform call that failed, whose status no exception carries, and the server's error
// codes, some of which become no exception. The frame notes thrown objects that are not of the library.
//
// The process's notes are the object that was made last. Without one, notes are dropped. Neither the making
// nor the end may overlap with anything that makes notes, and only one thread at a time may make or read
// them: a session does so under its lock. Running out of memory loses a note and is not a failure.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/trace/Trace.h"

namespace dovrel {

class FailureNotes {
  public:
    struct ServerError {
        uint32_t code = 0;
        std::string text;  ///< the bytes that the server gave
    };

    FailureNotes() noexcept;
    FailureNotes(const FailureNotes&) = delete;
    FailureNotes& operator=(const FailureNotes&) = delete;
    ~FailureNotes();

    /// What a thrown std::exception said, such as "std::bad_alloc". Empty if none was thrown.
    const std::string& foreignException() const { return foreignException_; }

    /// Drops all notes. Call it before every attempt of an operation.
    void clear() noexcept;

    /// The step that failed last, such as "wake the server: result -1712 (errAETimeout)". If steps of several
    /// areas failed, it is one of the connection, because the others fail without a connection. Empty if no
    /// step failed.
    const std::string& failedStep() const;

    /// The server's last error answer. Nothing if there was none.
    const std::optional<ServerError>& serverError() const { return serverError_; }

    /// The request whose exchange failed, such as "get information". Empty if none did.
    const std::string& request() const { return request_; }

    /// Writes the text that `makeText()` returns to the trace, as a failure, and notes it as the failed step.
    /// `makeText` is called only if one of the two wants it.
    template <typename MakeText>
    static void addFailedStep(TraceArea area, const MakeText& makeText) noexcept {
        Trace::write(area, TraceLevel::kFailures, makeText);
        if (running != nullptr) note(running->failedSteps_[static_cast<size_t>(area)], makeText);
    }

    /// Drops the failed step of one area, or those of all areas: a later attempt succeeded.
    static void dropFailedStep(TraceArea area) noexcept;
    static void dropFailedSteps() noexcept;

    /// Notes the text that `makeText()` returns as the request whose exchange failed.
    template <typename MakeText>
    static void addRequest(const MakeText& makeText) noexcept {
        if (running != nullptr) note(running->request_, makeText);
    }

    /// Notes a thrown std::exception by its what().
    static void addForeignException(const char* what) noexcept;

    /// Notes an error answer of the server.
    static void addServerError(uint32_t code, const std::string& text) noexcept;

  private:
    template <typename MakeText>
    static void note(std::string& note, const MakeText& makeText) noexcept {
        try {
            note = makeText();
        } catch (...) {
            note.clear();
        }
    }

    void dropSteps() noexcept;

    static FailureNotes* running;

    std::array<std::string, kTraceAreaCount> failedSteps_;
    std::string request_;
    std::string foreignException_;
    std::optional<ServerError> serverError_;
};

}  // namespace dovrel
