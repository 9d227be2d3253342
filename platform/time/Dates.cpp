#include "platform/time/Dates.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <limits>

namespace dovrel {

namespace {

constexpr int kFirstYearOfTm = 1900;
constexpr int kFirstYearOfDateBytes = 2000;

// Offsets in asctime's text, "Sun Nov 15 18:19:00 2026".
constexpr size_t kTimeStart = 11;
constexpr size_t kTimeEnd = 19;
constexpr size_t kMinutesEnd = 16;
constexpr size_t kFirstColon = 13;

std::tm localTime() {
    const std::time_t now = currentTime();
    // `localtime` updates the time zone; `localtime_r` need not.
    tzset();
    std::tm parts{};
    localtime_r(&now, &parts);
    return parts;
}

std::tm utcTime(std::time_t time) {
    std::tm parts{};
    gmtime_r(&time, &parts);
    return parts;
}

// Makes the dotted text inside asctime's buffer. The time stays in its place. The date is as long
// as the text before the time, so it replaces that text. The date of a year without exactly four
// digits does not fit and is cut.
char* dottedText(std::tm parts) {
    parts.tm_isdst = 0;
    char* const text = std::asctime(&parts);
    text[kTimeEnd] = '\0';
    std::array<char, 48> date{};
    std::snprintf(date.data(), date.size(), "%d.%02d.%02d ", parts.tm_year + kFirstYearOfTm, parts.tm_mon + 1,
                  parts.tm_mday);
    std::memcpy(text, date.data(), kTimeStart);
    return text;
}

CPPByteArray toDateBytes(const std::tm& date, int32_t months) {
    const uint8_t parts[] = {static_cast<uint8_t>(date.tm_year + kFirstYearOfTm - kFirstYearOfDateBytes),
                             static_cast<uint8_t>(date.tm_mon + 1 + months),
                             static_cast<uint8_t>(date.tm_mday)};
    CPPByteArray bytes;
    bytes.setOrThrow(parts, sizeof parts);
    return bytes;
}

// The type of times has 32 bits on some systems.
std::time_t nearestTime(int64_t seconds) {
    using Limits = std::numeric_limits<std::time_t>;
    return static_cast<std::time_t>(std::clamp<int64_t>(seconds, Limits::min(), Limits::max()));
}

}  // namespace

std::time_t secondsForDays(int32_t days) {
    return nearestTime(int64_t{days} * kSecondsOfDay);
}

const char* localNowText() {
    return dottedText(localTime());
}

const char* utcNowText() {
    return dottedText(utcTime(currentTime()));
}

std::string localNowShortText() {
    std::string text = localNowText();
    text[kFirstColon] = '.';
    text.resize(kMinutesEnd);
    return text;
}

void appendTimestamp(std::string& text) {
    const std::tm now = localTime();
    std::array<char, 80> stamp{};
    std::snprintf(stamp.data(), stamp.size(), "%d%02d%02d-%02d%02d%02d", now.tm_year + kFirstYearOfTm,
                  now.tm_mon + 1, now.tm_mday, now.tm_hour, now.tm_min, now.tm_sec);
    text += stamp.data();
}

std::string timeZoneText() {
    const std::tm now = localTime();
    std::array<char, 99> text{};
    return std::string(text.data(), std::strftime(text.data(), text.size(), "%z (%Z)", &now));
}

CPPByteArray dateBytes() {
    return toDateBytes(localTime(), 0);
}

CPPByteArray dateBytes(int32_t days) {
    return dateBytes(days, 0);
}

CPPByteArray dateBytes(int32_t days, int32_t months) {
    return toDateBytes(utcTime(nearestTime(int64_t{currentTime()} + secondsForDays(days))), months);
}

}  // namespace dovrel
