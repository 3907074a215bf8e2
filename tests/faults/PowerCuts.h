#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Disk.h"
#include "Usage.h"
#include "WholeFile.h"
#include "support/TempDir.h"

// A stretch of use with all that was done to its files: the states that a power cut at any point of
// it can leave are held against what the store had promised by then.
class PowerCuts {
 public:
  struct Plan {
    Honesty honesty = Honesty::kHonest;
    int chances = 1;      // states in which chance decides, at each point
    int reopenEvery = 0;  // every so manieth state the store is opened once more; 0: never
    // Only where a recording itself is written, not its log; and of these points every so manieth.
    bool onlyNearFileWrites = false;
    std::size_t step = 1;
    bool untilFault = false;
  };
  struct Result {
    int states = 0;  // different ones
    int reopened = 0;
    int faults = 0;
    std::string firstFault;
    unsigned int oldestLostMs = 0;  // how old a record can be that is lost
    unsigned int oldestLostCriticalMs = 0;
  };

  // Records the stretch: a run of the store after one that ended without a close.
  PowerCuts(std::uint64_t maxFileBytes, void (*stretch)(Usage& usage));

  Result Cut(const Plan& plan);
  std::size_t Files() const { return files_.size(); }
  // How often this was done to a file, a write at the offset 0.
  int Count(FileOp op, const std::string& name) const;

 private:
  struct Call {
    unsigned int tick;
    std::size_t ops;                                // operations until it returned
    std::map<std::string, std::int64_t> committed;  // last record of each file, as another connection sees it
  };

  struct Recorded {
    unsigned int tick;
    bool critical;
  };

  void NoteCall(const Usage& usage);
  void ReadFiles();
  bool NearFileWrite(std::size_t point) const;
  std::string FaultOf(const DiskState& state, std::size_t point, Result& result);
  void NoteAges(unsigned int now, std::int64_t last, Result& result) const;
  std::string FaultOfReopening(const DiskState& state) const;
  WholeFile::Found Look(const DiskState& state, const std::string& name);

  TempDir dir_;
  TempDir cutDir_;
  DiskState before_;
  DiskRecorder recorder_;
  std::vector<Call> calls_;
  std::map<std::int64_t, Recorded> recorded_;  // by their numbers
  std::map<std::string, WholeFile> files_;     // by name, so in their order
  std::map<std::uint64_t, WholeFile::Found> known_;
};
