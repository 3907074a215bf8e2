#pragma once

#include <memory>
#include <string>
#include <vector>

#include "support/IpcTest.h"

constexpr unsigned int kSubscribe = 1856;
constexpr unsigned int kAnswer = 1857;
constexpr unsigned int kUnsubscribe = 1858;

inline std::string Request(unsigned int item, unsigned int notification, unsigned int type = kSubscribe) {
  return Packet(type, U32(item) + U32(notification));
}

inline std::string Answer(unsigned int item, unsigned int notification, unsigned int result,
                          const std::string& value = {}) {
  return Packet(kAnswer, U32(item) + U32(notification) + U32(result) + value);
}

// The endpoint of this process, with peers of raw packets. The peers connect first and send their answers in
// advance, so one thread is enough.
class ClientsTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(me_.Init(), 0); }

  // Starts a peer that listens and is connected.
  RawPeer ComesUp(const std::string& name) {
    listeners_.push_back(std::make_unique<RawListener>(name));
    RawPeer peer = RawPeer::To("Me", name);
    EXPECT_EQ(peer.Send(Packet(1)), 0);
    EXPECT_EQ(Next(me_).sender, name);
    return peer;
  }

  IpcDir directory_;
  LogCapture log_;
  LinxIpc me_{"Me"};
  std::vector<std::unique_ptr<RawListener>> listeners_;
};
