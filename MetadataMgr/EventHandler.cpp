#include "EventHandler.h"

#include "ManagerLog.h"

unsigned char* EnterHandler(LinxIpc& ipc, const HandlerShape& shape) {
  kManagerLog({shape.traceMask}, shape.name);
  IpcMessage& message = ipc.CurrentMessage();
  if (message.DataPtr() == nullptr) {
    kManagerLog(kLogMalformed, shape.nullPayloadName != nullptr ? shape.nullPayloadName : shape.name,
                ": error, DataPtr is null");
    return nullptr;
  }
  if (message.Size() < shape.payloadBytes) {
    kManagerLog(kLogMalformed, shape.name, ": payload is too short");
    return nullptr;
  }
  return message.DataPtr();
}
