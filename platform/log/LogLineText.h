#pragma once

#include <array>
#include <cstddef>
#include <ctime>
#include <string_view>

#include "log/SysLogMsg.h"

// Room for a finished line: its prefix and its text.
using LogLineBuffer = std::array<char, SysLogMsg::kMaxText + 128>;

// Both functions return the filled part of `line`.

// "2026-11-21T08:40:00.123Z NAME[PID] MASK TEXT" and a line feed; the time is UTC.
std::string_view StderrLine(LogLineBuffer& line, const timespec& time, unsigned int mask,
                            std::string_view processName, std::string_view text);

// "<PRIORITY>Nov 21 08:40:00 NAME[PID]: TEXT", as the local system log expects it; the time is
// local, the priority comes from the mask.
std::string_view SyslogLine(LogLineBuffer& line, const timespec& time, unsigned int mask,
                            std::string_view processName, std::string_view text);
