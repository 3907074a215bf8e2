#include "HandlerTable.h"

bool HandlerTable::Call(unsigned int type, LinxIpc* ipc) const {
  const auto row = rows_.find(type);
  if (row == rows_.end()) return false;
  const Registration registration = row->second;
  registration.handler(ipc, registration.context);
  return true;
}
