#include "Endpoint.h"
#include "ipc/LinxServerNameList.h"
#include "system/Servers.h"

// Calling handlers.

namespace ipc {

void Endpoint::Dispatch() {
  const unsigned int type = current_.MsgType();
  if (type == LinxIpc::kShutdownNotice) {
    DispatchShutdown();
  } else if (type == LinxIpc::kProcessDiedNotice) {
    DispatchProcessDied();
  } else if (handlers_.Call(*owner_) == HandlerTable::Result::kNoHandler) {
    unhandled_("No handler for message ", type, " from ", current_.GetSender());
  }
}

// The handler may overwrite the current message. Restores the notice for the caller of Receive.
void Endpoint::DispatchShutdown() {
  shutdownSeen_ = true;
  const Registration registration = shutdown_;
  if (registration.handler != nullptr) registration.handler(owner_, registration.context);
  (void)current_.Allocate(LinxIpc::kShutdownNotice, 0, nullptr);
}

void Endpoint::DispatchProcessDied() {
  if (current_.GetSender() != LinxServerNameList::Instance().Name(e_Process_StateMgr)) {
    unhandled_("Dropped a process-died notice from ", current_.GetSender());
    return;
  }
  const Registration registration = processDied_;
  if (registration.handler != nullptr) registration.handler(owner_, registration.context);
}

void Endpoint::SetShutdown(Registration registration) {
  shutdown_ = registration;
  if (registration.handler != nullptr && !signals_.Catch().Failed()) connections_.WatchSignals(signals_.Fd());
}

}  // namespace ipc
