#include "Role.h"

namespace bench {

bool Role::PreInit(LinxIpc& ipc) {
  ipc_ = &ipc;
  ServeActions(ipc, actions_);
  Prepare(ipc);
  return true;
}

}  // namespace bench
