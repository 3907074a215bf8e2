#include "EventHandler.h"
#include "ManagerLog.h"
#include "MetadataMgr.h"
#include "system/BigEndian.h"

namespace {

constexpr const LogSource& log = kManagerLog;
constexpr unsigned int kLastNumber = 3;  // of streams, cameras and microphones

}  // namespace

void MetadataMgr::ReportVideoStreamState(unsigned int stream, e_StreamState state, unsigned int tick,
                                         bool report) {
  if (stream > kLastNumber) {
    log(kLogError, "VideoStreamStateChanged: Invalid streamNo ", stream);
    return;
  }
  dataStore_.ReportVideoStreamState(static_cast<e_VideoStream>(stream), state, report, tick);
}

void MetadataMgr::ReportCameraState(unsigned int camera, e_CameraState state, unsigned int tick,
                                    bool report) {
  if (camera > kLastNumber) {
    log(kLogError, "CameraStateChanged: Invalid camera no ", camera);
    return;
  }
  dataStore_.ReportCameraState(static_cast<e_CameraPort>(camera), state, report, tick);
}

void MetadataMgr::ReportMicState(e_MicrophonePosition mic, bool present, bool active, unsigned int tick,
                                 bool report) {
  dataStore_.ReportMicPresent(mic, present, report, tick);
  dataStore_.ReportMicState(mic, active, report, tick);
}

void MetadataMgr::VideoStreamStateChangeHandler(LinxIpc* ipc, void* context) {
  const unsigned char* payload = EnterHandler(*ipc, {"VideoStreamStateChangeHandler", 12});
  if (payload == nullptr) return;
  ManagerOf(context).ReportVideoStreamState(
      GetU32(payload + 4), static_cast<e_StreamState>(GetU32(payload + 8)), GetU32(payload), true);
}

// The camera handlers share the name under which they miss a payload; it is none of theirs.
void MetadataMgr::CliCameraStateChangedHandler(LinxIpc* ipc, void* context) {
  HandlerShape shape{"CliCameraStateChangedHandler", 12};
  shape.nullPayloadName = "CameraStateChangedHandler";
  const unsigned char* payload = EnterHandler(*ipc, shape);
  if (payload == nullptr) return;
  ManagerOf(context).ReportCameraState(GetU32(payload + 4), static_cast<e_CameraState>(GetU32(payload + 8)),
                                       GetU32(payload), true);
}

void MetadataMgr::MicStateChangedHandler(LinxIpc* ipc, void* context) {
  const unsigned char* payload = EnterHandler(*ipc, {"MicStateChangedHandler", 10});
  if (payload == nullptr) return;
  const unsigned int mic = GetU32(payload + 4);
  if (mic > kLastNumber) {
    log(kLogError, "ReportMicState: Invalid mic no ", mic);
    return;
  }
  ManagerOf(context).ReportMicState(static_cast<e_MicrophonePosition>(mic), payload[8] != 0, payload[9] != 0,
                                    GetU32(payload), true);
}
