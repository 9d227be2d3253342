// Clock: the time of the server's machine.
//
//   method   argument   result
//   now      none       the time in UTC as text: 2026-11-15T18:19:00Z
#include <ctime>

#include "server/BuiltInClass.h"

namespace merrowd {
namespace {

class Clock {
  public:
    CPPByteArray now(CPPByteArray argument) {
        requireNoArgument(argument);
        const time_t seconds = time(nullptr);
        tm utc{};
        char text[sizeof "2026-11-15T18:19:00Z"] = "";
        if (gmtime_r(&seconds, &utc) == nullptr ||
            strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc) == 0) {
            throw Refusal{refusalCode::kPOSMethodExecution, "the time cannot be told"};
        }
        return toBytes(text);
    }
};

const BuiltInClass<Clock> kClock("Clock", {{"now", &Clock::now}});

}  // namespace
}  // namespace merrowd
