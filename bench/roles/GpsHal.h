#pragma once

#include <memory>

#include "Publisher.h"
#include "Receiver.h"
#include "Role.h"

namespace bench {

// The GPS process: follows the built-in track, or a receiver. With a receiver its verbs fail, and it has no
// fix until the receiver has a fix.
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
  // Sends an event to the screen of the bench.
  void Say(const std::string& text);

  Publisher publisher_;
  std::unique_ptr<Receiver> receiver_;
  GpsStatusItem* item_ = nullptr;  // the publisher's item; null without a receiver
  bool begun_ = false;
  bool endTold_ = false;
};

}  // namespace bench
