// Dates and times as texts and as three bytes, and day arithmetic in seconds.
//
// All of them start from currentTime (Clock.h). Local means the time zone of the process.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

#include "platform/time/Clock.h"
#include "serialization/CPPByteArray.h"

namespace dovrel {

constexpr std::time_t kSecondsOfDay = 86400;

/// The seconds of that many days, which may be negative.
std::time_t secondsForDays(int32_t days);

/// Local time in the form 2026.11.15 18:19:00. The text lies in the static buffer of the standard library's
/// asctime: the next call of this function, of utcNowText or of asctime overwrites it, on whatever thread.
const char* localNowText();

/// The same from UTC.
const char* utcNowText();

/// Local time in the form 2026.11.15 18.19.
std::string localNowShortText();

/// Appends the local time in the form 20261115-181900.
void appendTimestamp(std::string& text);

/// The difference of local time to UTC and the zone's name, in the form +0100 (CET).
std::string timeZoneText();

/// Three bytes: the year since 2000, the month (1 to 12), the day of the month (1 to 31). Without arguments
/// the local date of today.
CPPByteArray dateBytes();

/// The UTC date in `days` days. Around midnight it can differ from the local date also for 0.
CPPByteArray dateBytes(int32_t days);

/// The same with `months` added to the month byte alone, which may then exceed 12.
CPPByteArray dateBytes(int32_t days, int32_t months);

}  // namespace dovrel
