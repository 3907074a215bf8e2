#include "ItemHandler.h"
#include "ManagerLog.h"
#include "Subscribing.h"
#include "items/SystickItem.h"
#include "system/BigEndian.h"

namespace {

// The tag of a signal that is on or off; `off` is one higher than the tag for on.
e_Tag TagOf(e_Tag off, bool on) {
  return static_cast<e_Tag>(off - (on ? 1U : 0U));
}

}  // namespace

// The client has one subscribe operation for each event, here in the order of the items.
bool MetadataMgr::SubscribeToStateMgr(LinxIpc& ipc) {
  using Operation = bool (StateMgrClient::*)(unsigned int, LinxIpc::Handler, void*);
  static constexpr Operation kOperations[] = {
      &StateMgrClient::SubscribeForRecordStart, &StateMgrClient::SubscribeForRecordStop,
      &StateMgrClient::SubscribeForEnterCovertMode, &StateMgrClient::SubscribeForExitCovertMode};
  static_assert(std::size(kOperations) == std::size(servers::kStateMgr));
  subscribing::Trace(e_Process_StateMgr);
  if (subscribing::IsOff(servers::Of(e_Process_StateMgr))) return true;
  StateMgrClient& client = subscribing::MakeOnce(stateMgrClient, ipc, subscribing::kPatientTimeoutMs);
  const ServedItem* item = std::begin(servers::kStateMgr);
  for (const Operation operation : kOperations) {
    const FollowedItem& row = FollowedItemOf((item++)->notificationId);
    if ((client.*operation)(row.notificationId, row.handler, this)) continue;
    kManagerLog(kLogError, row.failure);
    return false;
  }
  return true;
}

void MetadataMgr::ReportRecordingEvent(bool recordStart, unsigned int tick, bool report) {
  kManagerLog(kLogInfo, "ReportRecordingEvent - recordStart = ", recordStart);
  dataStore.ReportStateData(TagOf(e_Tag_RecordingStopped, recordStart), report, tick);
}

void MetadataMgr::ReportCovertModeEvent(bool enabled, unsigned int tick, bool report) {
  kManagerLog(kLogInfo, "ReportCovertModeEvent - enabled = ", enabled);
  dataStore.ReportStateData(TagOf(e_Tag_CovertLeft, enabled), report, tick);
}

void MetadataMgr::ReportBookmark(unsigned int tick) {
  kManagerLog(kLogInfo, "ReportBookmark");
  dataStore.ReportBookmark(tick);
  server->Bookmark();
}

// Ignores tick 0; no other handler does.
void MetadataMgr::RecordStartHandler(LinxIpc* ipc, void* context) {
  HandlePayloadItem<SystickItem>(ipc, context, {"RecordStartHandler"},
                                 [](MetadataMgr& manager, const SystickItem& item) {
                                   if (item.Tick() == 0) return;
                                   manager.ReportRecordingEvent(true, item.Tick(), true);
                                 });
}

void MetadataMgr::RecordStopHandler(LinxIpc* ipc, void* context) {
  HandlePayloadItem<SystickItem>(ipc, context, {"RecordStopHandler"},
                                 [](MetadataMgr& manager, const SystickItem& item) {
                                   manager.ReportRecordingEvent(false, item.Tick(), true);
                                 });
}

void MetadataMgr::EnterCovertModeHandler(LinxIpc* ipc, void* context) {
  HandlePayloadItem<SystickItem>(ipc, context, {"EnterCovertModeHandler"},
                                 [](MetadataMgr& manager, const SystickItem& item) {
                                   manager.ReportCovertModeEvent(true, item.Tick(), true);
                                 });
}

void MetadataMgr::ExitCovertModeHandler(LinxIpc* ipc, void* context) {
  HandlePayloadItem<SystickItem>(ipc, context, {"ExitCovertModeHandler"},
                                 [](MetadataMgr& manager, const SystickItem& item) {
                                   manager.ReportCovertModeEvent(false, item.Tick(), true);
                                 });
}

void MetadataMgr::RecordStartStopHandler(LinxIpc* ipc, void* context) {
  const unsigned char* payload = EnterHandler(*ipc, {"RecordStartStopHandler", 5});
  if (payload != nullptr) ManagerOf(context).ReportRecordingEvent(payload[4] != 0, GetU32(payload), true);
}

void MetadataMgr::BookmarkHandler(LinxIpc* ipc, void* context) {
  const unsigned char* payload = EnterHandler(*ipc, {"BookmarkHandler", 4});
  if (payload != nullptr) ManagerOf(context).ReportBookmark(GetU32(payload));
}
