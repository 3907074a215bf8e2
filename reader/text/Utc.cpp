#include "Utc.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>

namespace reader {
namespace {

constexpr std::int64_t kDayMs = 86'400'000;

void PutTwo(char* at, std::int64_t number) {
  at[0] = static_cast<char>('0' + number / 10);
  at[1] = static_cast<char>('0' + number % 10);
}

// Takes a number of `digits` digits, then `separator` unless that is 0.
bool Take(std::string_view& text, std::size_t digits, char separator, int& number) {
  if (text.size() < digits) return false;
  const auto [end, error] = std::from_chars(text.data(), text.data() + digits, number);
  if (error != std::errc() || end != text.data() + digits || number < 0) return false;
  text.remove_prefix(digits);
  if (separator == 0) return true;
  if (!text.starts_with(separator)) return false;
  text.remove_prefix(1);
  return true;
}

// Reads ".25" as milliseconds, and cuts finer digits.
bool TakeFraction(std::string_view& text, int& ms) {
  ms = 0;
  if (!text.starts_with('.')) return true;
  text.remove_prefix(1);
  int weight = 100;
  std::size_t digits = 0;
  for (; digits < text.size() && text[digits] >= '0' && text[digits] <= '9'; ++digits, weight /= 10)
    ms += (text[digits] - '0') * weight;
  text.remove_prefix(digits);
  return digits > 0;
}

bool TakeTime(std::string_view& text, std::int64_t& ms) {
  int hours = 0;
  int minutes = 0;
  int seconds = 0;
  int milliseconds = 0;
  if (!Take(text, 2, ':', hours) || !Take(text, 2, 0, minutes)) return false;
  if (text.starts_with(':')) {
    text.remove_prefix(1);
    if (!Take(text, 2, 0, seconds) || !TakeFraction(text, milliseconds)) return false;
  }
  ms = ((hours * 60 + minutes) * 60 + seconds) * std::int64_t{1000} + milliseconds;
  return hours < 24 && minutes < 60 && seconds < 60;
}

// Reads the offset from UTC: "+01:00", "-0530", "+01".
bool TakeOffset(std::string_view& text, std::int64_t& ms) {
  const std::int64_t sign = text.starts_with('-') ? -1 : 1;
  text.remove_prefix(1);
  int hours = 0;
  int minutes = 0;
  if (!Take(text, 2, 0, hours)) return false;
  if (text.starts_with(':')) text.remove_prefix(1);
  if (!text.empty() && !Take(text, 2, 0, minutes)) return false;
  ms = sign * (hours * 60 + minutes) * 60'000;
  return hours <= 14 && minutes < 60;
}

}  // namespace

void UtcWriter::Append(std::int64_t utcMs, std::string& text) {
  if (utcMs == kNoUtc) {
    text += '-';
    return;
  }
  std::int64_t day = utcMs / kDayMs;
  if (utcMs % kDayMs < 0) --day;
  if (day != day_) {
    // Times from damaged files are limited to years of four digits.
    constexpr std::int64_t kFirstDay = -719'162;
    constexpr std::int64_t kLastDay = 2'932'896;
    const std::int64_t shown = std::min(std::max(day, kFirstDay), kLastDay);
    const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(shown))};
    (void)std::snprintf(date_, sizeof date_, "%04d-%02u-%02uT", static_cast<int>(date.year()),
                        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    day_ = day;
  }
  const std::int64_t ms = utcMs - day * kDayMs;
  char time[] = "00:00:00.000Z";
  PutTwo(time, ms / 3'600'000);
  PutTwo(time + 3, ms / 60'000 % 60);
  PutTwo(time + 6, ms / 1000 % 60);
  time[9] = static_cast<char>('0' + ms % 1000 / 100);
  PutTwo(time + 10, ms % 100);
  text.append(date_, 11).append(time, sizeof time - 1);
}

std::string UtcText(std::int64_t utcMs) {
  std::string text;
  UtcWriter().Append(utcMs, text);
  return text;
}

bool ReadUtc(std::string_view text, std::int64_t& utcMs) {
  int year = 0;
  int month = 0;
  int day = 0;
  if (!Take(text, 4, '-', year) || !Take(text, 2, '-', month) || !Take(text, 2, 0, day)) return false;
  const std::chrono::year_month_day date(std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day)));
  std::int64_t ms = 0;
  std::int64_t offsetMs = 0;
  if (text.starts_with('T') || text.starts_with(' ')) {
    text.remove_prefix(1);
    if (!TakeTime(text, ms)) return false;
    if ((text.starts_with('+') || text.starts_with('-')) && !TakeOffset(text, offsetMs)) return false;
  }
  if (text.starts_with('Z')) text.remove_prefix(1);
  if (!text.empty() || !date.ok()) return false;
  utcMs = std::chrono::sys_days(date).time_since_epoch().count() * kDayMs + ms - offsetMs;
  return true;
}

}  // namespace reader
