#include "platform/time/Timestamp.h"

#include <sys/time.h>

#include <ctime>

namespace dovrel {

std::string timestampText() {
    timeval now = {};
    gettimeofday(&now, nullptr);
    const std::time_t seconds = now.tv_sec;
    tm local = {};
    localtime_r(&seconds, &local);
    char text[sizeof "YYYYYY-MM-DD HH:MM:SS"] = "";
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    const std::string milliseconds = std::to_string(1000 + now.tv_usec / 1000);
    return text + ("." + milliseconds.substr(1));
}

}  // namespace dovrel
