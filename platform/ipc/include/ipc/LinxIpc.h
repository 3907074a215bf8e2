#pragma once

#include <memory>
#include <string>

#include "ipc/IpcMessage.h"
#include "system/Messages.h"

class LinxIpc;

namespace ipc {
class Endpoint;
Endpoint& EndpointOf(LinxIpc& ipc);
}  // namespace ipc

// The IPC endpoint of a process. Other processes reach it under its name in the endpoint directory: the
// environment variable LINX_IPC_DIR, else /run/linx. Creates a missing directory with mode 2750.
//
// The directory's owner and root are the system. Other members of its group are observers: they may connect,
// but only ask. The endpoint drops their messages that could steer this process or be recorded, and refuses
// them the names of the system's processes.
//
// For one thread: handlers run inside Receive. No operation waits for a peer longer than stated. Results are
// errno values, 0 for success.
class LinxIpc {
 public:
  using Handler = void (*)(LinxIpc* ipc, void* context);

  static const std::string emptyString;

  // Message types that the endpoint handles itself. Every process of the system may request a shutdown; only
  // the state manager may report that a process died.
  static constexpr unsigned int kProcessDiedNotice = StateMgrProcessMsg_Died;  // payload: 32-bit e_Process
  static constexpr unsigned int kShutdownNotice = StateMgrProcessMsg_Quit;     // no payload

  // Names are 1 to 32 letters, digits, "_" and "-". Opens nothing.
  explicit LinxIpc(const std::string& name);
  ~LinxIpc();
  LinxIpc(const LinxIpc&) = delete;
  LinxIpc& operator=(const LinxIpc&) = delete;

  // Opens the endpoint; replaces a socket that a killed process left. EINVAL: invalid name; EADDRINUSE:
  // another process holds it; ENAMETOOLONG: the directory's path is too long; EPERM: the directory's group or
  // others may write it; or another errno value of the system. Logs failures with mask 1.
  int Init();

  // Like Init for a process that only asks: creates nothing in the directory and accepts no connections.
  int InitToAsk();

  // Waits for one message, at most `timeoutMs` (-1: without limit). `type` 0 and the empty `sender` match
  // any.
  //
  // With a null `message`, the next match becomes the current message, and its handler, if any, is called.
  // With a `message`, this is a selective wait: the first match fills `message`, the current message stays,
  // no handler is called, and all other messages stay queued in order.
  //
  // Returns 0, ETIMEDOUT, EINVAL before Init, or ESHUTDOWN. A shutdown is requested by a notice or, once a
  // shutdown handler was registered, by SIGTERM or SIGINT. The receive that takes the notice calls the
  // shutdown handler, leaves a current message of type kShutdownNotice without payload, and returns
  // ESHUTDOWN. Every later receive returns ESHUTDOWN too, even when it delivers a message. A selective wait
  // leaves the notice queued, and returns ESHUTDOWN while a notice is queued and no match has arrived.
  int Receive(int timeoutMs, unsigned int type, const std::string& sender, IpcMessage* message);

  // Sends `message` unchanged to the endpoint of that name, over an existing or a new connection. With
  // `wait`, waits up to 10 ms for a peer whose socket is full, and again only after a send to it succeeded.
  // ENOENT or ECONNREFUSED: no such endpoint; EACCES: the listening process does not belong to the system;
  // EAGAIN: the peer is full, the message was not sent; EINVAL: invalid name, the endpoint's own name, or
  // before Init.
  int Notify(const std::string& destination, IpcMessage& message, bool wait);

  // The message of the last receive that was not selective; its handler may have changed it. Valid as long as
  // the endpoint.
  IpcMessage& CurrentMessage();

  // Sets the handler of a message type; replaces an earlier one. Handlers may register and deregister
  // handlers, including themselves, and receive.
  void RegisterHandler(unsigned int type, Handler handler, void* context);
  void DeregisterHandler(unsigned int type);

  // After the first registration, SIGTERM and SIGINT count as shutdown notices until the process ends.
  void RegisterShutdown(Handler handler, void* context);
  void DeregisterShutdown();

  // Sets the handler of the state manager's notice that a process died. A closed connection does not call
  // it.
  void RegisterProcessDied(Handler handler, void* context);
  void DeregisterProcessDied();

 private:
  friend ipc::Endpoint& ipc::EndpointOf(LinxIpc& ipc);
  std::unique_ptr<ipc::Endpoint> endpoint_;
};
