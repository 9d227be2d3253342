// ErrorLog: the file in the log folder in which every failure that was reported to the user can be read
// again.
//
// The file is in the line grammar of the settings (settings/LineGrammar.h): a title line and the library's
// version at its beginning, then per failure the entries TIME (UTC), APPLICATION, TYPE and MESSAGE. It is
// kept below kLargestSize: what would make it larger first renames it to the same name with ".old" behind it,
// in place of the one before. All users may read and write it, and several processes may append to it.
//
// A log that cannot be written never disturbs the operation whose failure it should hold, and an entry that a
// full disk cuts spoils none before or behind it. Links are not followed, because the log's folder is open to
// all users.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

#include "client/FailureReport.h"

namespace dovrel {

class ErrorLog {
  public:
    static constexpr char kTitle[] = "POSDLLErrorLog";
    static constexpr char kOldSuffix[] = ".old";
    static constexpr uint32_t kLargestSize = 1024 * 1024;

    /// Of longer texts only the beginning is kept.
    static constexpr uint32_t kLongestText = 16 * 1024;

    /// Seconds since 1970, UTC.
    using Clock = std::time_t (*)();

    ErrorLog() = default;
    explicit ErrorLog(Clock clock) : clock_(clock) {}

    /// The bundle whose version the file tells.
    void setBundlePath(const std::string& bundlePath) { bundlePath_ = bundlePath; }

    /// Appends one failure. One thread at a time.
    void append(const char* applicationName, const FailureReport& report) const noexcept;

  private:
    std::string headText() const;
    std::string entryText(const char* applicationName, const FailureReport& report) const;

    Clock clock_ = [] { return std::time(nullptr); };
    std::string bundlePath_;
};

}  // namespace dovrel
