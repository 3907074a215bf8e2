#pragma once

#include "Publisher.h"
#include "Role.h"

namespace bench {

// A server around MetadataMgr. The tables of sources, publications, changes and readings define it.
class Server : public Role {
 public:
  explicit Server(e_Process process) : publisher_(process) { publisher_.AddActions(actions_); }

  int WaitMs() const override { return publisher_.WaitMs(); }
  void DoDueWork() override { publisher_.DoDueWork(); }

 private:
  void Prepare(LinxIpc& ipc) override { publisher_.Open(ipc); }

  Publisher publisher_;
};

}  // namespace bench
