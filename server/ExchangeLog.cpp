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
constexpr char kAnswerMark[] = "    < ";

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

// The servers of several users write to one log, like the hosts to theirs.
void openNewFileToAllUsers(int descriptor) {
    struct stat status = {};
    const bool isNew = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size == 0;
    if (isNew) static_cast<void>(fchmod(descriptor, 0666));
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

void ExchangeLog::answer(const std::string& title, const CPPByteArray& answer) {
    write(timeStamp() + "#" + std::to_string(exchange_) + " " + title + "\n" +
          dovrel::transferObjText(answer, kAnswerMark));
}

void ExchangeLog::write(const std::string& lines) {
    std::FILE* const to = stream();
    std::fwrite(lines.data(), 1, lines.size(), to);
    std::fflush(to);
}

std::FILE* ExchangeLog::stream() {
    if (file_ == nullptr && !unwritable_) {
        // A link in the log folder, which everybody may write to, could point to any file of the user's.
        const int descriptor =
            open(path_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOFOLLOW, 0666);
        if (descriptor >= 0) {
            openNewFileToAllUsers(descriptor);
            file_.reset(fdopen(descriptor, "a"));
        }
        unwritable_ = file_ == nullptr;
    }
    return unwritable_ ? stderr : file_.get();
}

}  // namespace merrowd
