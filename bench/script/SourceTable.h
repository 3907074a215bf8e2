#pragma once

#include "Sources.h"
#include "clients/ExternalMgrApi.h"
#include "clients/ServerClients.h"
#include "clients/StateMgrClient.h"
#include "system/Messages.h"

namespace bench {

// All sources. A further one is a row here, and one each of Publications.cpp, Changes.cpp and Verbs.cpp.
inline constexpr Source kSources[] = {
    {e_Process_StateMgr, Source::kItem, StateMgrClient::kRecordStart, "record-start"},
    {e_Process_StateMgr, Source::kItem, StateMgrClient::kRecordStop, "record-stop"},
    {e_Process_StateMgr, Source::kItem, StateMgrClient::kEnterCovertMode, "covert-on"},
    {e_Process_StateMgr, Source::kItem, StateMgrClient::kExitCovertMode, "covert-off"},
    {e_Process_ConfigMgr, Source::kItem, ConfigClient::kVehicleInfo, "vehicle"},
    {e_Process_ConfigMgr, Source::kItem, ConfigClient::kSystemInfo, "system"},
    {e_Process_ConfigMgr, Source::kItem, ConfigClient::kDepartmentInfo, "department"},
    {e_Process_ConfigMgr, Source::kItem, ConfigClient::kOfficer, "officer"},
    {e_Process_ConfigMgr, Source::kItem, ConfigClient::kVideoRecordingSettings, "recording"},
    {e_Process_Fpga, Source::kItem, FpgaClient::kExternalEvent, "input"},
    {e_Process_GpsHal, Source::kItem, GpsHalClient::kStatus, "gps"},
    {e_Process_RadarHal, Source::kItem, RadarHalClient::kRadar, "radar"},
    {e_Process_MicMgr, Source::kItem, MicClient::kStatus, "mic"},
    {e_Process_MicMgr, Source::kMessage, MetadataMgrMsg_MicState, "mic-message"},
    {e_Process_VideoMgr, Source::kItem, VideoMgrClient::kCamera, "camera-entries"},
    {e_Process_VideoMgr, Source::kItem, VideoMgrClient::kStreamQuality, "quality"},
    {e_Process_VideoMgr, Source::kMessage, MetadataMgrMsg_VideoStreamState, "stream"},
    {e_Process_VideoMgr, Source::kMessage, MetadataMgrMsg_CameraState, "camera"},
    {e_Process_AccelHal, Source::kItem, AccelHalClient::kCrash, "crash"},
    {e_Process_TempHal, Source::kItem, TempHalClient::kStatus, "temp"},
    {e_Process_ExternalMgr, Source::kItem, ExternalMgrApi::kFirstStreamState, "live-0"},
    {e_Process_ExternalMgr, Source::kItem, ExternalMgrApi::kFirstStreamState + 1, "live-1"},
    {e_Process_ExternalMgr, Source::kItem, ExternalMgrApi::kFirstStreamState + 2, "live-2"},
    {e_Process_ExternalMgr, Source::kItem, ExternalMgrApi::kFirstStreamState + 3, "live-3"},
    {e_Process_ExternalMgr, Source::kItem, ExternalMgrApi::kFirstStreamState + 4, "live-4"},
    {e_Process_ExternalMgr, Source::kItem, ExternalMgrApi::kFirstStreamState + 5, "live-5"},
};

// The row of that name. An unknown name does not compile.
consteval const Source* SourceNamed(std::string_view name) {
  const Source* source = kSources;
  while (source->name != name) ++source;
  return source;
}

}  // namespace bench
