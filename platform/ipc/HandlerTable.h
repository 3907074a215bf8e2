#pragma once

#include <unordered_map>

#include "ipc/LinxIpc.h"

struct Registration {
  LinxIpc::Handler handler = nullptr;
  void* context = nullptr;
};

// The handlers by message type. A handler may change the table while it runs: calls are made on
// a copy of its row.
class HandlerTable {
 public:
  void Set(unsigned int type, Registration registration) { rows_[type] = registration; }
  void Remove(unsigned int type) { rows_.erase(type); }

  // Calls the handler of `type`; false when there is none.
  bool Call(unsigned int type, LinxIpc* ipc) const;

 private:
  std::unordered_map<unsigned int, Registration> rows_;
};
