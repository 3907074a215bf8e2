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

// This process's endpoint. Its peers are bare packets; since they are connected before they are asked,
// what they are going to say can be sent beforehand, and all happens on one thread.
class ClientsTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(me_.Init(), 0); }

  // Another process, which listens and has connected.
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
