#include "EventHandler.h"
#include "ManagerLog.h"
#include "MetadataMgr.h"
#include "items/SystickItem.h"
#include "system/BigEndian.h"

namespace {

constexpr const LogSource& log = kManagerLog;

unsigned int DecodeTick(unsigned char* payload) {
  SystickItem item;
  item.Decode(payload);
  return item.Tick();
}

// The tag of the pair for a signal that is on or off; `off` is the higher one.
e_Tag TagOf(e_Tag off, bool on) {
  return static_cast<e_Tag>(off - (on ? 1U : 0U));
}

}  // namespace

void MetadataMgr::ReportRecordingEvent(bool recordStart, unsigned int tick, bool report) {
  log(kLogInfo, "ReportRecordingEvent - recordStart = ", recordStart);
  dataStore_.ReportStateData(TagOf(e_Tag_RecordingStopped, recordStart), report, tick);
}

void MetadataMgr::ReportCovertModeEvent(bool enabled, unsigned int tick, bool report) {
  log(kLogInfo, "ReportCovertModeEvent - enabled = ", enabled);
  dataStore_.ReportStateData(TagOf(e_Tag_CovertLeft, enabled), report, tick);
}

void MetadataMgr::ReportBookmark(unsigned int tick) {
  log(kLogInfo, "ReportBookmark");
  dataStore_.ReportBookmark(tick);
  server_->Bookmark();
}

void MetadataMgr::RecordStartHandler(LinxIpc* ipc, void* context) {
  unsigned char* payload = EnterHandler(*ipc, {"RecordStartHandler", 0});
  if (payload == nullptr) return;
  const unsigned int tick = DecodeTick(payload);
  if (tick != 0) ManagerOf(context).ReportRecordingEvent(true, tick, true);
}

void MetadataMgr::RecordStopHandler(LinxIpc* ipc, void* context) {
  unsigned char* payload = EnterHandler(*ipc, {"RecordStopHandler", 0});
  if (payload != nullptr) ManagerOf(context).ReportRecordingEvent(false, DecodeTick(payload), true);
}

void MetadataMgr::EnterCovertModeHandler(LinxIpc* ipc, void* context) {
  unsigned char* payload = EnterHandler(*ipc, {"EnterCovertModeHandler", 0});
  if (payload != nullptr) ManagerOf(context).ReportCovertModeEvent(true, DecodeTick(payload), true);
}

void MetadataMgr::ExitCovertModeHandler(LinxIpc* ipc, void* context) {
  unsigned char* payload = EnterHandler(*ipc, {"ExitCovertModeHandler", 0});
  if (payload != nullptr) ManagerOf(context).ReportCovertModeEvent(false, DecodeTick(payload), true);
}

void MetadataMgr::RecordStartStopHandler(LinxIpc* ipc, void* context) {
  const unsigned char* payload = EnterHandler(*ipc, {"RecordStartStopHandler", 5});
  if (payload != nullptr) ManagerOf(context).ReportRecordingEvent(payload[4] != 0, GetU32(payload), true);
}

void MetadataMgr::BookmarkHandler(LinxIpc* ipc, void* context) {
  const unsigned char* payload = EnterHandler(*ipc, {"BookmarkHandler", 4});
  if (payload != nullptr) ManagerOf(context).ReportBookmark(GetU32(payload));
}
