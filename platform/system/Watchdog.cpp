#include "system/Watchdog.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <ctime>

#include "log/LogLine.h"
#include "system/KvGetenv.h"

namespace {

constexpr LogSource log{"Watchdog"};
constexpr std::int64_t kRetryMs = 100;

std::int64_t NowMs() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
}

// The length of the address of the socket `name`: an absolute path, or "@" and an abstract name.
// 0 when it is neither.
socklen_t AddressOf(const char* name, sockaddr_un& address) {
  const std::size_t length = std::strlen(name);
  const bool isAbstract = name[0] == '@';
  if (length < 2 || (name[0] != '/' && !isAbstract)) return 0;
  if (length + (isAbstract ? 0 : 1) > sizeof address.sun_path) return 0;
  address = {};
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, name, length);
  if (isAbstract) address.sun_path[0] = '\0';
  return static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length + (isAbstract ? 0 : 1));
}

}  // namespace

Watchdog::Watchdog(e_Process /*process*/, e_ThreadIds /*thread*/) {}

Watchdog::~Watchdog() {
  if (fd_ >= 0) close(fd_);
}

bool Watchdog::Subscribe(unsigned int periodSeconds) {
  if (periodSeconds == 0) return false;
  const char* name = KvGetenv("NOTIFY_SOCKET");
  sockaddr_un address{};
  socklen_t addressSize = 0;
  if (name && name[0] != '\0') {
    addressSize = AddressOf(name, address);
    if (addressSize == 0) {
      log(kLogError, "NOTIFY_SOCKET names no socket: ", name);
      return false;
    }
    if (fd_ < 0) fd_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd_ < 0) {
      log(kLogError, "cannot make a socket: ", errno);
      return false;
    }
  }
  address_ = address;
  addressSize_ = addressSize;
  periodMs_ = std::int64_t{periodSeconds} * 1000;
  nextPetMs_ = 0;
  readySaid_ = false;
  return true;
}

void Watchdog::PetWatchdog() {
  if (periodMs_ == 0 || addressSize_ == 0) return;
  const std::int64_t now = NowMs();
  if (now < nextPetMs_) return;
  const bool said = Say(readySaid_ ? "WATCHDOG=1" : "READY=1");
  readySaid_ = readySaid_ || said;
  nextPetMs_ = now + (said ? periodMs_ / 4 : std::min(periodMs_ / 4, kRetryMs));
}

void Watchdog::Unsubscribe() {
  if (periodMs_ != 0 && addressSize_ != 0) (void)Say("STOPPING=1");
  periodMs_ = 0;
}

bool Watchdog::Say(const char* text) {
  return sendto(fd_, text, std::strlen(text), MSG_NOSIGNAL, reinterpret_cast<const sockaddr*>(&address_),
                addressSize_) >= 0;
}
