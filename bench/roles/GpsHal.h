#pragma once

#include <chrono>
#include <memory>

#include "Publisher.h"
#include "Receiver.h"
#include "Role.h"

// The GPS process: drives the bench's own track, or follows a receiver. Then it has no fix until the
// receiver has one, and its verbs are not possible.
class GpsHal : public Role {
 public:
  GpsHal();

  int WaitMs() const override;
  void DoDueWork() override;

 private:
  void Prepare(LinxIpc& ipc) override;
  static void EndReachedHandler(LinxIpc* ipc, void* self);

  void Follow();
  void TellEnd();

  Publisher publisher_;
  std::unique_ptr<Receiver> receiver_;
  bool begun_ = false;
  bool endTold_ = false;
};
