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

// The IPC endpoint of a process: a name in the endpoint directory under which others reach it,
// and everything it receives. Directory: the environment variable LINX_IPC_DIR, else /run/linx;
// created with mode 2750 where it does not exist.
//
// The directory's owner and root are the system; other members of its group may connect, but only ask: of
// their messages those that could steer this process or be recorded are dropped before any handler, and the
// names of the system's processes are refused to them.
//
// One thread: handlers run inside Receive. No operation waits for a peer longer than stated.
// Results are errno values, 0 for success.
class LinxIpc {
 public:
  using Handler = void (*)(LinxIpc* ipc, void* context);

  static const std::string emptyString;

  // Message types that the endpoint itself knows. Every process of the system may ask for a shutdown; a
  // process-died notice counts only when the state manager sent it.
  static constexpr unsigned int kProcessDiedNotice = StateMgrProcessMsg_Died;  // payload: 32-bit e_Process
  static constexpr unsigned int kShutdownNotice = StateMgrProcessMsg_Quit;     // no payload

  // Names are 1 to 32 letters, digits, "_" and "-". Nothing is opened yet.
  explicit LinxIpc(const std::string& name);
  ~LinxIpc();
  LinxIpc(const LinxIpc&) = delete;
  LinxIpc& operator=(const LinxIpc&) = delete;

  // Opens the endpoint. EINVAL: invalid name; EADDRINUSE: another process holds it; ENAMETOOLONG: the
  // directory's path is too long; EPERM: the directory's group or others may write it; or another errno
  // value of the system. A socket that a killed process left behind is replaced. Failures are logged with
  // mask 1.
  int Init();

  // The same for a process that only asks: it makes nothing in the directory and nobody can connect to it.
  int InitToAsk();

  // Waits for one message, at most `timeoutMs` (-1: for ever).
  //
  // With a null `message` the next message that matches becomes the current message and its
  // handler, if there is one, is called. With a `message` given this is a selective wait: the
  // first match fills it, the current message stays, no handler is called, and everything else
  // stays queued in order for later. `type` 0 and the empty `sender` match any.
  //
  // Returns 0, ETIMEDOUT, EINVAL before Init, or ESHUTDOWN: a shutdown was asked for, by a notice
  // or, once a shutdown handler was registered, by SIGTERM or SIGINT. The receive that meets it
  // calls the shutdown handler, leaves a current message of type kShutdownNotice without payload,
  // and returns ESHUTDOWN, as does every later one, also where it delivers a message. A selective
  // wait leaves the notice queued, and ends with ESHUTDOWN as long as one is queued and no match has come.
  int Receive(int timeoutMs, unsigned int type, const std::string& sender, IpcMessage* message);

  // Sends `message`, which stays unchanged, to the endpoint of that name, over a connection that
  // stands or a new one. With `wait` a peer whose socket is full gets up to 10 ms, and no further time
  // until it has taken something again. ENOENT or ECONNREFUSED: there is no such endpoint; EACCES: the
  // process that listens there does not belong to the system; EAGAIN: the peer is full, the message was not
  // sent; EINVAL: invalid name, the endpoint's own, or before Init.
  int Notify(const std::string& destination, IpcMessage& message, bool wait);

  // The message last received without a `message` of the caller's, or what a handler made of it
  // since. Valid as long as the endpoint.
  IpcMessage& CurrentMessage();

  // Sets the handler for a message type, in place of an earlier one. Handlers may register and
  // deregister, themselves included, and receive.
  void RegisterHandler(unsigned int type, Handler handler, void* context);
  void DeregisterHandler(unsigned int type);

  // From the first registration to the end of the process SIGTERM and SIGINT are caught and count as
  // shutdown notices.
  void RegisterShutdown(Handler handler, void* context);
  void DeregisterShutdown();

  // Handler of the state manager's notice that a process died. A closing connection is no such notice.
  void RegisterProcessDied(Handler handler, void* context);
  void DeregisterProcessDied();

 private:
  friend ipc::Endpoint& ipc::EndpointOf(LinxIpc& ipc);
  std::unique_ptr<ipc::Endpoint> endpoint_;
};
