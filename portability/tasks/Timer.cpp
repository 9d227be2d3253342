#include <CoreServices/Timer.h>

#include <chrono>

namespace {

UInt64 microsecondsSinceStart() {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<UInt64>(std::chrono::duration_cast<std::chrono::microseconds>(sinceStart).count());
}

}  // namespace

void Microseconds(UnsignedWide* microTickCount) {
    const UInt64 now = microsecondsSinceStart();
    microTickCount->lo = static_cast<UInt32>(now & 0xFFFFFFFFu);
    microTickCount->hi = static_cast<UInt32>(now >> 32);
}

UInt32 TickCount() {
    constexpr UInt64 kMicrosecondsOfSixtyTicks = 1000000;
    return static_cast<UInt32>(microsecondsSinceStart() * 60 / kMicrosecondsOfSixtyTicks & 0xFFFFFFFFu);
}
