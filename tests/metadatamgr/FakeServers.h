#pragma once

#include <map>
#include <string>
#include <vector>

#include "support/Child.h"

// Messages to a fake server. The payload of kForward is a message, type (32 bits) and payload, that the
// server sends to the process. The server answers kSettle with kSettled when the process has handled all of
// them.
constexpr unsigned int kForward = 60000, kSettle = 60001, kSettled = 60002;

// How a server answers a subscription to one of its items.
enum class When { kAnswers, kRefuses, kIsMute, kDies, kIsLate };

// The behaviour of one server; by default it has every item and answers at once.
struct Behaviour {
  bool absent = false;
  std::map<unsigned int, When> when = {};  // by item
  // Restarts with default behaviour when it dies.
  bool returns = false;
};

// The servers of the vehicle, each in its own process with its real endpoint name. The ticks of the items are
// 100 and more. The state manager also leads a process that announces itself to subscribe, to run, and to
// quit. Each server is reachable as soon as it is started.
class FakeServers {
 public:
  explicit FakeServers(const std::map<std::string, Behaviour>& behaviours = {});
  ~FakeServers();
  FakeServers(const FakeServers&) = delete;
  FakeServers& operator=(const FakeServers&) = delete;

  // The items requested since the last call, in order, each as "Server item".
  std::vector<std::string> Asked();

  // Kill a server; start it, with default behaviour unless given.
  void Kill(const std::string& name) { children_.erase(name); }
  void Start(const std::string& name, const Behaviour& behaviour = {});

 private:
  int asked_[2] = {-1, -1};    // pipe with the requests
  int reached_[2] = {-1, -1};  // pipe with a byte for each endpoint that was opened
  std::map<std::string, Child> children_;
};
