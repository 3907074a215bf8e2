#include "FollowedServers.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr char kNoLiveStream[] = "Failed to subscribe to ExternalMgr LVS state changes";

// clang-format off
constexpr FollowedItem kItems[] = {
    {MetadataMgrNotice_VehicleInfo, MetadataMgr::VehicleInfoChangedHandler,
     "MetadataMgr - Failed to subscribe to VehicleInfo"},
    {MetadataMgrNotice_SystemInfo, MetadataMgr::SystemInfoChangedHandler,
     "MetadataMgr - Failed to subscribe to SystemInfo"},
    {MetadataMgrNotice_DepartmentInfo, MetadataMgr::DeptInfoChangedHandler,
     "MetadataMgr - Failed to subscribe to DepartmentInfo"},
    {MetadataMgrNotice_Officer, MetadataMgr::OfficerChangedHandler,
     "MetadataMgr - Failed to subscribe to Officer"},
    {MetadataMgrNotice_VideoRecordingSettings, MetadataMgr::VideoRecordingSettingsChangedHandler,
     "MetadataMgr - Failed to subscribe to VideoRecording"},
    {MetadataMgrNotice_ExternalEvent, MetadataMgr::ExternalInputEventHandler,
     "MetadataMgr - Failed to subscribe to External Events"},
    {MetadataMgrNotice_GpsStatus, MetadataMgr::GpsStatusEventHandler,
     "MetadataMgr - Failed to subscribe to GpsStatus Events"},
    {MetadataMgrNotice_RecordStart, MetadataMgr::RecordStartHandler,
     "MetadataMgr - Failed to subscribe to StateMgr Record Start Event"},
    {MetadataMgrNotice_RecordStop, MetadataMgr::RecordStopHandler,
     "MetadataMgr - Failed to subscribe to StateMgr Record Stop Event"},
    {MetadataMgrNotice_EnterCovertMode, MetadataMgr::EnterCovertModeHandler,
     "MetadataMgr - Failed to subscribe to StateMgr Enter Covert Mode Event"},
    {MetadataMgrNotice_ExitCovertMode, MetadataMgr::ExitCovertModeHandler,
     "MetadataMgr - Failed to subscribe to StateMgr Exit Cover Mode Event"},
    {MetadataMgrNotice_Radar, MetadataMgr::RadarEventHandler,
     "MetadataMgr - Failed to subscribe to RadarHal Events"},
    {MetadataMgrNotice_MicStatus, MetadataMgr::MicMgrStatusHandler, "Failed to subscribe to Mic Mgr Events"},
    {MetadataMgrNotice_Crash, MetadataMgr::CrashDetectHandler,
     "Failed to subscribe to Mic Mgr Events"},  // same text as for the microphones
    {MetadataMgrNotice_Cameras, MetadataMgr::VideoMgrCameraItemHandler, "Failed to subscribe to Video Mgr Events"},
    {MetadataMgrNotice_StreamQuality, MetadataMgr::VideoMgrStreamQualityItemHandler,
     "Failed to subscribe to Video Mgr Events"},
    {MetadataMgrNotice_Temperatures, MetadataMgr::TempChangeHandler, "Failed to subscribe to TempHal Events"},
    {MetadataMgrNotice_LiveStream0, MetadataMgr::LVSStateChangeHandler_0, kNoLiveStream},
    {MetadataMgrNotice_LiveStream1, MetadataMgr::LVSStateChangeHandler_1, kNoLiveStream},
    {MetadataMgrNotice_LiveStream2, MetadataMgr::LVSStateChangeHandler_2, kNoLiveStream},
    {MetadataMgrNotice_LiveStream3, MetadataMgr::LVSStateChangeHandler_3, kNoLiveStream},
    {MetadataMgrNotice_LiveStream4, MetadataMgr::LVSStateChangeHandler_4, kNoLiveStream},
    {MetadataMgrNotice_LiveStream5, MetadataMgr::LVSStateChangeHandler_5, kNoLiveStream},
};
// clang-format on

