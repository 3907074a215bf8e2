#pragma once

#include <cstddef>
#include <string>

#include "Actions.h"
#include "Drive.h"
#include "DriveClock.h"
#include "Report.h"
#include "RunOptions.h"
#include "StateMgrNews.h"
#include "Surroundings.h"
#include "Vehicle.h"

namespace bench {

class Pace;

// Starts the processes, plays the drive, performs commands from other terminals, shuts everything down, and
// prints a summary.
class Director {
 public:
  // `surroundings` must be prepared. All three must outlive the director.
  Director(const RunOptions& options, const Drive& drive, const Surroundings& surroundings);

  // Returns true when nothing failed.
  bool Run();
  // Whether a replay ended because everything was played.
  bool PlayedAll() const { return vehicle_.WhyItEnds() == Vehicle::End::kPlayed; }

 private:
  bool Open();
  void Play();
  void PlayLines();
  void PlayReplay();
  bool AwaitDue(std::chrono::milliseconds at, bool look, Pace& pace);
  void AwaitBegin();
  void EndReplay();
  bool IsCutShort();
  Outcome Execute(const Words& words, const std::string& from);
  void TakeFullRun(const std::string& process);
  void TellDriveBegins(const std::string& process);

  static void DoHandler(LinxIpc* ipc, void* self);
  static void SaidHandler(LinxIpc* ipc, void* self);
  static void QuitHandler(LinxIpc* ipc, void* self);
  static void BookmarkHandler(LinxIpc* ipc, void* self);

  const RunOptions& options_;
  const Drive& drive_;
  const Surroundings& surroundings_;
  Report report_;
  Vehicle vehicle_;
  StateMgrNews news_;
  Actions actions_;
  DriveClock clock_;
  std::size_t linesPlayed_ = 0;
  double driveSeconds_ = 0;
  std::string toFullRun_;
};

}  // namespace bench
