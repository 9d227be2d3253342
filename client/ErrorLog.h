// ErrorLog: the file in the log folder that keeps every failure for support.
//
// The file is in the line grammar of the settings (settings/LineGrammar.h). It begins with a title line, the
// library's version and the encoding of its texts. Then each failure has these entries:
//
//     TIME          UTC
//     APPLICATION   the name that the application was registered with
//     TYPE          the exception's type code
//     TYPENAME      its meaning
//     MESSAGE       the exception's message
//     DETAIL        the place in the code, if the exception tells it
//     STATUS        the operating system's status and its name, if the exception tells it
//     EXCEPTION     what a thrown std::exception said, such as "std::bad_alloc"
//     REQUEST       the request whose exchange failed, with the class or the method, if one did
//     SERVERERROR   the error code and its meaning, if the server answered with one
//     FAILEDSTEP    the step of the transport that failed last and its status, if one failed
//     ALERT         "none", if no alert is shown
//
// APPLICATION and MESSAGE keep the bytes that hosts and servers gave. The file stays below kLargestSize: it
// is renamed to its name and ".old", which replaces the older one, before an entry would make it larger.
// Several processes and all users may append to it.
//
// A log that cannot be written never disturbs the operation whose failure it should hold. An entry that is
// cut by a full disk damages no other entry. Links are not followed, because all users may write to the
// folder.
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

    /// In bytes. Only the beginning of longer texts is kept.
    static constexpr uint32_t kLongestText = 16 * 1024;

    /// Seconds since 1970, UTC.
    using Clock = std::time_t (*)();

    ErrorLog() = default;
    explicit ErrorLog(Clock clock) : clock_(clock) {}

    /// The bundle whose version is written into the file.
    void setBundlePath(const std::string& bundlePath) { bundlePath_ = bundlePath; }

    /// Appends one failure with what was noted about it. One thread at a time.
    void append(const char* applicationName, const FailureReport& report,
                const FailureNotes& notes) const noexcept;

  private:
    std::string headText() const;
    std::string entryText(const char* applicationName, const FailureReport& report,
                          const FailureNotes& notes) const;

    Clock clock_ = [] { return std::time(nullptr); };
    std::string bundlePath_;
};

}  // namespace dovrel
