#include "clients/StateMgrClient.h"

#include "items/SystickItem.h"

bool StateMgrClient::SubscribeForRecordStart(unsigned int notificationId, LinxIpc::Handler handler,
                                             void* context) {
  return SubscribeFor(kRecordStart, notificationId, handler, context);
}

bool StateMgrClient::SubscribeForRecordStop(unsigned int notificationId, LinxIpc::Handler handler,
                                            void* context) {
  return SubscribeFor(kRecordStop, notificationId, handler, context);
}

bool StateMgrClient::SubscribeForEnterCovertMode(unsigned int notificationId, LinxIpc::Handler handler,
                                                 void* context) {
  return SubscribeFor(kEnterCovertMode, notificationId, handler, context);
}

bool StateMgrClient::SubscribeForExitCovertMode(unsigned int notificationId, LinxIpc::Handler handler,
                                                void* context) {
  return SubscribeFor(kExitCovertMode, notificationId, handler, context);
}

bool StateMgrClient::SubscribeFor(unsigned int event, unsigned int notificationId, LinxIpc::Handler handler,
                                  void* context) {
  SystickItem last;
  return Subscribe(event, notificationId, last, handler, context) == 0;
}
