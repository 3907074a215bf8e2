#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Actions.h"
#include "DriveClock.h"
#include "Publications.h"
#include "Schedule.h"
#include "clients/SubscribeServer.h"

namespace bench {

// A server around MetadataMgr, as the tables describe it: holds the values, answers subscribers, changes and
// sends values on command, and sends readings at their rate.
class Publisher {
 public:
  explicit Publisher(e_Process server);

  // Adds the server's actions. Open must come before any action.
  void AddActions(Actions& actions);

  // Begins to serve. The endpoint must outlive the publisher.
  void Open(LinxIpc& ipc);

  // The item of a source; null when the server has no such source.
  Item* ItemOf(std::string_view source);
  // Sends the item of a source. Fails when the server has no such source.
  Outcome SendItem(std::string_view source);

  const DriveClock& Drive() const { return clock_; }
  // Whether this process started after the drive began.
  bool JoinedLate() const { return clock_.Begin() < made_; }

  // For the main loop: the maximum wait for messages in ms (-1: no limit), and the work that is due.
  int WaitMs() const;
  void DoDueWork();

 private:
  class Server;
  using Clock = DriveClock::Clock;

  struct Value {
    const Publication* publication;
    std::unique_ptr<Item> item;
  };
  struct Flood {
    Value* value;
    Clock::time_point end;
    std::uint64_t sent = 0;
    std::uint64_t pushedBack = 0;  // turns that ended because the peer accepted no more
    bool waits = false;
  };

  static void DriveBeginsHandler(LinxIpc* ipc, void* self);

  Value* Find(std::string_view source);
  Value* Find(Source::Kind kind, unsigned int id);
  void GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType);
  Outcome Send(Value& value);
  // Sends the value with the tick that it has.
  Outcome SendUnchanged(const Value& value, const std::string& done);
  Outcome SendBytes(std::string_view source, const std::string& hex);
  Outcome AwaitTaken();
  Outcome Transmit(const Value& value);
  Outcome TransmitMessage(const Value& value);
  Outcome BeginFlood(std::string_view source, double seconds);
  void GoOnFlooding();

  const e_Process process_;
  LinxIpc* ipc_ = nullptr;
  std::unique_ptr<SubscribeServer> server_;
  std::vector<Value> values_;
  std::set<unsigned int> refused_;  // item ids
  int lateMs_ = 0;
  std::optional<Flood> flood_;
  const Clock::time_point made_ = Clock::now();
  DriveClock clock_;
  Schedule schedule_{clock_};
};

}  // namespace bench
