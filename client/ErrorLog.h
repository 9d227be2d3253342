// ErrorLog: the file in the log folder that keeps a record of every failure for support.
//
// The file has the line grammar of the settings (settings/LineGrammar.h). It begins with a title line, the
// library's version and the encoding of the texts. After that, each failure has these entries:
//
//     TIME          UTC
//     APPLICATION   the name that the application was registered with
//     TYPE          the exception's type code
//     TYPENAME      the meaning of the type code
//     MESSAGE       the exception's message
//     DETAIL        the place in the code, if the exception names one
//     STATUS        the operating system's status and its name, if the exception has one
//     EXCEPTION     the text of a std::exception, such as "std::bad_alloc", if one was thrown
//     REQUEST       the request that failed, with its class or its method, if a request failed
//     SERVERERROR   the error code of the server's reply and its meaning, if the reply has one
//     FAILEDSTEP    the step of the transport that failed last and its status, if a step failed
//     ALERT         "none", if no alert is shown
//
// APPLICATION and MESSAGE keep the bytes of the host and of the server unchanged.
//
// The file stays smaller than kLargestSize. Before an entry would make it larger, the file is renamed:
// kOldSuffix is appended to its name, and an older file of that name is replaced. Several processes and all
// users may append to the file. While one of them locks the full file to rename it, the others append to it up to
// kLargestSizeWhileLocked; after that their entries are lost.
//
// A failure to write the log never disturbs the operation whose failure is to be logged. If a full disk
// cuts an entry, the other entries stay readable. Symbolic links are not followed, because all users may
// write to the folder.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

#include "client/FailureReport.h"

namespace dovrel {

class ErrorLog {
  public:
    static constexpr char kTitle[] = "POSDLLErrorLog";
    static constexpr char kEncoding[] =
        "Bytes of applications, of the server and of paths are kept as they are, UTF-8 or Mac Roman. "
        "The library's own texts are Mac Roman.";
    static constexpr char kOldSuffix[] = ".old";
    static constexpr uint32_t kLargestSize = 1024 * 1024;
    static constexpr uint32_t kLargestSizeWhileLocked = 2 * kLargestSize;

    /// The largest length of a text in bytes. Of a longer text only the beginning is kept.
    static constexpr uint32_t kLongestText = 16 * 1024;

    /// Returns the time in seconds since 1970, UTC.
    using Clock = std::time_t (*)();

    ErrorLog() = default;
    explicit ErrorLog(Clock clock) : clock_(clock) {}

    /// Reads the version of the library for the file's head. `bundlePath` (absolute, UTF-8) is the place where
    /// the library's bundle is installed. Throws std::bad_alloc.
    void useBundle(const std::string& bundlePath);

    /// Appends one failure and the notes about it. Failures to write are ignored. One thread at a time.
    void append(const char* applicationName, const FailureReport& report,
                const FailureNotes& notes) const noexcept;

  private:
    std::string headText() const;
    std::string entryText(const char* applicationName, const FailureReport& report,
                          const FailureNotes& notes) const;
    void appendEntry(const std::string& entry) const;

    Clock clock_ = [] { return std::time(nullptr); };
    std::string version_;
};

}  // namespace dovrel
