#include "client/ErrorLog.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "InterProcessCommunication/TransferObjText.h"
#include "client/OperationResult.h"
#include "client/exceptions/ExceptionTypeNames.h"
#include "platform/files/FileWriting.h"
#include "platform/files/Places.h"
#include "platform/files/StandardStreamGuard.h"
#include "settings/LineGrammar.h"
#include "settings/LogFileWriter.h"
#include "ui/information/Component.h"
#include "ui/information/ComponentVersions.h"

namespace dovrel {

namespace {

namespace entryKey {
constexpr char kVersion[] = "VERSION";
constexpr char kEncoding[] = "ENCODING";
constexpr char kTime[] = "TIME";
constexpr char kApplication[] = "APPLICATION";
constexpr char kType[] = "TYPE";
constexpr char kTypeName[] = "TYPENAME";
constexpr char kMessage[] = "MESSAGE";
constexpr char kDetail[] = "DETAIL";
constexpr char kStatus[] = "STATUS";
constexpr char kException[] = "EXCEPTION";
constexpr char kRequest[] = "REQUEST";
constexpr char kServerError[] = "SERVERERROR";
constexpr char kFailedStep[] = "FAILEDSTEP";
constexpr char kAlert[] = "ALERT";
}  // namespace entryKey

constexpr char kNoAlert[] = "none";
constexpr char kVersionStart[] = "Dovrel Version ";

/// The open log, closed by the destructor.
class LogFile {
  public:
    /// Opens the file for appending; creates it if it does not exist. Never blocks, not even if the path
    /// names a pipe.
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

    /// Grants all users all permissions on the file. Uses the file descriptor, because another file may have
    /// the name by now.
    void openToAllUsers() const { static_cast<void>(fchmod(descriptor_, (status_.st_mode | 0777) & 07777)); }

    /// Returns false if not all of the text was written.
    bool append(const std::string& text) const { return appendAtOnce(descriptor_, text.data(), text.size()); }

    /// Removes the file if it is shorter than the text that was written as its beginning.
    void removeIfShorterThan(const std::string& text, const std::string& path) const {
        struct stat now = {};
        const bool isShorter =
            fstat(descriptor_, &now) == 0 && static_cast<uint64_t>(now.st_size) < text.size();
        if (isShorter && isNamed(path)) std::remove(path.c_str());
    }

    /// Renames the file to make room for a new one, and returns false if that fails. Does nothing and returns
    /// true if another process has renamed the file since it was opened, or is renaming it now. A second
    /// rename would replace the full log by the new one.
    bool moveAway(const std::string& path) const {
        // Does not wait for the lock, because any user can hold it. Closing the descriptor releases the lock.
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

void writeText(LogFileWriter& writer, const char* key, const std::string& text) {
    writer.writeString(key, text.substr(0, ErrorLog::kLongestText));
}

void writeIfPresent(LogFileWriter& writer, const char* key, const std::string& text) {
    if (!text.empty()) writeText(writer, key, text);
}

bool hasRoom(const LogFile& log, const std::string& text, uint32_t largestSize = ErrorLog::kLargestSize) {
    return log.size() + text.size() < largestSize;
}

// Uses the descriptor that created the file. The umask of the host may have taken away all rights to open
// the file again.
void beginLog(const LogFile& log, const std::string& path, const std::string& beginning) {
    log.openToAllUsers();
    if (!log.append(beginning)) log.removeIfShorterThan(beginning, path);
}

}  // namespace

void ErrorLog::useBundle(const std::string& bundlePath) {
    version_ = kVersionStart + bundleVersionText(libraryIdentifier(), bundlePath);
}

std::string ErrorLog::headText() const {
    std::string text;
    LogFileWriter writer(text);
    writer.writeTitle(kTitle);
    writer.writeString(entryKey::kVersion, version_);
    writer.writeString(entryKey::kEncoding, kEncoding);
    return text;
}

std::string ErrorLog::entryText(const char* applicationName, const FailureReport& report,
                                const FailureNotes& notes) const {
    // An entry begins with a line feed, because a full disk may have cut the entry before it.
    std::string text(1, kLineFeed);
    LogFileWriter writer(text);
    writer.writeString(entryKey::kTime, timeText(clock_()));
    writeText(writer, entryKey::kApplication, applicationName);
    writer.writeInt(entryKey::kType, static_cast<int32_t>(report.typeCode));
    if (const char* const name = exceptionTypeName(report.typeCode))
        writeText(writer, entryKey::kTypeName, name);
    writeText(writer, entryKey::kMessage, report.message);
    writeIfPresent(writer, entryKey::kDetail, report.detail);
    writeIfPresent(writer, entryKey::kStatus, report.status);
    writeIfPresent(writer, entryKey::kException, notes.foreignException());
    writeIfPresent(writer, entryKey::kRequest, notes.request());
    if (notes.serverError())
        writeText(writer, entryKey::kServerError, errorCodeText(notes.serverError()->code));
    writeIfPresent(writer, entryKey::kFailedStep, notes.failedStep());
    if (!report.isShown) writeText(writer, entryKey::kAlert, kNoAlert);
    return text;
}

void ErrorLog::append(const char* applicationName, const FailureReport& report,
                      const FailureNotes& notes) const noexcept {
    ignoringFailures([&] { appendEntry(entryText(applicationName, report, notes)); });
}

void ErrorLog::appendEntry(const std::string& entry) const {
    const std::string path = errorLogPath();
    const StandardStreamGuard guard;
    {
        const LogFile log(path);
        if (!log.isUsable()) return;
        if (log.size() == 0) return beginLog(log, path, headText() + entry);
        if (hasRoom(log, entry)) return static_cast<void>(log.append(entry));
        if (!log.moveAway(path)) return;
    }
    const LogFile fresh(path);
    if (!fresh.isUsable()) return;
    if (fresh.size() != 0) {
        // This is still the full log if the process that locks it has not renamed it yet.
        if (hasRoom(fresh, entry, ErrorLog::kLargestSizeWhileLocked)) fresh.append(entry);
        return;
    }
    beginLog(fresh, path, headText() + entry);
}

}  // namespace dovrel
