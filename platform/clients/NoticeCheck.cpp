#include "NoticeCheck.h"

#include "log/LogLine.h"

namespace ipc {

namespace {

constexpr LogSource log{"SubscribeClient"};

}  // namespace

bool NoticeCheck::operator()(IpcMessage& notice) const {
  if (notice.GetSender() != server_) {
    log(kLogMalformed, "Dropped notice ", notice.MsgType(), " from ", notice.GetSender(), ": it is ", server_,
        "'s");
    return false;
  }
  if (notice.DataPtr() == nullptr || !scratch_ || scratch_->Holds(notice.DataPtr(), notice.Size()))
    return true;
  log(kLogMalformed, "Dropped notice ", notice.MsgType(), " from ", server_,
      ": payload is too short for its item");
  return false;
}

}  // namespace ipc
