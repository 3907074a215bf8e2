#include "ipc/LinxIpc.h"

#include <utility>

#include "Endpoint.h"
#include "ipc/PeerQueue.h"

const std::string LinxIpc::emptyString;

LinxIpc::LinxIpc(const std::string& name) : endpoint_(std::make_unique<ipc::Endpoint>(this, name)) {}

LinxIpc::~LinxIpc() = default;

int LinxIpc::Init() {
  return endpoint_->Init().Value();
}

int LinxIpc::InitToAsk() {
  return endpoint_->InitToAsk().Value();
}

int LinxIpc::Receive(int timeoutMs, unsigned int type, const std::string& sender, IpcMessage* message) {
  return endpoint_->Receive(timeoutMs, ipc::Filter{type, sender, message != nullptr}, message).Value();
}

int LinxIpc::Notify(const std::string& destination, IpcMessage& message, bool wait) {
  return endpoint_->Notify(destination, message, wait).Value();
}

IpcMessage& LinxIpc::CurrentMessage() {
  return endpoint_->CurrentMessage();
}

void LinxIpc::RegisterHandler(unsigned int type, Handler handler, void* context) {
  endpoint_->Handlers().Set(type, {handler, context});
}

void LinxIpc::DeregisterHandler(unsigned int type) {
  endpoint_->Handlers().Remove(type);
}

void LinxIpc::RegisterShutdown(Handler handler, void* context) {
  endpoint_->SetShutdown({handler, context});
}

void LinxIpc::DeregisterShutdown() {
  endpoint_->SetShutdown({});
}

void LinxIpc::RegisterProcessDied(Handler handler, void* context) {
  endpoint_->SetProcessDied({handler, context});
}

void LinxIpc::DeregisterProcessDied() {
  endpoint_->SetProcessDied({});
}

namespace ipc {

Endpoint& EndpointOf(LinxIpc& ipc) {
  return *ipc.endpoint_;
}

int PostToPeer(LinxIpc& ipc, const std::string& peer, unsigned int type, const unsigned char* payload,
               std::size_t size, std::size_t maxQueuedBytes) {
  return EndpointOf(ipc).Post(peer, type, payload, size, maxQueuedBytes).Value();
}

std::size_t PostedBytes(LinxIpc& ipc, const std::string& peer) {
  return EndpointOf(ipc).PostedTo(peer);
}

int NotifyServer(LinxIpc& ipc, const std::string& server, IpcMessage& message, bool wait) {
  return EndpointOf(ipc).NotifyServer(server, message, wait).Value();
}

std::uint64_t ServerConnection(LinxIpc& ipc, const std::string& server) {
  return EndpointOf(ipc).ConnectionToServer(server);
}

void RegisterHandler(LinxIpc& ipc, unsigned int type, LinxIpc::Handler handler, void* context,
                     std::function<bool(IpcMessage& message)> admits) {
  EndpointOf(ipc).Handlers().Set(type, {handler, context}, std::move(admits));
}

void OnPeerGone(LinxIpc& ipc, PeerGoneFunction function, void* context) {
  EndpointOf(ipc).OnPeerGone(function, context);
}

}  // namespace ipc
