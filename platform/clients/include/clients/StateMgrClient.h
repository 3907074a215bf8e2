#pragma once

#include "clients/ServerClients.h"

// Client of the state manager's events. Each event is a separate item: a SystickItem with the tick of the
// event. Ignores the value at subscription.
class StateMgrClient : public ServerClient<e_Process_StateMgr> {
 public:
  static constexpr unsigned int kRecordStart = servers::ItemId(MetadataMgrNotice_RecordStart);
  static constexpr unsigned int kRecordStop = servers::ItemId(MetadataMgrNotice_RecordStop);
  static constexpr unsigned int kEnterCovertMode = servers::ItemId(MetadataMgrNotice_EnterCovertMode);
  static constexpr unsigned int kExitCovertMode = servers::ItemId(MetadataMgrNotice_ExitCovertMode);

  using ServerClient::ServerClient;

  // Each subscribes to its event under `notificationId`. True when the state manager accepts.
  bool SubscribeForRecordStart(unsigned int notificationId, LinxIpc::Handler handler, void* context);
  bool SubscribeForRecordStop(unsigned int notificationId, LinxIpc::Handler handler, void* context);
  bool SubscribeForEnterCovertMode(unsigned int notificationId, LinxIpc::Handler handler, void* context);
  bool SubscribeForExitCovertMode(unsigned int notificationId, LinxIpc::Handler handler, void* context);

 protected:
  bool UsesValue() const override { return false; }

 private:
  bool SubscribeFor(unsigned int event, unsigned int notificationId, LinxIpc::Handler handler, void* context);
};
