#include "EventHandler.h"

#include "ManagerLog.h"

namespace {

constexpr const LogSource& log = kManagerLog;

}  // namespace

unsigned char* EnterHandler(LinxIpc& ipc, const HandlerShape& shape) {
  log({shape.traceMask}, shape.name);
  IpcMessage& message = ipc.CurrentMessage();
  if (message.DataPtr() == nullptr) {
    log(kLogMalformed, shape.nullPayloadName != nullptr ? shape.nullPayloadName : shape.name,
        ": error, DataPtr is null");
    return nullptr;
  }
  if (message.Size() < shape.payloadBytes) {
    log(kLogMalformed, shape.name, ": payload is too short");
    return nullptr;
  }
  return message.DataPtr();
}
