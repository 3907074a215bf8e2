#include "Role.h"

bool Role::PreInit(LinxIpc& ipc) {
  ipc_ = &ipc;
  ServeActions(ipc, actions_);
  Prepare(ipc);
  return true;
}
