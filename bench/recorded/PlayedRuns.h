#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Messages.h"
#include "Position.h"
#include "Replay.h"
#include "Runs.h"
#include "Selection.h"

namespace bench {

struct ReplayOptions {
  std::vector<std::string> recordings;
  std::optional<reader::Instant> from;
  std::optional<reader::Instant> to;
  int run = 0;  // 0: all; else its number, as `metadata info` counts
  HowToPlay how;
};

// The runs of recordings, to be played one after the other, each with a start and an end of its own.
class PlayedRuns {
 public:
  explicit PlayedRuns(ReplayOptions options);

  // Finds the runs, and says on standard error what is wrong with each. Returns false if there are none.
  bool Find();
  std::size_t Count() const { return runs_.size(); }
  // Begins a run. Null if nothing of it can be played or is wanted. This object must outlive the replay.
  std::unique_ptr<Replay> Begin(std::size_t index);
  // Whether everything could be read so far.
  bool Good() const { return messages_.Status() == 0; }

 private:
  struct PlayedRun {
    reader::Run run;
    bool cleanEnd = true;
  };

  bool Judge(const reader::Run& run);
  void Say(const reader::Run& run, const std::string& text) const;

  ReplayOptions options_;
  std::set<std::string> said_;  // problems; each is said once
  reader::Messages messages_;
  reader::Range range_;
  std::vector<PlayedRun> runs_;
  std::size_t found_ = 0;  // runs of the recordings
};

}  // namespace bench
