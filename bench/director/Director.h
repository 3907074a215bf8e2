#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Actions.h"
#include "BenchMessages.h"
#include "Children.h"
#include "Drive.h"
#include "Report.h"
#include "Stages.h"
#include "Surroundings.h"
#include "ipc/LinxIpc.h"

struct RunOptions {
  double speed = 1;                  // how many times faster than its times the drive runs
  bool attach = false;               // MetadataMgr is started by hand
  std::string program;               // of MetadataMgr; empty: the one beside this program
  double startDeadlineSeconds = 30;  // from the start, or the attached MetadataMgr's, to full run
  double stopDeadlineSeconds = 5;    // that a process has to answer the shut-down
};

// Runs a drive: starts the processes, plays the lines, performs what other terminals send, shuts
// everything down, and says how it went.
class Director {
 public:
  // `surroundings` are prepared; all three live as long as the director.
  Director(const RunOptions& options, const Drive& drive, const Surroundings& surroundings);

  // True when all went well.
  bool Run();

 private:
  using Clock = Screen::Clock;
  using Stage = Stages::Stage;

  static constexpr std::chrono::milliseconds kEndTimeout{2000};  // from an answer, or a signal, to the end

  static std::chrono::milliseconds FromSeconds(double seconds) {
    return std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
  }

  bool Open();
  bool StartAll();
  bool ReadMissing();
  bool StartStateMgr();
  bool StartRoles();
  void StartLateOnes();
  bool StartMetadataMgr();
  bool StartRole(const std::string& name);
  bool StartChild(const std::string& name, const std::vector<std::string>& arguments);
  void Play();
  void StopAll();
  void EndUnannounced();
  void EndLeftovers();

  // Receives until `done` holds; false when it does not by `end`, which may move meanwhile.
  bool ReceiveUntil(const Clock::time_point& end, const std::function<bool()>& done);
  void LookAfterChildren();
  bool MustEnd() const { return quit_ || broken_; }

  static void NewsHandler(LinxIpc* ipc, void* self);
  static void DoHandler(LinxIpc* ipc, void* self);
  static void QuitHandler(LinxIpc* ipc, void* self);
  static void BookmarkHandler(LinxIpc* ipc, void* self);
  void TakeNews(News news, const std::string& process, const std::string& text);
  void TakeFullRun(const std::string& process, const std::string& text);
  void TellDriveBegins(const std::string& process);
  Outcome Execute(const Words& words, const std::string& from);

  // What happens to one of the servers.
  Outcome Kill(const std::string& server);
  Outcome Start(const std::string& server);
  Outcome Signal(const std::string& server, int signal);
  bool IsRunning(const std::string& server) const;

  // The steps of the others are news only when they come alone.
  bool IsWorthALine(const std::string& process) const;
  bool MustEndWell(const std::string& process) const;
  std::string SinceStartOf(const std::string& process) const;
  std::string Log(const std::string& process) const;

  const RunOptions& options_;
  const Drive& drive_;
  const Surroundings& surroundings_;
  const std::string program_;  // this one
  Report report_;
  LinxIpc ipc_;
  Actions actions_;
  Children children_;

  Stages stages_;
  std::map<std::string, std::chrono::milliseconds> missing_;  // how long; negative: for good
  std::map<std::string, Clock::time_point> lateStarts_;
  std::set<std::string> killed_;
  unsigned int othersStopped_ = 0;
  Clock::time_point driveBegin_;
  std::map<std::string, Clock::time_point> startTimes_;
  Clock::time_point startEnd_;
  bool stateMgrReady_ = false;
  bool driving_ = false;
  bool quit_ = false;    // the drive's end was asked for
  bool broken_ = false;  // it cannot go on
  bool stopping_ = false;
  bool allStopped_ = false;
  bool signalled_ = false;  // leftovers were

  std::size_t linesPlayed_ = 0;
  std::string toFullRun_;
  double driveSeconds_ = 0;
  unsigned long peakMemoryKb_ = 0;
};

// The path of the running program.
std::string OwnProgram();
