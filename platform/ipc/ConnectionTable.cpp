#include "ConnectionTable.h"

#include <poll.h>
#include <sys/epoll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <map>
#include <utility>

#include "os/MonotonicClock.h"

namespace ipc {

namespace {

// Their addresses mark the epoll events of the two descriptors that are not connections.
int gListenMark;
int gSignalMark;

os::Errno Watch(int epollFd, int operation, int fd, std::uint32_t events, void* mark) {
  epoll_event event{};
  event.events = events;
  event.data.ptr = mark;
  return epoll_ctl(epollFd, operation, fd, &event) == 0 ? 0 : errno;
}

}  // namespace

os::Errno ConnectionTable::Open() {
  epoll_.Reset(epoll_create1(EPOLL_CLOEXEC));
  return epoll_.IsOpen() ? 0 : errno;
}

os::Errno ConnectionTable::WatchListening(int fd) {
  return Watch(epoll_.Get(), EPOLL_CTL_ADD, fd, EPOLLIN, &gListenMark);
}

void ConnectionTable::WatchSignals(int fd) {
  (void)Watch(epoll_.Get(), EPOLL_CTL_ADD, fd, EPOLLIN, &gSignalMark);
}

Connection* ConnectionTable::Add(os::Descriptor fd, Connection::Origin origin, Connection::Peer peer,
                                 const std::string& name) {
  connections_.push_back(std::make_unique<Connection>(std::move(fd), origin, peer, name, ++lastNumber_));
  UpdateInterest(*connections_.back());
  return connections_.back().get();
}

Connection* ConnectionTable::FirstToGo(bool forSystem) const {
  if (Connection* gone = OldestGone()) return gone;
  if (Connection* greedy = OfGreediest()) return greedy;
  if (Connection* nameless = Oldest([](const Connection& any) { return any.name().empty(); }))
    return nameless;
  return forSystem ? Oldest([](const Connection& any) { return !any.peer().isSystem; }) : nullptr;
}

Connection* ConnectionTable::OldestGone() const {
  std::vector<pollfd> states;
  for (const auto& connection : connections_) states.push_back({connection->fd(), 0, 0});
  if (poll(states.data(), states.size(), 0) <= 0) return nullptr;
  const auto gone =
      std::find_if(states.begin(), states.end(), [](const pollfd& state) { return state.revents != 0; });
  return connections_[static_cast<std::size_t>(gone - states.begin())].get();
}

Connection* ConnectionTable::OfGreediest() const {
  std::map<pid_t, std::size_t> counts;
  for (const auto& connection : connections_) ++counts[connection->peer().process.id];
  const auto most = std::max_element(counts.begin(), counts.end(), [](const auto& one, const auto& other) {
    return one.second < other.second;
  });
  if (most == counts.end() || most->second <= kFairShare) return nullptr;
  const auto itsOwn = [&most](const Connection& any) { return any.peer().process.id == most->first; };
  Connection* nameless = Oldest([&](const Connection& any) { return any.name().empty() && itsOwn(any); });
  return nameless != nullptr ? nameless : Oldest(itsOwn);
}

template <typename Predicate>
Connection* ConnectionTable::Oldest(Predicate accepts) const {
  const auto found = std::find_if(connections_.begin(), connections_.end(),
                                  [&](const auto& connection) { return accepts(*connection); });
  return found == connections_.end() ? nullptr : found->get();
}

// Closing does not remove a descriptor from epoll while a forked child still holds it.
void ConnectionTable::Remove(Connection* connection) {
  if (connection->watchedEvents != 0) (void)Watch(epoll_.Get(), EPOLL_CTL_DEL, connection->fd(), 0, nullptr);
  std::replace(ready_.begin(), ready_.end(), connection, static_cast<Connection*>(nullptr));
  std::erase(paused_, connection);
  std::erase_if(connections_, [connection](const auto& owned) { return owned.get() == connection; });
}

Connection* ConnectionTable::Find(const std::string& name) const {
  const auto found = std::find_if(connections_.begin(), connections_.end(), [&name](const auto& connection) {
    return connection->Usable() && connection->name() == name;
  });
  return found == connections_.end() ? nullptr : found->get();
}

std::vector<Connection*> ConnectionTable::Named(const std::string& name) const {
  std::vector<Connection*> named;
  for (const auto& connection : connections_) {
    if (connection->name() == name) named.push_back(connection.get());
  }
  return named;
}

Connection* ConnectionTable::NextReady() {
  for (; turn_ < ready_.size(); ++turn_) {
    Connection* connection = ready_[turn_];
    if (connection == nullptr || connection->turnReads == connection->turnLimit || IsPaused(*connection))
      continue;
    const std::int64_t nowMs = os::CoarseMonotonicMs();
    if (connection->turnReads == 0) turnEndMs_ = nowMs + kTurnMs;
    if (nowMs > turnEndMs_) continue;
    ++connection->turnReads;
    return connection;
  }
  return nullptr;
}

void ConnectionTable::Done() {
  constexpr int kOneAndNothing = 2;
  Connection& connection = *ready_[turn_++];
  if (connection.turnReads <= kOneAndNothing) connection.loneTurns = 0;
}

void ConnectionTable::BeginTurn(Connection& connection, bool full) {
  if (connection.loneTurns == kLoneTurns) full = true;
  if (!full) ++connection.loneTurns;
  connection.turnLimit = full ? kTurn : 1;
  connection.turnReads = 0;
}

ConnectionTable::WakeUp ConnectionTable::Wait(int timeoutMs) {
  std::array<epoll_event, kMaxConnections + 2> events;  // room for every descriptor, so that none starves
  const int count = epoll_wait(epoll_.Get(), events.data(), static_cast<int>(events.size()), timeoutMs);
  ready_.clear();
  turn_ = 0;
  WakeUp found;
  for (int i = 0; i < count; ++i) {
    const epoll_event& event = events[static_cast<std::size_t>(i)];
    if (event.data.ptr == &gListenMark) {
      found.accept = true;
    } else if (event.data.ptr == &gSignalMark) {
      found.signal = true;
    } else {
      auto* connection = static_cast<Connection*>(event.data.ptr);
      if (connection->HasQueued()) {
        connection->Flush();
        UpdateInterest(*connection);
      }
      if ((event.events & ~std::uint32_t{EPOLLOUT}) == 0) continue;
      BeginTurn(*connection, timeoutMs == 0);
      ready_.push_back(connection);
    }
  }
  return found;
}

bool ConnectionTable::IsPaused(const Connection& connection) const {
  return !paused_.empty() && std::find(paused_.begin(), paused_.end(), &connection) != paused_.end();
}

void ConnectionTable::Pause(Connection& connection) {
  if (IsPaused(connection)) return;
  paused_.push_back(&connection);
  UpdateInterest(connection);
}

void ConnectionTable::ResumeAt(std::size_t index) {
  Connection* connection = paused_[index];
  paused_.erase(paused_.begin() + static_cast<std::ptrdiff_t>(index));
  UpdateInterest(*connection);
}

void ConnectionTable::UpdateInterest(Connection& connection) {
  const std::uint32_t wanted = (IsPaused(connection) ? 0U : std::uint32_t{EPOLLIN}) |
                               (connection.HasQueued() ? std::uint32_t{EPOLLOUT} : 0U);
  if (wanted == connection.watchedEvents) return;
  // Removes a descriptor without wanted events: epoll would still report a hang-up.
  const int operation = connection.watchedEvents == 0 ? EPOLL_CTL_ADD
                        : wanted == 0                 ? EPOLL_CTL_DEL
                                                      : EPOLL_CTL_MOD;
  if (Watch(epoll_.Get(), operation, connection.fd(), wanted, &connection) == 0)
    connection.watchedEvents = wanted;
}

}  // namespace ipc
