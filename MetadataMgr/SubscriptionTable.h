#pragma once

#include "MetadataMgr.h"

// Every subscription of this process: item, the message under which its notices arrive, their
// handler, and what is logged with mask 1 when the server refuses. No notification id may stand
// twice, here or among the ids of MessageIds.h.

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
    {ConfigClient::kVehicleInfo, 13492, MetadataMgr::VehicleInfoChangedHandler,
     "MetadataMgr - Failed to subscribe to VehicleInfo"};
constexpr SubscriptionRow kSystemInfo =
    {ConfigClient::kSystemInfo, 13493, MetadataMgr::SystemInfoChangedHandler,
     "MetadataMgr - Failed to subscribe to SystemInfo"};
constexpr SubscriptionRow kDepartmentInfo =
    {ConfigClient::kDepartmentInfo, 13494, MetadataMgr::DeptInfoChangedHandler,
     "MetadataMgr - Failed to subscribe to DepartmentInfo"};
constexpr SubscriptionRow kOfficer =
    {ConfigClient::kOfficer, 13495, MetadataMgr::OfficerChangedHandler,
     "MetadataMgr - Failed to subscribe to Officer"};
constexpr SubscriptionRow kVideoRecordingSettings =
    {ConfigClient::kVideoRecordingSettings, 13496, MetadataMgr::VideoRecordingSettingsChangedHandler,
     "MetadataMgr - Failed to subscribe to VideoRecording"};
constexpr SubscriptionRow kExternalEvent =
    {FpgaClient::kExternalEvent, 13497, MetadataMgr::ExternalInputEventHandler,
     "MetadataMgr - Failed to subscribe to External Events"};
constexpr SubscriptionRow kGpsStatus =
    {GpsHalClient::kStatus, 13504, MetadataMgr::GpsStatusEventHandler,
     "MetadataMgr - Failed to subscribe to GpsStatus Events"};
constexpr StateMgrSubscription kStateMgr[] = {
    {&StateMgrClient::SubscribeForRecordStart, 13505, MetadataMgr::RecordStartHandler,
     "MetadataMgr - Failed to subscribe to StateMgr Record Start Event"},
    {&StateMgrClient::SubscribeForRecordStop, 13506, MetadataMgr::RecordStopHandler,
     "MetadataMgr - Failed to subscribe to StateMgr Record Stop Event"},
    {&StateMgrClient::SubscribeForEnterCovertMode, 13507, MetadataMgr::EnterCovertModeHandler,
     "MetadataMgr - Failed to subscribe to StateMgr Enter Covert Mode Event"},
    {&StateMgrClient::SubscribeForExitCovertMode, 13508, MetadataMgr::ExitCovertModeHandler,
     "MetadataMgr - Failed to subscribe to StateMgr Exit Cover Mode Event"},
};
constexpr SubscriptionRow kRadar =
    {RadarHalClient::kRadar, 13510, MetadataMgr::RadarEventHandler,
     "MetadataMgr - Failed to subscribe to RadarHal Events"};
constexpr SubscriptionRow kMicStatus =
    {MicClient::kStatus, 13511, MetadataMgr::MicMgrStatusHandler,
     "Failed to subscribe to Mic Mgr Events"};
constexpr SubscriptionRow kCrash =  // complains in the microphones' name
    {AccelHalClient::kCrash, 13512, MetadataMgr::CrashDetectHandler,
     "Failed to subscribe to Mic Mgr Events"};
constexpr SubscriptionRow kCameras =
    {VideoMgrClient::kCamera, 13513, MetadataMgr::VideoMgrCameraItemHandler,
     "Failed to subscribe to Video Mgr Events"};
constexpr SubscriptionRow kStreamQuality =
    {VideoMgrClient::kStreamQuality, 13514, MetadataMgr::VideoMgrStreamQualityItemHandler,
     "Failed to subscribe to Video Mgr Events"};
constexpr SubscriptionRow kTemperatures =
    {TempHalClient::kStatus, 13515, MetadataMgr::TempChangeHandler,
     "Failed to subscribe to TempHal Events"};

constexpr char kLiveStreamsFailure[] = "Failed to subscribe to ExternalMgr LVS state changes";
constexpr unsigned int kFirst = ExternalMgrApi::kFirstStreamState;
constexpr SubscriptionRow kLiveStreams[] = {
    {kFirst, 18952, MetadataMgr::LVSStateChangeHandler_0, kLiveStreamsFailure},
    {kFirst + 1, 18953, MetadataMgr::LVSStateChangeHandler_1, kLiveStreamsFailure},
    {kFirst + 2, 18954, MetadataMgr::LVSStateChangeHandler_2, kLiveStreamsFailure},
    {kFirst + 3, 18955, MetadataMgr::LVSStateChangeHandler_3, kLiveStreamsFailure},
    {kFirst + 4, 18956, MetadataMgr::LVSStateChangeHandler_4, kLiveStreamsFailure},
    {kFirst + 5, 18957, MetadataMgr::LVSStateChangeHandler_5, kLiveStreamsFailure},
};
// clang-format on

}  // namespace subscriptions
