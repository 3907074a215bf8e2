#pragma once

#include "Publisher.h"
#include "Role.h"

// A server around MetadataMgr; what tells one from another stands in the tables of Publications.cpp.
class Server : public Role {
 public:
  explicit Server(e_Process process) : publisher_(process) { publisher_.AddActions(actions_); }

  int WaitMs() const override { return publisher_.WaitMs(); }
  void DoDueWork() override { publisher_.DoDueWork(); }

 private:
  void Prepare(LinxIpc& ipc) override { publisher_.Open(ipc); }

  Publisher publisher_;
};
