#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "ipc/LinxIpc.h"
#include "support/Eventually.h"
#include "support/IpcDir.h"
#include "support/LogCapture.h"
#include "support/RawPeer.h"

// The result of a receive. Payloads are texts in these tests.
struct Got {
  int result = 0;
  unsigned int type = 0;
  std::string payload;
  std::string sender;
};

inline std::string PayloadOf(const IpcMessage& message) {
  return message.DataPtr() == nullptr ? ""
                                      : std::string(message.DataPtr(), message.DataPtr() + message.Size());
}

inline Got GotOf(int result, const IpcMessage& message) {
  return {result, message.MsgType(), PayloadOf(message), message.GetSender()};
}

// Receives any message.
inline Got Next(LinxIpc& ipc, int timeoutMs = 10000) {
  const int result = ipc.Receive(timeoutMs, 0, LinxIpc::emptyString, nullptr);
  return GotOf(result, ipc.CurrentMessage());
}

// Waits for one message selectively.
inline Got Await(LinxIpc& ipc, unsigned int type, const std::string& sender = {}, int timeoutMs = 10000) {
  IpcMessage message;
  const int result = ipc.Receive(timeoutMs, type, sender, &message);
  return GotOf(result, message);
}

inline int Tell(LinxIpc& from, const std::string& to, unsigned int type, std::string payload = {},
                bool wait = false) {
  IpcMessage message;
  (void)message.Allocate(type, static_cast<unsigned int>(payload.size()), payload.data());
  return from.Notify(to, message, wait);
}

// Receives until no more messages arrive. Returns the payloads, in order.
inline std::vector<std::string> Drain(LinxIpc& ipc) {
  std::vector<std::string> payloads;
  for (Got got = Next(ipc, 50); got.result == 0; got = Next(ipc, 50)) payloads.push_back(got.payload);
  return payloads;
}

// A handler that keeps the messages it is called with.
struct Calls {
  std::vector<Got> got;

  static void Handler(LinxIpc* ipc, void* calls) {
    static_cast<Calls*>(calls)->got.push_back(GotOf(0, ipc->CurrentMessage()));
  }
};

class Stopwatch {
 public:
  std::chrono::milliseconds::rep Ms() const {
    const auto passed = std::chrono::steady_clock::now() - start_;
    return std::chrono::duration_cast<std::chrono::milliseconds>(passed).count();
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// An endpoint under test, "Me", and its peer "A".
class IpcTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(me_.Init(), 0);
    ASSERT_EQ(a_.Init(), 0);
  }

  IpcDir directory_;
  LogCapture log_;
  LinxIpc me_{"Me"};
  LinxIpc a_{"A"};
};
