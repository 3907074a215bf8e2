#pragma once

#include <algorithm>
#include <cstddef>
#include <span>

// The processes of the system. The numbers are interface constants: the state manager's notices carry them.
// Numbers that are not listed belong to processes that MetadataMgr does not use.
enum e_Process : unsigned int {
  e_Process_StateMgr = 2,
  e_Process_ConfigMgr = 3,
  e_Process_Fpga = 4,
  e_Process_RadarHal = 7,
  e_Process_MicMgr = 11,
  e_Process_GpsHal = 12,
  e_Process_AccelHal = 13,
  e_Process_TempHal = 14,
  e_Process_MetadataMgr = 19,
  e_Process_StreamMgr = 20,
  e_Process_VideoMgr = 21,
  e_Process_ExternalMgr = 29,
};

// Messages that carry the servers' notices to MetadataMgr. The payload is an item of the named class.
enum e_MetadataMgrNotice : unsigned int {
  MetadataMgrNotice_VehicleInfo = 13492,             // VehicleInfo
  MetadataMgrNotice_SystemInfo = 13493,              // SystemInfo
  MetadataMgrNotice_DepartmentInfo = 13494,          // DepartmentInfo
  MetadataMgrNotice_Officer = 13495,                 // Officer
  MetadataMgrNotice_VideoRecordingSettings = 13496,  // VideoRecordingSettings
  MetadataMgrNotice_ExternalEvent = 13497,           // FpgaExternalEventItem
  MetadataMgrNotice_GpsStatus = 13504,               // GpsStatusItem
  MetadataMgrNotice_RecordStart = 13505,             // SystickItem; the next three as well
  MetadataMgrNotice_RecordStop = 13506,
  MetadataMgrNotice_EnterCovertMode = 13507,
  MetadataMgrNotice_ExitCovertMode = 13508,
  MetadataMgrNotice_Radar = 13510,          // RadarItem
  MetadataMgrNotice_MicStatus = 13511,      // MicStatusResponse
  MetadataMgrNotice_Crash = 13512,          // CrashItem
  MetadataMgrNotice_Cameras = 13513,        // VideoMgrCameraItem
  MetadataMgrNotice_StreamQuality = 13514,  // VideoMgrStreamQualityItem
  MetadataMgrNotice_Temperatures = 13515,   // TempStatus
  MetadataMgrNotice_LiveStream0 = 18952,    // ExternalMgrApi::StreamingLvsStateItem; the next five as well
  MetadataMgrNotice_LiveStream1 = 18953,
  MetadataMgrNotice_LiveStream2 = 18954,
  MetadataMgrNotice_LiveStream3 = 18955,
  MetadataMgrNotice_LiveStream4 = 18956,
  MetadataMgrNotice_LiveStream5 = 18957,
};

struct ServedItem {
  unsigned int id;              // id at its server
  unsigned int notificationId;  // message that carries its changes to MetadataMgr
  const char* name;             // in drives
};

struct ServerRow {
  e_Process process;
  const char* name;       // name of its endpoint
  const char* offSwitch;  // the environment variable that switches it off; null: none
  bool defaultWhenOff;    // when switched off, reports its item as constructed
  std::span<const ServedItem> items;
};

