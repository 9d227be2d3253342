#include "platform/trace/Trace.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/files/StandardStreamGuard.h"
#include "platform/time/Timestamp.h"
#include "platform/trace/TraceText.h"

namespace dovrel {

namespace {

/// Opens the file. Other files of the library are open to all users, but this one only to its owner, because
/// it may contain what a host sends to its server. Never blocks, even if the path names a pipe.
int openTraceFile(const std::string& path) {
    const StandardStreamGuard guard;
    const int descriptor =
        open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
    struct stat status = {};
    if (descriptor >= 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        // A host's umask may have taken away the owner's rights, and later sessions could not add to the file.
        if (status.st_size == 0) static_cast<void>(fchmod(descriptor, status.st_mode | 0600));
        return descriptor;
    }
    if (descriptor >= 0) close(descriptor);
    return STDERR_FILENO;
}

}  // namespace

const Trace* Trace::running = nullptr;

Trace::Trace(const std::string& setting)
    : setting_(setting), descriptor_(setting_.file.empty() ? STDERR_FILENO : openTraceFile(setting_.file)) {
    running = this;
    if (!setting_.problems.empty()) writeEntry("not understood: " + traceValueText(setting_.problems));
}

Trace::~Trace() {
    if (running == this) running = nullptr;
    if (descriptor_ != STDERR_FILENO) close(descriptor_);
}

// Writes the entry with one call of write(), so that the entries of several threads and processes do not mix.
void Trace::writeEntry(const std::string& text) const {
    const std::string entry = (setting_.timeOfDay ? timestampText() + " " : "") + "dovrel " +
                              std::to_string(getpid()) + " " + timer_.text() + " " + traceEntryText(text) +
                              "\n";
    [[maybe_unused]] const ssize_t written = ::write(descriptor_, entry.data(), entry.size());
}

}  // namespace dovrel
