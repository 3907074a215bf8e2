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

// One of the servers around MetadataMgr, made from the tables: holds its values, answers subscribers,
// changes and sends values on command, and sends readings at their rate.
class Publisher {
 public:
  explicit Publisher(e_Process server);

  // Adds the server's actions. They may be called once the publisher is open.
  void AddActions(Actions& actions);

  // Serves from now on. The endpoint must outlive the publisher.
  void Open(LinxIpc& ipc);

  // The item of one of its sources; null when the server has no such source.
  Item* ItemOf(std::string_view source);
  // Sends that item. Fails when the server has no such source.
  Outcome SendItem(std::string_view source);

  const DriveClock& Drive() const { return clock_; }
  // Whether the drive had begun when this process was made.
  bool JoinedLate() const { return clock_.Begin() < made_; }

  // For the loop: milliseconds that it may wait for messages (-1: for ever), and the work that is due then.
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
    std::uint64_t pushedBack = 0;  // turns that ended because the peer took no more
    bool waits = false;
  };

  static void DriveBeginsHandler(LinxIpc* ipc, void* self);

  Value* Find(std::string_view source);
  Value* Find(Source::Kind kind, unsigned int id);
  void GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType);
  Outcome Send(Value& value);
  Outcome Transmit(Value& value);
  Outcome TransmitMessage(const Value& value);
  Outcome BeginFlood(std::string_view source, double seconds);
  void GoOnFlooding();

  const e_Process process_;
  LinxIpc* ipc_ = nullptr;
  std::unique_ptr<SubscribeServer> server_;
  std::vector<Value> values_;
  std::set<unsigned int> refused_;  // items
  int lateMs_ = 0;
  std::optional<Flood> flood_;
  const Clock::time_point made_ = Clock::now();
  DriveClock clock_;
  Schedule schedule_{clock_};
};

}  // namespace bench
