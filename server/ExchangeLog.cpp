#include "server/ExchangeLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <utility>

#include "InterProcessCommunication/TransferObjText.h"
#include "platform/text/ReadableText.h"

namespace merrowd {

namespace {

constexpr char kRequestMark[] = "    > ";
constexpr char kReplyMark[] = "    < ";

std::string timeStamp() {
    const auto now = std::chrono::system_clock::now();
    const time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    tm local{};
    localtime_r(&seconds, &local);
    char text[sizeof "2026-11-15 18:19:00"] = "";
    strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    const std::string fraction = std::to_string(1000 + milliseconds);
    return std::string(text) + "." + fraction.substr(1) + " ";
}

// Opens the log for appending. Returns -1 if that is not possible. All users may write to the log
// folder, so the path can be anything: a symbolic link could point to any file of this user, and a
// pipe would block the server.
int openLog(const std::string& path) {
    const int descriptor =
        open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666);
    if (descriptor < 0) return -1;
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(descriptor);
        return -1;
    }
    // All users may write the log, because the servers of several users write to the same log.
    if (status.st_size == 0) static_cast<void>(fchmod(descriptor, 0666));
    return descriptor;
}

}  // namespace

ExchangeLog::ExchangeLog(std::string path) : path_(std::move(path)) {}

void ExchangeLog::note(const std::string& text) {
    std::string line = dovrel::readableText(text);
    std::replace(line.begin(), line.end(), '\n', ' ');
    write(timeStamp() + line + "\n");
}

void ExchangeLog::request(const std::string& title, const CPPByteArray& request) {
    ++exchange_;
    write(timeStamp() + "#" + std::to_string(exchange_) + " " + title + "\n" +
          dovrel::transferObjText(request, kRequestMark));
}

void ExchangeLog::reply(const std::string& title, const CPPByteArray& reply) {
    write(timeStamp() + "#" + std::to_string(exchange_) + " " + title + "\n" +
          dovrel::transferObjText(reply, kReplyMark));
}

void ExchangeLog::write(const std::string& lines) {
    std::FILE* const to = stream();
    std::fwrite(lines.data(), 1, lines.size(), to);
    std::fflush(to);
}

std::FILE* ExchangeLog::stream() {
    if (file_ == nullptr && !unwritable_) {
        const int descriptor = openLog(path_);
        if (descriptor >= 0) file_.reset(fdopen(descriptor, "a"));
        unwritable_ = file_ == nullptr;
    }
    return unwritable_ ? stderr : file_.get();
}

}  // namespace merrowd
