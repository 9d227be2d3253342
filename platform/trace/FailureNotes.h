// FailureNotes: notes about a failed operation, for the error log. They contain what its exception does
// not contain:
//
// - the failed platform function and its status (noted by the transport),
// - the server's error code and text, because some codes do not become an exception (noted by the transport),
// - thrown exceptions that are not the library's own (noted by the code that runs each operation).
//
// The most recently constructed object holds the notes of the process. If there is no object, notes are
// discarded. No other thread may add notes while an object is constructed or destroyed. Only one thread at
// a time may add or read notes; a session does so under its lock. If memory runs out, a note is lost; this
// is not a failure.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/trace/Trace.h"

namespace dovrel {

class FailureNotes {
  public:
    struct ServerError {
        uint32_t code = 0;
        std::string text;  ///< the bytes that the server sent
    };

    FailureNotes() noexcept;
    FailureNotes(const FailureNotes&) = delete;
    FailureNotes& operator=(const FailureNotes&) = delete;
    ~FailureNotes();

    /// Returns the what() of a thrown std::exception, such as "std::bad_alloc". Empty if none was thrown.
    const std::string& foreignException() const { return foreignException_; }

    /// Deletes all notes. Call it before every attempt of an operation.
    void clear() noexcept;

    /// Returns the step that failed last, such as "wake the server: result -1712 (errAETimeout)". If steps of
    /// several areas failed, it returns the one of the connection area, because without a connection the
    /// others also fail. Empty if no step failed.
    const std::string& failedStep() const;

    /// Returns a copy of failedStep() of the notes of the process, or "" if there are none.
    static std::string lastFailedStep();

    /// Returns the last error reply of the server, or nothing if there was none.
    const std::optional<ServerError>& serverError() const { return serverError_; }

    /// Returns the request whose exchange failed, such as "get information". Empty if no exchange failed.
    const std::string& request() const { return request_; }

    /// Calls `makeText()`, writes its text to the trace as a failure, and notes it as the failed step.
    /// `makeText` is not called if neither the trace nor the notes need the text.
    template <typename MakeText>
    static void addFailedStep(TraceArea area, const MakeText& makeText) noexcept {
        Trace::write(area, TraceLevel::kFailures, makeText);
        if (running != nullptr) note(running->failedSteps_[static_cast<size_t>(area)], makeText);
    }

    /// Deletes the failed step of one area, or of all areas, after a later attempt succeeded.
    static void dropFailedStep(TraceArea area) noexcept;
    static void dropFailedSteps() noexcept;

    /// Notes the text that `makeText()` returns as the request whose exchange failed.
    template <typename MakeText>
    static void addRequest(const MakeText& makeText) noexcept {
        if (running != nullptr) note(running->request_, makeText);
    }

    /// Notes a thrown std::exception by its what().
    static void addForeignException(const char* what) noexcept;

    /// Notes an error reply of the server.
    static void addServerError(uint32_t code, const std::string& text) noexcept;

  private:
    template <typename MakeText>
    static void note(std::string& note, const MakeText& makeText) noexcept {
        try {
            note = makeText();
        } catch (CPPException* caught) {
            const std::unique_ptr<CPPException> failure(caught);
            note.clear();
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
