#pragma once

#include <map>
#include <string>
#include <vector>

#include "support/Child.h"

// Has a server send a message to the process: its type, 32 bits, and its payload. The second is answered with
// the third when the process has handled the message.
constexpr unsigned int kForward = 60000, kForwardAndTell = 60001, kForwarded = 60002;

// How a server reacts when it is asked for one of its items.
enum class When { kAnswers, kRefuses, kIsMute, kDies, kIsLate };

// The behaviour of one server; by default it has every item and answers at once.
struct Behaviour {
  bool absent = false;
  std::map<unsigned int, When> when = {};  // by item
  // When it dies it is started again, with default behaviour.
  bool returns = false;
};

// The servers of the vehicle, each a process of its own with its real endpoint name. Items have
// telling values: their tick is 100 and more. The state manager also leads a process that announces
// itself: lets it subscribe, then run, then quit. Each can be reached as soon as it is started.
class FakeServers {
 public:
  explicit FakeServers(const std::map<std::string, Behaviour>& behaviours = {});
  ~FakeServers();
  FakeServers(const FakeServers&) = delete;
  FakeServers& operator=(const FakeServers&) = delete;

  // "Server item" for each item asked for since the last call, in order.
  std::vector<std::string> Asked();

  // Kills a server; starts it, with default behaviour.
  void Kill(const std::string& name) { children_.erase(name); }
  void Start(const std::string& name, const Behaviour& behaviour = {});

 private:
  int asked_[2] = {-1, -1};    // pipe with the requests
  int reached_[2] = {-1, -1};  // pipe with a byte for each endpoint that was opened
  std::map<std::string, Child> children_;
};
