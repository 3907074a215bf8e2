#include "LogSink.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "os/MonotonicClock.h"
#include "os/SocketAddress.h"

namespace {

constexpr std::int64_t kReconnectMs = 1000;

os::Descriptor ConnectDatagram(const std::string& path) {
  const auto address = os::SocketAddress::OfPath(path);
  if (!address) return {};
  os::Descriptor fd(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (fd.IsOpen() && connect(fd.Get(), address->Get(), address->Size()) != 0) fd.Close();
  return fd;
}

// A line is shorter than PIPE_BUF, so a pipe that reports room takes it whole without blocking, unless
// another writer fills the pipe between poll and write.
bool HasRoom(int fd) {
  pollfd state{fd, POLLOUT, 0};
  return poll(&state, 1, 0) == 1 && (state.revents & (POLLOUT | POLLERR)) == POLLOUT;
}

// Writes to a socket, pipe, file or terminal. Other processes may share the open file, so its flags stay
// unchanged: MSG_DONTWAIT keeps send() from blocking without O_NONBLOCK.
ssize_t PutNow(int fd, std::string_view text) {
  const ssize_t sent = send(fd, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
  if (sent >= 0 || errno != ENOTSOCK) return sent;
  if (HasRoom(fd)) return write(fd, text.data(), text.size());
  errno = EAGAIN;
  return -1;
}

}  // namespace

LogSink::LogSink(int fd) : fd_(fcntl(fd, F_GETFD) < 0 ? -1 : fd) {}

LogSink::LogSink(std::string socketPath)
    : socketPath_(std::move(socketPath)), socket_(ConnectDatagram(socketPath_)), fd_(socket_.Get()) {}

bool LogSink::Write(std::string_view line) {
  if (midLine_ && !Put("\n")) return false;
  if (Put(line)) return true;
  if (socketPath_.empty() || errno == EAGAIN || errno == ENOBUFS) return false;
  return Reconnect() && Put(line);
}

bool LogSink::Put(std::string_view text) {
  const ssize_t sent = PutNow(fd_, text);
  if (sent < 0) {
    if (errno == EBADF) fd_ = -1;
    return false;
  }
  midLine_ = static_cast<std::size_t>(sent) < text.size() && (midLine_ || sent > 0);
  return static_cast<std::size_t>(sent) == text.size();
}

bool LogSink::Reconnect() {
  const std::int64_t now = os::MonotonicMs();
  if (now < nextConnectMs_) return false;
  nextConnectMs_ = now + kReconnectMs;
  socket_ = ConnectDatagram(socketPath_);
  fd_ = socket_.Get();
  return Connected();
}
