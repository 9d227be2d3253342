#include "server/ExchangeLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "InterProcessCommunication/TransferObjText.h"
#include "platform/text/ReadableText.h"
#include "platform/time/Timestamp.h"

namespace merrowd {

namespace {

constexpr char kRequestMark[] = "    > ";
constexpr char kReplyMark[] = "    < ";

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
    write(dovrel::timestampText() + " " + line + "\n");
}

void ExchangeLog::request(const std::string& title, const CPPByteArray& request) {
    ++exchange_;
    write(dovrel::timestampText() + " #" + std::to_string(exchange_) + " " + title + "\n" +
          dovrel::transferObjText(request, kRequestMark));
}

void ExchangeLog::reply(const std::string& title, const CPPByteArray& reply) {
    write(dovrel::timestampText() + " #" + std::to_string(exchange_) + " " + title + "\n" +
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
