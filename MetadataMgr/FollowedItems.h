#pragma once

#include <algorithm>
#include <iterator>

#include "MetadataMgr.h"
#include "system/Servers.h"

// What the manager does with each item of the servers: the handler of its notices, and the line that is
// logged with mask 1 when the server refuses the subscription.
struct FollowedItem {
  unsigned int notificationId;
  LinxIpc::Handler handler;
  const char* failure;
};

namespace followed {

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
     "Failed to subscribe to Mic Mgr Events"},  // the text of the microphones
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

// The row of the item with this notification id.
constexpr const FollowedItem& Row(unsigned int notificationId) {
  return *std::find_if(std::begin(kItems), std::end(kItems), [notificationId](const FollowedItem& row) {
    return row.notificationId == notificationId;
  });
}

constexpr bool EveryItemHasARow() {
  return std::all_of(std::begin(servers::kAll), std::end(servers::kAll), [](const ServerRow& server) {
    return std::all_of(server.items.begin(), server.items.end(),
                       [](const ServedItem& item) { return &Row(item.notificationId) != std::end(kItems); });
  });
}
static_assert(EveryItemHasARow());

}  // namespace followed
