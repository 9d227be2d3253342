#include "client/ErrorLog.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "client/Attempt.h"
#include "client/VersionBanner.h"
#include "platform/LogPlaces.h"
#include "settings/LineGrammar.h"
#include "settings/LogFileWriter.h"

namespace dovrel {

namespace {

constexpr char kVersionKey[] = "VERSION";
constexpr char kTimeKey[] = "TIME";
constexpr char kApplicationKey[] = "APPLICATION";
constexpr char kTypeKey[] = "TYPE";
constexpr char kMessageKey[] = "MESSAGE";

/// The open log; closed with the object.
class LogFile {
  public:
    /// Creates the file where there is none. Must not block, whatever stands under the name.
    explicit LogFile(const std::string& path)
        : descriptor_(
              open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0666)) {
        isUsable_ = descriptor_ >= 0 && fstat(descriptor_, &status_) == 0 && S_ISREG(status_.st_mode);
    }
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;
    ~LogFile() {
        if (descriptor_ >= 0) close(descriptor_);
    }

    bool isUsable() const { return isUsable_; }
    uint64_t size() const { return static_cast<uint64_t>(status_.st_size); }

    /// Through the descriptor: the name may meanwhile be another file's.
    void openToAllUsers() const { static_cast<void>(fchmod(descriptor_, (status_.st_mode | 0777) & 07777)); }

    /// In one call, so that the entries of several processes do not mix. False when it did not arrive as a
    /// whole.
    bool append(const std::string& text) const {
        const ssize_t written = write(descriptor_, text.data(), text.size());
        return written >= 0 && static_cast<size_t>(written) == text.size();
    }

    /// Takes a file away that is too short to hold the text with which it was to begin.
    void removeIfShorterThan(const std::string& text, const std::string& path) const {
        struct stat now = {};
        const bool isShorter =
            fstat(descriptor_, &now) == 0 && static_cast<uint64_t>(now.st_size) < text.size();
        if (isShorter && isNamed(path)) std::remove(path.c_str());
    }

    /// Gives the name away to a new file, unless another process did so since this one was opened, or is at
    /// it: what it renamed would be replaced by the file that it began. False when the file is still in the
    /// way.
    bool moveAway(const std::string& path) const {
        // Not waited for, because any user can hold it. It goes with the descriptor.
        if (flock(descriptor_, LOCK_EX | LOCK_NB) != 0) return true;
        return !isNamed(path) || std::rename(path.c_str(), (path + ErrorLog::kOldSuffix).c_str()) == 0;
    }

  private:
    bool isNamed(const std::string& path) const {
        struct stat named = {};
        return lstat(path.c_str(), &named) == 0 && named.st_dev == status_.st_dev &&
               named.st_ino == status_.st_ino;
    }

    int descriptor_;
    bool isUsable_ = false;
    struct stat status_ = {};
};

std::string timeText(std::time_t seconds) {
    std::tm parts = {};
    char text[sizeof "YYYYYY-MM-DDTHH:MM:SSZ"] = "";
    if (gmtime_r(&seconds, &parts) != nullptr) std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text;
}

std::string shortened(const std::string& text) {
    return text.substr(0, ErrorLog::kLongestText);
}

bool hasRoom(const LogFile& log, const std::string& text) {
    return log.size() + text.size() < ErrorLog::kLargestSize;
}

}  // namespace

std::string ErrorLog::headText() const {
    std::string text;
    LogFileWriter writer(text);
    writer.writeTitle(kTitle);
    writer.writeString(kVersionKey, versionBanner(bundlePath_));
    return text;
}

std::string ErrorLog::entryText(const char* applicationName, const FailureReport& report) const {
    // An entry begins on a line of its own, also behind one that a full disk cut.
    std::string text(1, kLineFeed);
    LogFileWriter writer(text);
    writer.writeString(kTimeKey, timeText(clock_()));
    writer.writeString(kApplicationKey, shortened(applicationName));
    writer.writeInt(kTypeKey, static_cast<int32_t>(report.typeCode));
    writer.writeString(kMessageKey, shortened(report.message));
    return text;
}

void ErrorLog::append(const char* applicationName, const FailureReport& report) const noexcept {
    attempt([&] {
        const std::string path = errorLogPath();
        const std::string entry = entryText(applicationName, report);
        const LogFile log(path);
        if (!log.isUsable()) return false;
        if (log.size() != 0 && hasRoom(log, entry)) {
            log.append(entry);
            return true;
        }

        if (log.size() != 0 && !log.moveAway(path)) return false;
        const LogFile fresh(path);
        if (!fresh.isUsable()) return false;
        if (fresh.size() != 0) {
            fresh.append(entry);
            return true;
        }
        fresh.openToAllUsers();
        const std::string beginning = headText() + entry;
        if (!fresh.append(beginning)) fresh.removeIfShorterThan(beginning, path);
        return true;
    });
}

}  // namespace dovrel
