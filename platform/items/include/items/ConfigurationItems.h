#pragma once

#include "items/RecordItem.h"

// The records of the configuration manager.

class VehicleInfo : public RecordItem<VehicleInfo> {
 public:
  field::Text unitId;
  field::Text licensePlate;

  static constexpr auto Fields() { return std::make_tuple(&VehicleInfo::unitId, &VehicleInfo::licensePlate); }
};

class Officer : public RecordItem<Officer> {
 public:
  field::Text name;
  field::Text badgeNumber;

  static constexpr auto Fields() { return std::make_tuple(&Officer::name, &Officer::badgeNumber); }
};

class DepartmentInfo : public RecordItem<DepartmentInfo> {
 public:
  field::Text name;
  field::Text division;

  static constexpr auto Fields() { return std::make_tuple(&DepartmentInfo::name, &DepartmentInfo::division); }
};

class SystemInfo : public RecordItem<SystemInfo> {
 public:
  field::Text deviceName;
  field::Text softwareVersion;

  static constexpr auto Fields() {
    return std::make_tuple(&SystemInfo::deviceName, &SystemInfo::softwareVersion);
  }
};

class VideoRecordingSettings : public RecordItem<VideoRecordingSettings> {
 public:
  std::uint16_t preEventSeconds = 0;   // video kept from before a recording starts
  std::uint16_t postEventSeconds = 0;  // video recorded after it stops
  std::uint16_t widthPixels = 0;
  std::uint16_t heightPixels = 0;
  std::uint16_t framesPerSecond = 0;
  std::uint16_t bitRateKbps = 0;

  static constexpr auto Fields() {
    return std::make_tuple(&VideoRecordingSettings::preEventSeconds,
                           &VideoRecordingSettings::postEventSeconds, &VideoRecordingSettings::widthPixels,
                           &VideoRecordingSettings::heightPixels, &VideoRecordingSettings::framesPerSecond,
                           &VideoRecordingSettings::bitRateKbps);
  }
};