namespace servers {

inline constexpr ServedItem kConfigMgr[] = {{10, MetadataMgrNotice_VehicleInfo, "vehicle"},
                                            {7, MetadataMgrNotice_SystemInfo, "system"},
                                            {11, MetadataMgrNotice_DepartmentInfo, "department"},
                                            {12, MetadataMgrNotice_Officer, "officer"},
                                            {13, MetadataMgrNotice_VideoRecordingSettings, "recording"}};
inline constexpr ServedItem kFpga[] = {{17, MetadataMgrNotice_ExternalEvent, "input"}};
inline constexpr ServedItem kGpsHal[] = {{1, MetadataMgrNotice_GpsStatus, "gps"}};
inline constexpr ServedItem kStateMgr[] = {{1, MetadataMgrNotice_RecordStart, "record-start"},
                                           {2, MetadataMgrNotice_RecordStop, "record-stop"},
                                           {3, MetadataMgrNotice_EnterCovertMode, "covert-on"},
                                           {4, MetadataMgrNotice_ExitCovertMode, "covert-off"}};
inline constexpr ServedItem kRadarHal[] = {{1, MetadataMgrNotice_Radar, "radar"}};
inline constexpr ServedItem kMicMgr[] = {{0, MetadataMgrNotice_MicStatus, "mic"}};
inline constexpr ServedItem kVideoMgr[] = {{0, MetadataMgrNotice_Cameras, "camera-entries"},
                                           {1, MetadataMgrNotice_StreamQuality, "quality"}};
inline constexpr ServedItem kAccelHal[] = {{1, MetadataMgrNotice_Crash, "crash"}};
inline constexpr ServedItem kTempHal[] = {{0, MetadataMgrNotice_Temperatures, "temp"}};
inline constexpr ServedItem kExternalMgr[] = {
    {16, MetadataMgrNotice_LiveStream0, "live-0"}, {17, MetadataMgrNotice_LiveStream1, "live-1"},
    {18, MetadataMgrNotice_LiveStream2, "live-2"}, {19, MetadataMgrNotice_LiveStream3, "live-3"},
    {20, MetadataMgrNotice_LiveStream4, "live-4"}, {21, MetadataMgrNotice_LiveStream5, "live-5"}};

// The servers that MetadataMgr subscribes to, in the order of the subscriptions. All code that needs every
// server reads this table. MetadataMgr/FollowedServers.cpp adds what MetadataMgr does with each server.
inline constexpr ServerRow kAll[] = {
    {e_Process_ConfigMgr, "ConfigMgr", "NO_CONFIGMGR", false, kConfigMgr},
    {e_Process_Fpga, "Fpga", "NO_FPGA", true, kFpga},
    {e_Process_GpsHal, "GpsHal", "NO_GPSHAL", true, kGpsHal},
    {e_Process_StateMgr, "StateMgr", "RUN_WITHOUT_STATEMGR", false, kStateMgr},
    {e_Process_RadarHal, "RadarHal", "NO_RADARHAL", true, kRadarHal},
    {e_Process_MicMgr, "MicMgr", "NO_MICMGR", false, kMicMgr},
    {e_Process_VideoMgr, "VideoMgr", "NO_VIDEOMGR", false, kVideoMgr},
    {e_Process_AccelHal, "AccelHal", "NO_ACCELHAL", false, kAccelHal},
    {e_Process_TempHal, "TempHal", "NO_TEMPHAL", false, kTempHal},
    {e_Process_ExternalMgr, "ExternalMgr", nullptr, false, kExternalMgr},
};

// The row of a process; the table must contain it.
constexpr const ServerRow& Of(e_Process process) {
  return *std::find_if(std::begin(kAll), std::end(kAll),
                       [process](const ServerRow& row) { return row.process == process; });
}

// The number of subscriptions with this notification id.
constexpr std::ptrdiff_t CountOf(unsigned int notificationId) {
  std::ptrdiff_t count = 0;
  for (const ServerRow& server : kAll) {
    count += std::count_if(
        server.items.begin(), server.items.end(),
        [notificationId](const ServedItem& item) { return item.notificationId == notificationId; });
  }
  return count;
}

// The id, at its server, of the item with this notification id.
consteval unsigned int ItemId(unsigned int notificationId) {
  for (const ServerRow& server : kAll) {
    for (const ServedItem& item : server.items) {
      if (item.notificationId == notificationId) return item.id;
    }
  }
  throw "no server has such an item";  // does not compile
}

constexpr bool NotificationIdsAreUnique() {
  return std::all_of(std::begin(kAll), std::end(kAll), [](const ServerRow& server) {
    return std::all_of(server.items.begin(), server.items.end(),
                       [](const ServedItem& item) { return CountOf(item.notificationId) == 1; });
  });
}
static_assert(NotificationIdsAreUnique());

}  // namespace servers
