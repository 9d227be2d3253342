// Returns dates and times as texts or as three bytes, and converts days to seconds.
//
// All functions use the time of currentTime (Clock.h). "Local" means the time zone of the process.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

#include "platform/time/Clock.h"
#include "serialization/CPPByteArray.h"

namespace dovrel {

constexpr std::time_t kSecondsOfDay = 86400;

/// Returns the number of seconds in `days` days. `days` may be negative.
std::time_t secondsForDays(int32_t days);

/// Returns the local time in the form 2026.11.15 18:19:00. The text is in the static buffer of the
/// standard library's `asctime`. The next call of this function, of utcNowText or of `asctime` on
/// any thread overwrites it.
const char* localNowText();

/// As localNowText, but UTC.
const char* utcNowText();

/// Returns the local time in the form 2026.11.15 18.19.
std::string localNowShortText();

/// Appends the local time in the form 20261115-181900.
void appendTimestamp(std::string& text);

/// Returns the offset of local time from UTC and the zone's name, in the form +0100 (CET).
std::string timeZoneText();

/// Returns three bytes: the year since 2000, the month (1 to 12) and the day of the month (1 to 31). Without
/// arguments it is today's local date.
CPPByteArray dateBytes();

/// Returns the UTC date `days` days from now. Near midnight it can differ from the local date, even for 0.
CPPByteArray dateBytes(int32_t days);

/// As above, with `months` added to the month byte. It can then exceed 12; the year does not change.
CPPByteArray dateBytes(int32_t days, int32_t months);

}  // namespace dovrel
