#pragma once

#include <memory>
#include <string>

#include "ipc/IpcMessage.h"
#include "system/Messages.h"

class Endpoint;

// The IPC endpoint of a process: a name in the endpoint directory under which others reach it,
// and everything it receives. Directory: the environment variable LINX_IPC_DIR, else /run/linx;
// created with mode 2750 where it does not exist. Owner, group and root may connect.
//
// One thread: handlers run inside Receive. No operation waits for a peer longer than stated.
// Results are errno values, 0 for success.
class LinxIpc {
 public:
  using Handler = void (*)(LinxIpc* ipc, void* context);

  static const std::string emptyString;

  // Message types that the endpoint itself knows. Every peer may ask for a shutdown; a
  // process-died notice counts only when the state manager sent it.
  static constexpr unsigned int kProcessDiedNotice = StateMgrProcessMsg_Died;  // payload: 32-bit e_Process
  static constexpr unsigned int kShutdownNotice = StateMgrProcessMsg_Quit;     // no payload

  // Names are 1 to 32 letters, digits, "_" and "-". Nothing is opened yet.
  explicit LinxIpc(const std::string& name);
  ~LinxIpc();
  LinxIpc(const LinxIpc&) = delete;
  LinxIpc& operator=(const LinxIpc&) = delete;

  // Opens the endpoint. EINVAL: the name is not a name; EADDRINUSE: another process holds it;
  // ENAMETOOLONG: the directory's path is too long; or what the system said. A socket that a
  // killed process left behind is replaced. Failures are logged with mask 1.
  int Init();

  // Waits for one message, at most `timeoutMs` (-1: for ever).
  //
  // With a null `message` the next message that matches becomes the current message and its
  // handler, if there is one, is called. With a `message` given this is a selective wait: the
  // first match fills it, the current message stays, no handler is called, and everything else
  // stays queued in order for later. `type` 0 and the empty `sender` match any.
  //
  // Returns 0, ETIMEDOUT, EINVAL before Init, or ESHUTDOWN: a shutdown was asked for, by a notice
  // or, while a shutdown handler is registered, by SIGTERM or SIGINT. The receive that meets it
  // calls the shutdown handler, leaves a current message of type kShutdownNotice without payload,
  // and returns ESHUTDOWN, as does every later one, also where it delivers a message. A selective
  // wait leaves it queued.
  int Receive(int timeoutMs, unsigned int type, const std::string& sender, IpcMessage* message);

  // Sends `message`, which stays unchanged, to the endpoint of that name, over the connection
  // that is there or a new one. With `wait` a peer whose socket is full is given up to 10 ms, but
  // none as long as it has not taken anything since it last used them up. ENOENT or ECONNREFUSED:
  // there is no such endpoint; EAGAIN: the peer is full, the message was not sent; EINVAL: not a
  // name, the endpoint's own, or before Init.
  int Notify(const std::string& destination, IpcMessage& message, bool wait);

  // The message last received without a `message` of the caller's, or what a handler made of it
  // since. Valid as long as the endpoint.
  IpcMessage& CurrentMessage();

  // Sets the handler for a message type, in place of an earlier one. Handlers may register and
  // deregister, themselves included, and receive.
  void RegisterHandler(unsigned int type, Handler handler, void* context);
  void DeregisterHandler(unsigned int type);

  // SIGTERM and SIGINT count as shutdown notices while a shutdown handler is registered; at other
  // times they do what they did before.
  void RegisterShutdown(Handler handler, void* context);
  void DeregisterShutdown();

  // Handler of the state manager's notice that a process died. A connection that closes is none.
  void RegisterProcessDied(Handler handler, void* context);
  void DeregisterProcessDied();

 private:
  friend Endpoint& EndpointOf(LinxIpc& ipc);
  std::unique_ptr<Endpoint> endpoint_;
};
