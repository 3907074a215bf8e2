#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "Actions.h"
#include "Publications.h"
#include "clients/SubscribeServer.h"

// One of the servers around MetadataMgr, out of the tables: holds its values, answers who asks for
// them, changes and sends them on command, and readings at their rate.
class Publisher {
 public:
  explicit Publisher(e_Process server);

  // Adds what can be asked of it. The actions are used when it is open.
  void AddActions(Actions& actions);

  // From now on it serves.
  void Open(LinxIpc& ipc);

  // One of its items, and the sending of it; null and no success where it has none of that number.
  Item* ItemOf(unsigned int itemId);
  Outcome SendItem(unsigned int itemId);

  // The drive: its time in seconds, and how many times faster it runs; valid while it is driving.
  bool Driving() const { return driving_; }
  double DriveSeconds() const;
  double Speed() const { return speed_; }
  // It had begun when this process did.
  bool JoinedLate() const { return begin_ < made_; }

  // For the loop: how long it may wait for messages, -1: for ever; and what is due then.
  int WaitMs() const;
  void DoDueWork();

 private:
  class Server;
  using Clock = std::chrono::steady_clock;

  struct Value {
    const Publication* publication;
    std::unique_ptr<Item> item;
  };
  struct Source {  // of readings
    const Reading* reading;
    double perSecond = 0;  // of the drive; 0: none
    double nextSecond = 0;
  };

  struct Flood {
    Value* value;
    Clock::time_point end;
    std::uint64_t sent = 0;
    std::uint64_t pushedBack = 0;  // turns that ended because the peer took no more
    bool waits = false;
  };

  static void DriveBeginsHandler(LinxIpc* ipc, void* self);

  Value* Find(Publication::Kind kind, unsigned int id);
  void GetItem(unsigned int itemId, IpcMessage& reply, unsigned int messageType);
  Outcome Send(Value& value);
  Outcome Transmit(Value& value);
  int MsToNextReading() const;
  void SendReadings();
  Outcome BeginFlood(const std::string& source, double seconds);
  void GoOnFlooding();
  Outcome SetRate(Source& source, double perSecond);
  void Align(Source& source) const;

  const e_Process process_;
  LinxIpc* ipc_ = nullptr;
  std::unique_ptr<SubscribeServer> server_;
  std::vector<Value> values_;
  std::vector<Source> sources_;
  std::set<unsigned int> refused_;  // items
  int lateMs_ = 0;
  std::optional<Flood> flood_;
  const Clock::time_point made_ = Clock::now();
  bool driving_ = false;
  Clock::time_point begin_;  // of the drive
  double speed_ = 1;
};
