#include "Sources.h"

#include <algorithm>

#include "MetadataMgrMessages.h"
#include "clients/ExternalMgrApi.h"
#include "clients/ServerClients.h"
#include "clients/StateMgrClient.h"

namespace {

constexpr auto kItem = Source::kItem;
constexpr auto kMessage = Source::kMessage;

constexpr Source kSources[] = {
    {e_Process_StateMgr, kItem, StateMgrClient::kRecordStart, "record-start"},
    {e_Process_StateMgr, kItem, StateMgrClient::kRecordStop, "record-stop"},
    {e_Process_StateMgr, kItem, StateMgrClient::kEnterCovertMode, "covert-on"},
    {e_Process_StateMgr, kItem, StateMgrClient::kExitCovertMode, "covert-off"},
    {e_Process_ConfigMgr, kItem, ConfigClient::kVehicleInfo, "vehicle"},
    {e_Process_ConfigMgr, kItem, ConfigClient::kSystemInfo, "system"},
    {e_Process_ConfigMgr, kItem, ConfigClient::kDepartmentInfo, "department"},
    {e_Process_ConfigMgr, kItem, ConfigClient::kOfficer, "officer"},
    {e_Process_ConfigMgr, kItem, ConfigClient::kVideoRecordingSettings, "recording"},
    {e_Process_Fpga, kItem, FpgaClient::kExternalEvent, "input"},
    {e_Process_GpsHal, kItem, GpsHalClient::kStatus, "gps"},
    {e_Process_RadarHal, kItem, RadarHalClient::kRadar, "radar"},
    {e_Process_MicMgr, kItem, MicClient::kStatus, "mic"},
    {e_Process_MicMgr, kMessage, MetadataMgrMsg_MicState, "mic-message"},
    {e_Process_VideoMgr, kItem, VideoMgrClient::kCamera, "camera-entries"},
    {e_Process_VideoMgr, kItem, VideoMgrClient::kStreamQuality, "quality"},
    {e_Process_VideoMgr, kMessage, MetadataMgrMsg_VideoStreamState, "stream"},
    {e_Process_VideoMgr, kMessage, MetadataMgrMsg_CameraState, "camera"},
    {e_Process_AccelHal, kItem, AccelHalClient::kCrash, "crash"},
    {e_Process_TempHal, kItem, TempHalClient::kStatus, "temp"},
    {e_Process_ExternalMgr, kItem, ExternalMgrApi::kFirstStreamState, "live-0"},
    {e_Process_ExternalMgr, kItem, ExternalMgrApi::kFirstStreamState + 1, "live-1"},
    {e_Process_ExternalMgr, kItem, ExternalMgrApi::kFirstStreamState + 2, "live-2"},
    {e_Process_ExternalMgr, kItem, ExternalMgrApi::kFirstStreamState + 3, "live-3"},
    {e_Process_ExternalMgr, kItem, ExternalMgrApi::kFirstStreamState + 4, "live-4"},
    {e_Process_ExternalMgr, kItem, ExternalMgrApi::kFirstStreamState + 5, "live-5"},
};

}  // namespace

std::span<const Source> Sources() {
  return kSources;
}

const Source* FindSource(std::string_view name) {
  const auto* found = std::find_if(std::begin(kSources), std::end(kSources),
                                   [name](const Source& s) { return s.name == name; });
  return found == std::end(kSources) ? nullptr : found;
}
