#include "Peer.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "support/Eventually.h"
#include "support/Hex.h"

namespace {

const std::string kMetadataMgr = "MetadataMgr";
constexpr int kPatienceMs = 20000;

std::string Payload(const IpcMessage& message) {
  return message.Size() == 0 ? "" : ToHex({reinterpret_cast<const char*>(message.DataPtr()), message.Size()});
}

}  // namespace

Peer::Peer(const std::string& name) : ipc_(std::make_unique<LinxIpc>(name)) {
  EXPECT_EQ(ipc_->Init(), 0);
}

void Peer::Send(unsigned int type, const std::string& payload) {
  std::string bytes = FromHex(payload);
  IpcMessage message;
  ASSERT_EQ(message.Allocate(type, static_cast<unsigned int>(bytes.size()), bytes.data()), 0);
  ASSERT_TRUE(Eventually([&] { return ipc_->Notify(kMetadataMgr, message, true) == 0; })) << type;
}

std::string Peer::Await(unsigned int type) {
  IpcMessage message;
  const int result = ipc_->Receive(kPatienceMs, type, kMetadataMgr, &message);
  return result == 0 ? Payload(message) : "nothing";
}

std::string Peer::Ask(unsigned int type, const std::string& payload, unsigned int answer) {
  Send(type, payload);
  return Await(answer);
}

bool Peer::HasHeardNothing() {
  IpcMessage message;
  return ipc_->Receive(0, 0, LinxIpc::emptyString, &message) == ETIMEDOUT;
}
