#include "HandlerTable.h"

#include <utility>

namespace ipc {

void HandlerTable::Set(unsigned int type, Registration registration, Admits admits) {
  rows_[type] = {registration, std::move(admits)};
}

HandlerTable::Result HandlerTable::Call(LinxIpc& ipc) const {
  IpcMessage& message = ipc.CurrentMessage();
  const auto found = rows_.find(message.MsgType());
  if (found == rows_.end()) return Result::kNoHandler;
  const Row& row = found->second;
  if (row.admits && !row.admits(message)) return Result::kNotAdmitted;
  const Registration registration = row.registration;
  registration.handler(&ipc, registration.context);
  return Result::kCalled;
}

}  // namespace ipc
