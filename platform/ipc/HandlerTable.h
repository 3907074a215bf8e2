#pragma once

#include <functional>
#include <unordered_map>

#include "ipc/LinxIpc.h"

namespace ipc {

struct Registration {
  LinxIpc::Handler handler = nullptr;
  void* context = nullptr;
};

// Whether a message may reach the handler of its type.
using Admits = std::function<bool(IpcMessage& message)>;

// The handlers by message type. A handler may change the table while it runs, because the call uses a copy of
// the registration.
class HandlerTable {
 public:
  enum class Result { kCalled, kNoHandler, kNotAdmitted };

  // Without `admits` the handler gets all messages of the type.
  void Set(unsigned int type, Registration registration, Admits admits = {});
  void Remove(unsigned int type) { rows_.erase(type); }

  // Calls the handler of the endpoint's current message.
  Result Call(LinxIpc& ipc) const;

 private:
  struct Row {
    Registration registration;
    Admits admits;
  };
  std::unordered_map<unsigned int, Row> rows_;
};

}  // namespace ipc
