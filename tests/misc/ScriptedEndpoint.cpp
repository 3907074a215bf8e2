#include "ScriptedEndpoint.h"

#include <cerrno>
#include <cstring>

#include "ipc/LinxIpc.h"
#include "support/Hex.h"

Script script;

namespace {

void Happened(const std::string& what) {
  script.happened.push_back(what);
}

std::string Describe(const std::string& peer, unsigned int type, const unsigned char* payload,
                     std::size_t size) {
  const std::string head = "send " + peer + " " + std::to_string(type);
  return size == 0 ? head : head + " " + ToHex({reinterpret_cast<const char*>(payload), size});
}

}  // namespace

IpcMessage::IpcMessage() : buffer_(std::make_unique<unsigned char[]>(kHeaderRoom + kMaxPayload + kSlack)) {}
IpcMessage::~IpcMessage() = default;

int IpcMessage::Allocate(unsigned int type, unsigned int size, char* data) {
  if (type != 0 && type == script.cannotAllocate) return ENOMEM;
  if (data != nullptr) std::memmove(Payload(), data, size);
  if (data == nullptr) std::memset(Payload(), 0, size);
  Received(type, size);
  return 0;
}

void IpcMessage::Received(unsigned int type, std::size_t size) {
  std::memset(Payload() + size, 0, kMaxPayload + kSlack - size);
  type_ = type;
  size_ = size;
}

class Endpoint {
 public:
  int Receive(LinxIpc* owner) {
    if (script.arrivals.empty()) return kScriptEnded;
    const Arrival arrival = script.arrivals.front();
    script.arrivals.pop_front();
    if (arrival.result != 0 && arrival.result != ESHUTDOWN) return arrival.result;
    const std::string payload = FromHex(arrival.payload);
    std::memcpy(current.Payload(), payload.data(), payload.size());
    current.Received(arrival.type, payload.size());
    current.sender_ = arrival.sender;
    const auto handler = handlers.find(arrival.type);
    if (handler != handlers.end()) handler->second.function(owner, handler->second.context);
    return arrival.result;
  }

  // Waits for the answer to the last subscription.
  int Accept(unsigned int type, const std::string& server, IpcMessage& answer) {
    constexpr unsigned int kAnswer = 1857;
    constexpr std::size_t kRequestSize = 8, kLongestItem = 300;
    if (!script.acceptsSubscriptions || type != kAnswer) return ETIMEDOUT;
    std::memcpy(answer.Payload(), request.data(), kRequestSize);
    answer.Received(kAnswer, kRequestSize + sizeof(std::uint32_t) + kLongestItem);
    std::memset(answer.Payload() + kRequestSize, 0, sizeof(std::uint32_t) + kLongestItem);
    answer.sender_ = server;
    return 0;
  }

  struct Registered {
    LinxIpc::Handler function;
    void* context;
  };
  std::map<unsigned int, Registered> handlers;  // of the two notices too
  IpcMessage current;
  std::string request;  // the payload last sent
};

LinxIpc::LinxIpc(const std::string& /*name*/) : endpoint_(std::make_unique<Endpoint>()) {}
LinxIpc::~LinxIpc() = default;

int LinxIpc::Init() {
  return script.initResult;
}

int LinxIpc::Receive(int timeoutMs, unsigned int type, const std::string& sender, IpcMessage* message) {
  if (message != nullptr) return endpoint_->Accept(type, sender, *message);
  if (timeoutMs != -1 || type != 0 || !sender.empty()) return EINVAL;
  return endpoint_->Receive(this);
}

int LinxIpc::Notify(const std::string& destination, IpcMessage& message, bool wait) {
  if (message.MsgType() == script.cannotSend) return ECONNREFUSED;
  Happened((wait ? "" : "hasty ") +
           Describe(destination, message.MsgType(), message.DataPtr(), message.Size()));
  if (message.DataPtr() != nullptr)
    endpoint_->request.assign(message.DataPtr(), message.DataPtr() + message.Size());
  return 0;
}

IpcMessage& LinxIpc::CurrentMessage() {
  return endpoint_->current;
}

void LinxIpc::RegisterHandler(unsigned int type, Handler handler, void* context) {
  Happened("register " + std::to_string(type));
  endpoint_->handlers[type] = {handler, context};
}

void LinxIpc::DeregisterHandler(unsigned int type) {
  Happened("deregister " + std::to_string(type));
  endpoint_->handlers.erase(type);
}

void LinxIpc::RegisterShutdown(Handler handler, void* context) {
  Happened("register shutdown");
  endpoint_->handlers[kShutdownNotice] = {handler, context};
}

void LinxIpc::DeregisterShutdown() {
  Happened("deregister shutdown");
  endpoint_->handlers.erase(kShutdownNotice);
}

void LinxIpc::RegisterProcessDied(Handler handler, void* context) {
  Happened("register process died");
  endpoint_->handlers[kProcessDiedNotice] = {handler, context};
}

void LinxIpc::DeregisterProcessDied() {
  Happened("deregister process died");
  endpoint_->handlers.erase(kProcessDiedNotice);
}
