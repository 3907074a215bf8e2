#include "system/Watchdog.h"

#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "log/LogLine.h"
#include "os/Descriptor.h"
#include "os/MonotonicClock.h"
#include "os/SocketAddress.h"
#include "system/KvGetenv.h"

namespace {

constexpr LogSource kWatchdogLog{"Watchdog"};
constexpr std::int64_t kRetryMs = 100;

}  // namespace

Watchdog::Watchdog(e_Process /*process*/, e_ThreadIds /*thread*/) {}

// The service manager's socket, which receives the notices.
struct Watchdog::Listener {
  os::SocketAddress address;
  os::Descriptor socket;
};

Watchdog::~Watchdog() = default;

bool Watchdog::Subscribe(unsigned int periodSeconds) {
  if (periodSeconds == 0) return false;
  const char* name = KvGetenv("NOTIFY_SOCKET");
  std::unique_ptr<Listener> listener;
  if (name && name[0] != '\0') {
    const auto address = os::SocketAddress::OfName(name);
    if (!address) {
      kWatchdogLog(kLogError, "NOTIFY_SOCKET names no socket: ", name);
      return false;
    }
    os::Descriptor fd(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!fd.IsOpen()) {
      kWatchdogLog(kLogError, "Cannot make a socket: ", errno);
      return false;
    }
    listener = std::make_unique<Listener>(Listener{*address, std::move(fd)});
  }
  listener_ = std::move(listener);
  periodMs_ = std::int64_t{periodSeconds} * 1000;
  nextPetMs_ = 0;
  readySaid_ = false;
  return true;
}

void Watchdog::PetWatchdog() {
  if (periodMs_ == 0 || !listener_) return;
  const std::int64_t now = os::MonotonicMs();
  if (now < nextPetMs_) return;
  const bool said = Say(readySaid_ ? "WATCHDOG=1" : "READY=1");
  readySaid_ = readySaid_ || said;
  nextPetMs_ = now + (said ? periodMs_ / 4 : std::min(periodMs_ / 4, kRetryMs));
}

void Watchdog::Unsubscribe() {
  if (periodMs_ != 0 && listener_) (void)Say("STOPPING=1");
  periodMs_ = 0;
}

bool Watchdog::Say(const char* text) {
  const os::SocketAddress& to = listener_->address;
  return sendto(listener_->socket.Get(), text, std::strlen(text), MSG_NOSIGNAL, to.Get(), to.Size()) >= 0;
}
