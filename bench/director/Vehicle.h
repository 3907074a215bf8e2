#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Actions.h"
#include "Children.h"
#include "Report.h"
#include "Stages.h"
#include "Surroundings.h"
#include "ipc/LinxIpc.h"

namespace bench {

// The processes of a run and the director's endpoint: starts the processes, receives their messages, and
// detects their ends.
class Vehicle {
 public:
  using Clock = Screen::Clock;
  using Stage = Stages::Stage;

  // The time for a process to end after its answer or a signal.
  static constexpr std::chrono::milliseconds kEndTimeout{2000};

  // Both must outlive the vehicle.
  Vehicle(const Surroundings& surroundings, Report& report);

  LinxIpc& Ipc() { return ipc_; }
  Children& Processes() { return children_; }
  Stages& Progress() { return stages_; }

  // Opens the endpoint. On failure returns false and reports it.
  bool Open();

  // Starts a program, or a role of this program. On failure returns false and reports it.
  bool Start(const std::string& name, const std::vector<std::string>& arguments);
  bool StartRole(const std::string& name, const std::vector<std::string>& arguments = {});
  // ReceiveUntil starts the role at that time.
  void StartRoleAt(const std::string& name, Clock::time_point at) { lateStarts_[name] = at; }
  void StartNoMore() { lateStarts_.clear(); }

  // The verbs that kill, start, mute and wake servers.
  Actions ServerActions();

  // Receives until `done` holds. Returns false when `end` passes first; `end` may move meanwhile.
  bool ReceiveUntil(const Clock::time_point& end, const std::function<bool()>& done);

  // Why the run must end.
  enum class End { kNone, kPlayed, kAskedFor, kBroken };
  End WhyItEnds() const { return end_; }
  bool MustEnd() const { return end_ != End::kNone; }
  void MustEndNow(End why) { end_ = why; }

  // Notes the start of a process that the user started. Returns false when its start is already known.
  bool NoteStart(const std::string& process);
  // The time since the start of the process, " after 12 ms"; empty when the start is not known.
  std::string SinceStart(const std::string& process) const;
  // "; see LOG"; empty when the bench did not start the process.
  std::string SeeLog(const std::string& process) const;
  // The path of this program.
  const std::string& Program() const { return program_; }

 private:
  Outcome Kill(const std::string& server);
  Outcome StartAgain(const std::string& server);
  Outcome Signal(const std::string& server, int signal);
  bool IsRunning(const std::string& server) const;
  void LookAfterChildren();
  void TakeEnd(const Child& child);
  void StartLateRoles();

  const Surroundings& surroundings_;
  Report& report_;
  const std::string program_;
  LinxIpc ipc_;
  Children children_;
  Stages stages_;
  std::map<std::string, Clock::time_point> startTimes_;
  std::map<std::string, Clock::time_point> lateStarts_;
  std::set<std::string> killed_;
  End end_ = End::kNone;
};

}  // namespace bench
