#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "Commands.h"
#include "Director.h"
#include "Receiver.h"
#include "RecordedDrive.h"
#include "Surroundings.h"
#include "log/LogClient.h"

namespace bench {

namespace {

// Plays one run after the other, until all are played or the bench is asked to end. Returns whether none
// failed.
bool PlayRuns(PlayedRuns& runs, const Options& options, const Surroundings& surroundings) {
  bool good = true;
  bool any = false;
  do {
    for (std::size_t i = 0; i < runs.Count(); ++i) {
      const std::unique_ptr<Replay> replay = runs.Begin(i);
      if (replay == nullptr) continue;
      any = true;
      const Drive drive = replay->Drive();
      Director director(options.run, drive, surroundings);
      good = director.Run() && good;
      if (!director.PlayedAll()) return good;
    }
  } while (options.replay.how.loop && any);
  if (!any) (void)std::fprintf(stderr, "there is nothing to play\n");
  return good && any;
}

// Never overwrites an existing file.
bool WriteNew(const std::string& path, const std::string& text) {
  std::FILE* file = path.empty() ? stdout : std::fopen(path.c_str(), "wxe");
  if (file == nullptr) {
    (void)std::fprintf(stderr, "%s: %s\n", path.c_str(), std::strerror(errno));
    return false;
  }
  bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  if (file != stdout) written = std::fclose(file) == 0 && written;
  if (!written) (void)std::fprintf(stderr, "cannot write the drive\n");
  return written;
}

RecordedDrive MakeDrive(const Options& options) {
  if (!options.exact) return DriveOf(options.replay.recordings, options.replay.run);
  ReplayOptions kept = options.replay;
  kept.how.moveTicks = false;
  PlayedRuns runs(kept);
  if (!runs.Find()) return {};
  std::unique_ptr<Replay> replay;
  for (std::size_t i = 0; i < runs.Count() && replay == nullptr; ++i) replay = runs.Begin(i);
  if (replay == nullptr) return {};
  RecordedDrive drive = ExactDriveOf(*replay);
  if (runs.Count() > 1) drive.problems.push_back(OtherRuns(runs.Count()));
  if (!runs.Good()) drive.problems.emplace_back("not all of the recording can be read");
  return drive;
}

}  // namespace

int ReportErrors(const std::vector<std::string>& errors) {
  for (const std::string& error : errors) (void)std::fprintf(stderr, "%s\n", error.c_str());
  return errors.empty() ? kGood : kUsage;
}

void ForgetReceiver() {
  for (const char* variable : {kNmeaVariable, kNmeaEndsDriveVariable, kGpsdVariable}) unsetenv(variable);
}

int PlayReplay(Options& options) {
  LogClient::Instance().Level(0);
  std::string error;
  if (!CompleteReplay(options, error)) return ReportErrors({error});
  PlayedRuns runs(options.replay);
  if (!runs.Find()) return kFailed;
  ForgetReceiver();
  Surroundings surroundings(options.out);
  if (!surroundings.Prepare(error)) {
    (void)ReportErrors({error});
    return kFailed;
  }
  const bool played = PlayRuns(runs, options, surroundings);
  return played && runs.Good() ? kGood : kFailed;
}

int WriteDrive(const Options& options) {
  const RecordedDrive drive = MakeDrive(options);
  for (const std::string& problem : drive.problems) (void)std::fprintf(stderr, "%s\n", problem.c_str());
  if (drive.lines == 0) {
    (void)std::fprintf(stderr, "no events to make a drive of\n");
    return kFailed;
  }
  return WriteNew(options.output, drive.text) && drive.problems.empty() ? kGood : kFailed;
}

}  // namespace bench
