#pragma once

#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <string>

#include "ipc/LinxIpc.h"
#include "support/Eventually.h"
#include "support/Hex.h"

// A process of the car that the test plays. Payloads are hexadecimal text.
class Peer {
 public:
  explicit Peer(const std::string& name) : ipc_(std::make_unique<LinxIpc>(name)) {
    EXPECT_EQ(ipc_->Init(), 0);
  }

  // Sends a message, as soon as the receiver exists and accepts it.
  void Send(unsigned int type, const std::string& payload = "", const std::string& to = "MetadataMgr") {
    std::string bytes = FromHex(payload);
    IpcMessage message;
    ASSERT_EQ(message.Allocate(type, static_cast<unsigned int>(bytes.size()), bytes.data()), 0);
    ASSERT_TRUE(Eventually([&] { return ipc_->Notify(to, message, true) == 0; })) << type;
  }

  // Returns the payload of the next message of this type; "nothing" when none arrives.
  std::string Await(unsigned int type, const std::string& from = "MetadataMgr") {
    IpcMessage message;
    if (ipc_->Receive(20000, type, from, &message) != 0) return "nothing";
    return ToHex(std::string(message.DataPtr(), message.DataPtr() + message.Size()));
  }
  std::string Ask(unsigned int type, const std::string& payload, unsigned int answer) {
    Send(type, payload);
    return Await(answer);
  }

  // Accepts the next subscription with this value.
  void Accept(const std::string& value) {
    constexpr unsigned int kSubscribe = 1856;
    Send(kSubscribe + 1, Await(kSubscribe) + "00000000" + value);
  }

  // Returns true when no other message is waiting.
  bool HasHeardNothing() {
    IpcMessage message;
    return ipc_->Receive(0, 0, LinxIpc::emptyString, &message) == ETIMEDOUT;
  }

  // Ends the played process.
  void Leave() { ipc_.reset(); }

 private:
  std::unique_ptr<LinxIpc> ipc_;
};