constexpr const FollowedItem* Find(unsigned int notificationId) {
  return std::find_if(std::begin(kItems), std::end(kItems), [notificationId](const FollowedItem& row) {
    return row.notificationId == notificationId;
  });
}

constexpr bool EveryItemHasARow() {
  return std::all_of(std::begin(servers::kAll), std::end(servers::kAll), [](const ServerRow& server) {
    return std::all_of(server.items.begin(), server.items.end(),
                       [](const ServedItem& item) { return Find(item.notificationId) != std::end(kItems); });
  });
}
static_assert(EveryItemHasARow());

}  // namespace

const FollowedItem& FollowedItemOf(unsigned int notificationId) {
  return *Find(notificationId);
}

// Clean-up has its own order; the state manager comes last.
std::span<const MetadataMgr::FollowedServer> MetadataMgr::FollowedServers() {
  // clang-format off
  static constexpr FollowedServer kRows[] = {
      {e_Process_ConfigMgr, &MetadataMgr::SubscribeToConfigMgr, "MetadataMgr - Failed to subscribe to ConfigMgr",
       "ConfigMgr", Client<&MetadataMgr::configClient>, 1},
      {e_Process_Fpga, &MetadataMgr::SubscribeToFpga, "MetadataMgr - Failed to subscribe to External Events",
       "FpgaHal", Client<&MetadataMgr::fpgaClient>, 2},
      {e_Process_GpsHal, &MetadataMgr::SubscribeToGpsHal, "MetadataMgr - Failed to subscribe to Gps Events",
       "GpsHal", Client<&MetadataMgr::gpsHalClient>, 3},
      {e_Process_StateMgr, &MetadataMgr::SubscribeToStateMgr,
       "MetadataMgr - Failed to subscribe to StateMgr Events", "StateMgr", Client<&MetadataMgr::stateMgrClient>, 10},
      {e_Process_RadarHal, &MetadataMgr::SubscribeToRadarHal,
       "MetadataMgr - Failed to subscribe to RadarHal Events", "RadarHal", Client<&MetadataMgr::radarHalClient>, 4},
      {e_Process_MicMgr, &MetadataMgr::SubscribeToMicMgr, "MetadataMgr - Failed to subscribe to MicMgr Events",
       "MicMgr", Client<&MetadataMgr::micClient>, 8},
      {e_Process_VideoMgr, &MetadataMgr::SubscribeToVideoMgr,
       "MetadataMgr - Failed to subscribe to VideoMgr Events", "VideoMgr", Client<&MetadataMgr::videoMgrClient>, 5},
      {e_Process_AccelHal, &MetadataMgr::SubscribeToAccelHal,
       "MetadataMgr - Failed to subscribe to Accelerometer Events", "AccelHal",
       Client<&MetadataMgr::accelHalClient>, 7},
      {e_Process_TempHal, &MetadataMgr::SubscribeToTempHal,
       "MetadataMgr::SubscribeToServers - Failed to subscribe to TempHal Events", "TempHal",
       Client<&MetadataMgr::tempHalClient>, 6},
      {e_Process_ExternalMgr, &MetadataMgr::SubscribeToExternalMgr,
       "MetadataMgr - Failed to subscribe to LVS state changes", "ExternalMgr",
       Client<&MetadataMgr::externalMgrClient>, 9},
  };
  // clang-format on
  static_assert(
      std::equal(
          std::begin(kRows), std::end(kRows), std::begin(servers::kAll), std::end(servers::kAll),
          [](const FollowedServer& row, const ServerRow& known) { return row.process == known.process; }),
      "each server has its row here, in the same order");
  static_assert(
      [] {
        for (unsigned int place = 1; place <= std::size(kRows); ++place) {
          if (std::none_of(std::begin(kRows), std::end(kRows),
                           [place](const FollowedServer& row) { return row.cleanUpPlace == place; }))
            return false;
        }
        return true;
      }(),
      "each server has a place of its own in the clean-up");
  return kRows;
}
