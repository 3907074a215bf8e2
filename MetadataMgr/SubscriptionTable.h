#pragma once

#include "MetadataMgr.h"
#include "system/Messages.h"

// Every subscription of this process: item, the message under which its notices arrive, their
// handler, and what is logged with mask 1 when the server refuses. No notification id may stand
// twice, here or among the ids of system/Messages.h.

struct SubscriptionRow {
  unsigned int itemId;
  unsigned int notificationId;
  LinxIpc::Handler handler;
  const char* failure;
};

// The state manager's client names its events by operations.
struct StateMgrSubscription {
  bool (StateMgrClient::*subscribe)(unsigned int notificationId, LinxIpc::Handler handler, void* context);
  unsigned int notificationId;
  LinxIpc::Handler handler;
  const char* failure;
};

namespace subscriptions {

// clang-format off
constexpr SubscriptionRow kVehicleInfo =
    {ConfigClient::kVehicleInfo, MetadataMgrNotice_VehicleInfo, MetadataMgr::VehicleInfoChangedHandler,
     "MetadataMgr - Failed to subscribe to VehicleInfo"};
constexpr SubscriptionRow kSystemInfo =
    {ConfigClient::kSystemInfo, MetadataMgrNotice_SystemInfo, MetadataMgr::SystemInfoChangedHandler,
     "MetadataMgr - Failed to subscribe to SystemInfo"};
constexpr SubscriptionRow kDepartmentInfo =
    {ConfigClient::kDepartmentInfo, MetadataMgrNotice_DepartmentInfo, MetadataMgr::DeptInfoChangedHandler,
     "MetadataMgr - Failed to subscribe to DepartmentInfo"};
constexpr SubscriptionRow kOfficer =
    {ConfigClient::kOfficer, MetadataMgrNotice_Officer, MetadataMgr::OfficerChangedHandler,
     "MetadataMgr - Failed to subscribe to Officer"};
constexpr SubscriptionRow kVideoRecordingSettings =
    {ConfigClient::kVideoRecordingSettings, MetadataMgrNotice_VideoRecordingSettings, MetadataMgr::VideoRecordingSettingsChangedHandler,
     "MetadataMgr - Failed to subscribe to VideoRecording"};
constexpr SubscriptionRow kExternalEvent =
    {FpgaClient::kExternalEvent, MetadataMgrNotice_ExternalEvent, MetadataMgr::ExternalInputEventHandler,
     "MetadataMgr - Failed to subscribe to External Events"};
constexpr SubscriptionRow kGpsStatus =
    {GpsHalClient::kStatus, MetadataMgrNotice_GpsStatus, MetadataMgr::GpsStatusEventHandler,
     "MetadataMgr - Failed to subscribe to GpsStatus Events"};
constexpr StateMgrSubscription kStateMgr[] = {
    {&StateMgrClient::SubscribeForRecordStart, MetadataMgrNotice_RecordStart, MetadataMgr::RecordStartHandler,
     "MetadataMgr - Failed to subscribe to StateMgr Record Start Event"},
    {&StateMgrClient::SubscribeForRecordStop, MetadataMgrNotice_RecordStop, MetadataMgr::RecordStopHandler,
     "MetadataMgr - Failed to subscribe to StateMgr Record Stop Event"},
    {&StateMgrClient::SubscribeForEnterCovertMode, MetadataMgrNotice_EnterCovertMode, MetadataMgr::EnterCovertModeHandler,
     "MetadataMgr - Failed to subscribe to StateMgr Enter Covert Mode Event"},
    {&StateMgrClient::SubscribeForExitCovertMode, MetadataMgrNotice_ExitCovertMode, MetadataMgr::ExitCovertModeHandler,
     "MetadataMgr - Failed to subscribe to StateMgr Exit Cover Mode Event"},
};
constexpr SubscriptionRow kRadar =
    {RadarHalClient::kRadar, MetadataMgrNotice_Radar, MetadataMgr::RadarEventHandler,
     "MetadataMgr - Failed to subscribe to RadarHal Events"};
constexpr SubscriptionRow kMicStatus =
    {MicClient::kStatus, MetadataMgrNotice_MicStatus, MetadataMgr::MicMgrStatusHandler,
     "Failed to subscribe to Mic Mgr Events"};
constexpr SubscriptionRow kCrash =  // complains in the microphones' name
    {AccelHalClient::kCrash, MetadataMgrNotice_Crash, MetadataMgr::CrashDetectHandler,
     "Failed to subscribe to Mic Mgr Events"};
constexpr SubscriptionRow kCameras =
    {VideoMgrClient::kCamera, MetadataMgrNotice_Cameras, MetadataMgr::VideoMgrCameraItemHandler,
     "Failed to subscribe to Video Mgr Events"};
constexpr SubscriptionRow kStreamQuality =
    {VideoMgrClient::kStreamQuality, MetadataMgrNotice_StreamQuality, MetadataMgr::VideoMgrStreamQualityItemHandler,
     "Failed to subscribe to Video Mgr Events"};
constexpr SubscriptionRow kTemperatures =
    {TempHalClient::kStatus, MetadataMgrNotice_Temperatures, MetadataMgr::TempChangeHandler,
     "Failed to subscribe to TempHal Events"};

constexpr char kLiveStreamsFailure[] = "Failed to subscribe to ExternalMgr LVS state changes";
constexpr unsigned int kFirst = ExternalMgrApi::kFirstStreamState;
constexpr SubscriptionRow kLiveStreams[] = {
    {kFirst, MetadataMgrNotice_LiveStream0, MetadataMgr::LVSStateChangeHandler_0, kLiveStreamsFailure},
    {kFirst + 1, MetadataMgrNotice_LiveStream0 + 1, MetadataMgr::LVSStateChangeHandler_1, kLiveStreamsFailure},
    {kFirst + 2, MetadataMgrNotice_LiveStream0 + 2, MetadataMgr::LVSStateChangeHandler_2, kLiveStreamsFailure},
    {kFirst + 3, MetadataMgrNotice_LiveStream0 + 3, MetadataMgr::LVSStateChangeHandler_3, kLiveStreamsFailure},
    {kFirst + 4, MetadataMgrNotice_LiveStream0 + 4, MetadataMgr::LVSStateChangeHandler_4, kLiveStreamsFailure},
    {kFirst + 5, MetadataMgrNotice_LiveStream0 + 5, MetadataMgr::LVSStateChangeHandler_5, kLiveStreamsFailure},
};
// clang-format on

}  // namespace subscriptions
