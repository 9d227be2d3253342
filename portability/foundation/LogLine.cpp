#include "portability/foundation/LogLine.h"

#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <string>

#include "portability/corefoundation/TextEncoding.h"
#include "portability/posix/FileDescriptor.h"
#include "portability/posix/FileSizeSignalBlock.h"

namespace portability {

namespace {

std::string timeText() {
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    struct tm parts = {};
    localtime_r(&now.tv_sec, &parts);
    char seconds[sizeof "YYYYYY-MM-DD HH:MM:SS"] = "";
    strftime(seconds, sizeof seconds, "%Y-%m-%d %H:%M:%S", &parts);
    const std::string milliseconds = std::to_string(1000 + now.tv_nsec / 1'000'000);
    return seconds + ("." + milliseconds.substr(1));
}

// Returns the program's name in UTF-8. A name that is not UTF-8 is read as Mac Roman, in which every
// byte is a character.
std::string programName() {
    const std::string name = program_invocation_short_name;
    if (decodeText(name, kCFStringEncodingUTF8)) return name;
    const auto units = decodeText(name, kCFStringEncodingMacRoman);
    if (!units) return std::string();
    return encodeText(units->data(), units->size(), kCFStringEncodingUTF8).value_or("");
}

std::string beginning() {
    return timeText() + " " + programName() + "[" + std::to_string(getpid()) + ":" +
           std::to_string(syscall(SYS_gettid)) + "] ";
}

// Returns the text with every control character but line feed and tab as "\x" and two hexadecimal digits. The
// line may be shown on a terminal, and the text in it may come from a server or another program.
std::string withoutControlCharacters(const char* text) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    constexpr char kDelete = '\x7F';
    std::string shown;
    for (const char* at = text; *at != '\0'; ++at) {
        const auto code = static_cast<unsigned char>(*at);
        const bool isControl = (code < ' ' && *at != '\n' && *at != '\t') || *at == kDelete;
        if (isControl)
            shown += {'\\', 'x', kDigits[code / 16], kDigits[code % 16]};
        else
            shown += *at;
    }
    return shown;
}

// Writing to a pipe without a reader raises SIGPIPE on the writing thread, which would end the host. This
// object blocks the signal on this thread and removes it afterwards, unless the host already had one pending.
class BrokenPipeSilence {
  public:
    BrokenPipeSilence() {
        sigemptyset(&brokenPipe_);
        sigaddset(&brokenPipe_, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        isHosts_ = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &brokenPipe_, &before_);
    }

    ~BrokenPipeSilence() {
        const timespec now = {};
        while (!isHosts_ && sigtimedwait(&brokenPipe_, nullptr, &now) < 0 && errno == EINTR) {
        }
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }

    BrokenPipeSilence(const BrokenPipeSilence&) = delete;
    BrokenPipeSilence& operator=(const BrokenPipeSilence&) = delete;

  private:
    sigset_t brokenPipe_;
    sigset_t before_;
    bool isHosts_;
};

// Writes the line with one call, so that the lines of several threads and processes do not mix.
bool writeToStandardError(const std::string& line) {
    const BrokenPipeSilence silence;
    const FileSizeSignalBlock fileSizeBlock;
    ssize_t written = 0;
    do {
        written = write(STDERR_FILENO, line.data(), line.size());
    } while (written < 0 && errno == EINTR);
    return written >= 0;
}

// Used if the host has closed standard error. The C library's syslog() would leave a descriptor open, with
// the number of a standard stream, and would use the host's openlog() settings.
void writeToDaemon(const std::string& message) {
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    const sockaddr_un daemon = {AF_UNIX, "/dev/log"};
    const std::string line = "<" + std::to_string(LOG_USER | LOG_ERR) + ">" + programName() + "[" +
                             std::to_string(getpid()) + "]: " + message;
    sendto(socket.get(), line.data(), line.size(), MSG_NOSIGNAL | MSG_DONTWAIT,
           reinterpret_cast<const sockaddr*>(&daemon), sizeof daemon);
}

}  // namespace

void writeLogLine(const char* message) noexcept {
    try {
        const std::string text = withoutControlCharacters(message);
        std::string line = beginning() + text;
        if (line.back() != '\n') line += '\n';
        if (!writeToStandardError(line)) writeToDaemon(text);
    } catch (...) {
        // Memory has run out.
    }
}

}  // namespace portability
