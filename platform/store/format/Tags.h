#pragma once

#include "store/Enumerations.h"

namespace store {

// A pair of tags: an even tag and the next odd one.
struct TagName {
  e_Tag tag;  // the even tag
  const char* name;
  const char* active;
  const char* inactive;
  bool critical;  // durable at once
};

inline constexpr TagName kTagNames[] = {
    {e_Tag_Filler, "filler", "", "", false},
    {e_Tag_LightsOn, "lights", "on", "off", false},
    {e_Tag_SirenOn, "siren", "on", "off", false},
    {e_Tag_BrakesOn, "brakes", "on", "off", false},
    {e_Tag_CovertEntered, "covert", "entered", "left", true},
    {e_Tag_AuxOn, "aux", "on", "off", false},
    {e_Tag_DoorOpen, "doorOpen", "open", "closed", false},
    {e_Tag_Started, "system", "started", "stopped", false},
    {e_Tag_CrashDetected, "crash", "detected", "cleared", true},
    {e_Tag_IgnitionOn, "ignition", "on", "off", false},
    {e_Tag_RecordingStarted, "recording", "started", "stopped", true},
};

// The source of a speed.
struct SpeedSource {
  int number;
  const char* name;
};
inline constexpr int kGpsSpeed = 1;
inline constexpr int kRadarSpeed = 2;
inline constexpr SpeedSource kSpeedSources[] = {{kGpsSpeed, "gps"}, {kRadarSpeed, "radar"}};

constexpr unsigned int SignalOf(e_Tag tag) {
  return tag & ~1U;
}
constexpr bool IsActive(e_Tag tag) {
  return (tag & 1U) == 0;
}
constexpr bool IsCritical(e_Tag tag) {
  for (const TagName& row : kTagNames) {
    if (row.tag == SignalOf(tag)) return row.critical;
  }
  return false;
}

}  // namespace store
