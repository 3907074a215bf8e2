#include "ControlRequests.h"

#include <string>

#include "ManagerLog.h"
#include "system/Messages.h"

void AnswerSender(LinxIpc& ipc, unsigned int type, unsigned int size, char* payload,
                  const AnswerTexts& texts) {
  IpcMessage& message = ipc.CurrentMessage();
  const std::string sender = message.GetSender();
  if (message.Allocate(type, size, payload) != 0) {
    kManagerLog(kLogError, texts.cannotAllocate);
    return;
  }
  if (ipc.Notify(sender, message, true) != 0) kManagerLog({texts.cannotSendMask}, texts.cannotSend);
}

void PingHandler(LinxIpc* ipc, void* /*context*/) {
  kManagerLog(kLogTrace, "Ping Handler");
  AnswerSender(*ipc, MetadataMgrMsg_PingResponse, 0, nullptr,
               {"Error Allocating Message", "Error Sending Response", kLogError});
}
