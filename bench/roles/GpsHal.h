#pragma once

#include <memory>

#include "Publisher.h"
#include "Receiver.h"
#include "Role.h"

namespace bench {

// The GPS process: drives the bench's own track, or follows a receiver. With a receiver it has no fix until
// the receiver has one, and its verbs fail.
class GpsHal : public Role {
 public:
  GpsHal();

  int WaitMs() const override;
  void DoDueWork() override;

 private:
  void Prepare(LinxIpc& ipc) override;
  static void EndReachedHandler(LinxIpc* ipc, void* self);

  static constexpr const char* kSource = "gps";

  void Follow();
  void TellEnd();
  // An event for the bench's screen.
  void Say(const std::string& text);

  Publisher publisher_;
  std::unique_ptr<Receiver> receiver_;
  GpsStatusItem* item_ = nullptr;  // of the publisher; set where there is a receiver
  bool begun_ = false;
  bool endTold_ = false;
};

}  // namespace bench
