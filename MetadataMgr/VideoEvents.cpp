#include "ItemHandler.h"
#include "ManagerLog.h"
#include "MetadataMgr.h"
#include "Subscribing.h"
#include "items/VideoMgrCameraItem.h"
#include "items/VideoMgrStreamQualityItem.h"
#include "system/BigEndian.h"

namespace {

constexpr unsigned int kLastNumber = 3;  // last stream and camera

// The states of a camera that count as active.
constexpr e_CameraState kCameraActive1{1};
constexpr e_CameraState kCameraActive2{2};

// Three handlers share one name in the log line for a missing payload.
HandlerShape CameraShape(const char* name, unsigned int payloadBytes) {
  HandlerShape shape{name, payloadBytes};
  shape.nullPayloadName = "CameraStateChangedHandler";
  return shape;
}

}  // namespace

bool MetadataMgr::SubscribeToVideoMgr(LinxIpc& ipc) {
  subscribing::Trace(e_Process_VideoMgr);
  if (subscribing::Ignored(e_Process_VideoMgr)) return true;
  VideoMgrCameraItem cameras;
  VideoMgrStreamQualityItem quality;
  if (!subscribing::Fetch<e_Process_VideoMgr>(subscribing::MakeOnce(videoMgrClient, ipc), this,
                                              {&cameras, &quality}))
    return false;
  ReportCameraItem(cameras, false);
  ReportStreamQualityItem(quality, false);
  return true;
}

void MetadataMgr::ReportVideoStreamState(unsigned int stream, e_StreamState state, unsigned int tick,
                                         bool report) {
  if (stream > kLastNumber) {
    kManagerLog(kLogError, "VideoStreamStateChanged: Invalid streamNo ", stream);
    return;
  }
  dataStore.ReportVideoStreamState(static_cast<e_VideoStream>(stream), state, report, tick);
}

void MetadataMgr::ReportCameraState(unsigned int camera, e_CameraState state, unsigned int tick,
                                    bool report) {
  if (camera > kLastNumber) {
    kManagerLog(kLogError, "CameraStateChanged: Invalid camera no ", camera);
    return;
  }
  dataStore.ReportCameraState(static_cast<e_CameraPort>(camera), state, report, tick);
}

// Port 3 has the state of the last active entry of entries 5 to 8, or else of entry 3. Ignores entry 4.
void MetadataMgr::ReportCameraItem(VideoMgrCameraItem& item, bool report) {
  for (unsigned int port = 0; port < 3; ++port) ReportCameraState(port, item.states[port], item.tick, report);
  e_CameraState aggregate = item.states[3];
  for (unsigned int entry = 5; entry <= 8; ++entry) {
    const e_CameraState state = item.states[entry];
    if (state == kCameraActive1 || state == kCameraActive2) aggregate = state;
  }
  ReportCameraState(3, aggregate, item.tick, report);
}

void MetadataMgr::ReportStreamQualityItem(VideoMgrStreamQualityItem& item, bool report) {
  dataStore.ReportStreamQualityItem(item, report);
}

void MetadataMgr::VideoStreamStateChangeHandler(LinxIpc* ipc, void* context) {
  const unsigned char* payload = EnterHandler(*ipc, {"VideoStreamStateChangeHandler", 12});
  if (payload == nullptr) return;
  ManagerOf(context).ReportVideoStreamState(
      GetU32(payload + 4), static_cast<e_StreamState>(GetU32(payload + 8)), GetU32(payload), true);
}

void MetadataMgr::CliCameraStateChangedHandler(LinxIpc* ipc, void* context) {
  const unsigned char* payload = EnterHandler(*ipc, CameraShape("CliCameraStateChangedHandler", 12));
  if (payload == nullptr) return;
  ManagerOf(context).ReportCameraState(GetU32(payload + 4), static_cast<e_CameraState>(GetU32(payload + 8)),
                                       GetU32(payload), true);
}

void MetadataMgr::VideoMgrCameraItemHandler(LinxIpc* ipc, void* context) {
  HandlePayloadItem<VideoMgrCameraItem>(
      ipc, context, CameraShape("VideoMgrCameraItemHandler", 0),
      [](MetadataMgr& manager, VideoMgrCameraItem& item) { manager.ReportCameraItem(item, true); });
}

void MetadataMgr::VideoMgrStreamQualityItemHandler(LinxIpc* ipc, void* context) {
  HandlePayloadItem<VideoMgrStreamQualityItem>(ipc, context,
                                               CameraShape("VideoMgrStreamQualityItemHandler", 0),
                                               [](MetadataMgr& manager, VideoMgrStreamQualityItem& item) {
                                                 manager.ReportStreamQualityItem(item, true);
                                               });
}
