#include <arpa/inet.h>

#include "ItemHandler.h"
#include "ManagerLog.h"
#include "StreamingLvsStateItem.h"
#include "Subscribing.h"

namespace {

constexpr int kExternalMgrTimeoutMs = 2000;

}  // namespace

// Ignores the values at subscription: records only changes of live streaming.
bool MetadataMgr::SubscribeToExternalMgr(LinxIpc& ipc) {
  subscribing::Trace(e_Process_ExternalMgr);
  const std::string& name = LinxServerNameList::Instance().Name(e_Process_ExternalMgr);
  ExternalMgrApi::StreamingLvsStateItem item;
  return subscribing::Fetch<e_Process_ExternalMgr>(
      subscribing::MakeOnce(externalMgrClient, ipc, name, kExternalMgrTimeoutMs), this,
      {&item, &item, &item, &item, &item, &item});
}

// The item has no tick, so reports it with the store's current tick.
void MetadataMgr::LVSStateChangeHandler(LinxIpc* ipc, void* context, int stream) {
  HandlerShape shape{"LVSStateChangeHandler"};
  shape.traceMask = kLogInfo;
  HandlePayloadItem<ExternalMgrApi::StreamingLvsStateItem>(
      ipc, context, shape, [stream](MetadataMgr& manager, ExternalMgrApi::StreamingLvsStateItem& item) {
        if (ExternalMgrApi::InLvsForceHqStreaming()) item.highQuality.Value(true);
        manager.ReportLVSStateChange(item, true, stream, manager.GetLastSystemTick());
      });
}

// The store's parameters are high quality, then enabled; the item has the reverse order.
void MetadataMgr::ReportLVSStateChange(const ExternalMgrApi::StreamingLvsStateItem& item, bool report,
                                       int stream, unsigned int tick) {
  const std::string& address = item.address.Value();
  kManagerLog(kLogShutdown, "Rcvd ext streaming state change, stream ", stream, "  en:", item.enabled.Value(),
              "  HiQual:", item.highQuality.Value(), "  Cam:", unsigned{item.camera.Value()},
              "  Ip: ", address, "  Port:", unsigned{item.port.Value()});
  dataStore.ReportLvsState(static_cast<e_VideoStream>(stream),
                           static_cast<unsigned char>(item.camera.Value()), item.highQuality.Value(),
                           item.enabled.Value(), inet_addr(address.c_str()), item.port.Value(), report, tick);
}
