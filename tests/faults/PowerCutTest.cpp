// Cuts the power at every operation of a run. Compares the remaining files with the records that another
// connection saw as committed by then.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>

#include "DiskFiles.h"
#include "Usage.h"
#include "support/Sealed.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kStep = MM_FAULT_STEP;  // 1: every point
constexpr int kChances = 4;                   // random states at each point
constexpr std::size_t kVerifyEvery = 8;       // states per check of the seals; with 1 it takes minutes
constexpr std::size_t kReopenEvery = 50;      // states per check of the next run
constexpr const char* kEarlierRun = "metadata.000001.db";

bool IsRecording(const std::string& name) {
  return name.ends_with(".db");
}

// Opens the store beside an old WAL, begins a file, makes commits of all kinds, turns over to the next file
// and to the next epoch of seals, and closes.
void UseStore(Usage& usage) {
  ASSERT_TRUE(usage.Open());
  for (unsigned int i = 0; i < 60; ++i) {
    usage.Temperature();
    if (i % 3 == 0) usage.Text(i % 2 == 0 ? 40 : 1000);
    if (i % 4 == 1) usage.Bookmark();
    if (i % 8 == 1) usage.Covert();
    usage.Turn(i == 40 ? 600'000 : i % 7 == 0 ? 1000 : i % 4 == 2 ? 30 : 250);
  }
  usage.Close();
}

// The content of a recording: its records, one per line, and the number of the last record (0: none).
struct Content {
  std::string fault;  // empty: sound
  std::string records;
  long last = 0;
};

Content ContentOf(const std::string& path) {
  Connection file(path, kPlainVfs);
  Content content;
  const std::string sound = file.Rows("PRAGMA integrity_check");
  if (sound != "ok\n") content.fault = "not sound: " + sound;
  const bool begun = file.Rows("SELECT count(*) FROM sqlite_schema") != "0\n";
  if (!content.fault.empty() || !begun) return content;
  content.records = file.Rows("SELECT seq, tick, sender_tick, event, source, text FROM record ORDER BY seq");
  const std::string last = file.Rows("SELECT max(last_seq) FROM seal");
  content.last = std::strtol(last.c_str(), nullptr, 10);
  const std::string isLast =
      "SELECT coalesce(max(last_seq),0)=coalesce((SELECT max(seq) FROM record),0) FROM seal";
  if (file.Rows(isLast) != "1\n") content.fault = "ends within a commit, at " + last;
  return content;
}

class PowerCutTest : public testing::Test {
 protected:
  // Records a run of the store that follows a run without a close.
  void SetUp() override {
    WriteFiles(before_, "", dir_);
    StoreOptions options;
    options.maxFileBytes = std::uint64_t{128} << 10;
    options.keyFile = sealed_.KeyFile();
    recorder_.afterOp = [this] { NoteKey(); };
    NoteKey();
    const WatchedVfs vfs(recorder_);
    Usage usage(dir_.Path("metadata"), options);
    usage.afterCall = [this] { NoteCall(); };
    UseStore(usage);
    NoteKey();
    for (auto& [name, content] : files_) content = ContentOf(dir_.Path(name));
  }

  // The first fault after a cut on such a medium, at every `step`th point; empty: none.
  std::string FirstFault(Honesty honesty, std::size_t step) {
    std::mt19937 random(1);
    Disk disk(before_, honesty);
    for (std::size_t point = 0; point <= recorder_.Ops().size(); ++point) {
      if (point > 0) disk.Apply(recorder_.Ops()[point - 1]);
      for (int i = 0; point % step == 0 && i < static_cast<int>(Fate::kChance) + kChances; ++i) {
        const DiskState state = disk.Cut(std::min(static_cast<Fate>(i), Fate::kChance), random);
        std::string fault = FaultOf(state, point);
        const bool isNew = states_.insert(Hash(state, "")).second;
        const auto isDue = [&](std::size_t every) {
          return isNew && fault.empty() && (KeyMoves(point) || states_.size() % every == 0);
        };
        if (isDue(kVerifyEvery)) fault = FaultOfSeals(state);
        if (isDue(kReopenEvery)) fault = FaultOfReopening(state, point);
        if (!fault.empty()) return fault.append(" at point ").append(std::to_string(point));
      }
    }
    return {};
  }

  std::map<std::string, Content> files_;  // by name, as they are at the end
  std::set<std::size_t> states_;          // states already checked

 private:
  struct Call {
    std::size_t ops;                        // operations up to the return of the call
    std::map<std::string, long> committed;  // last record by file
  };

  void NoteCall() {
    Call call{recorder_.Ops().size(), {}};
    for (const auto& entry : fs::directory_iterator(dir_.Path(""))) {
      const std::string name = entry.path().filename().string();
      if (!IsRecording(name)) continue;
      const std::string last = Connection(entry.path(), kPlainVfs).Rows("SELECT max(last_seq) FROM seal");
      call.committed[name] = std::strtol(last.c_str(), nullptr, 10);
      files_.try_emplace(name);
    }
    calls_.push_back(std::move(call));
  }

  std::string FaultOf(const DiskState& state, std::size_t point) {
    const auto returned =
        std::find_if(calls_.rbegin(), calls_.rend(), [point](const Call& call) { return call.ops <= point; });
    bool complete = true;  // all files so far are complete
    for (const auto& [name, whole] : files_) {
      const Content found = Look(state, name);
      if (!found.fault.empty()) return name + ": " + found.fault;
      if (!whole.records.starts_with(found.records)) return name + ": other records than were written";
      if (!complete && found.last > 0) return name + " follows one that is not complete";
      complete = complete && found.last == whole.last;
      if (name == kEarlierRun && !complete) return "records of the earlier run are lost";
      if (returned == calls_.rend()) continue;
      const auto committed = returned->committed.find(name);
      if (committed != returned->committed.end() && found.last < committed->second)
        return name + ": a commit is lost";
    }
    return {};
  }

  void NoteKey() { keys_.push_back(TextOfFile(sealed_.KeyFile())); }

  // Whether the key moves between this operation and the next one.
  bool KeyMoves(std::size_t point) const { return keys_[point] != keys_[point + 1]; }

  std::string FaultOfSeals(const DiskState& state) const {
    WriteFiles(state, "", cutDir_);
    return sealed_.Unproven(cutDir_.Path(""));
  }

  // The next run, with each state in which the cut can leave the key file.
  std::string FaultOfReopening(const DiskState& state, std::size_t point) const {
    std::string both = keys_[point + 1];  // the new key is written, the old one is still there
    for (const std::size_t slot : {std::size_t{0}, both.size() / 2})
      if (both[slot] == 0) both.replace(slot, both.size() / 2, keys_[point], slot, both.size() / 2);
    for (const std::string& key : std::set{keys_[point], both, keys_[point + 1]}) {
      std::ofstream(sealed_.KeyFile(), std::ios::binary) << key;
      if (std::string fault = FaultOfNextRun(state); !fault.empty()) return fault;
    }
    return {};
  }

  std::string FaultOfNextRun(const DiskState& state) const {
    WriteFiles(state, "", cutDir_);
    StoreOptions options;
    options.keyFile = sealed_.KeyFile();
    Usage usage(cutDir_.Path("metadata"), options);
    if (!usage.Open()) return "the next run cannot record";
    usage.Bookmark();
    usage.Close();
    const std::string newest = ReadFiles(cutDir_).rbegin()->first;
    if (!IsRecording(newest) || state.contains(newest)) return "the next run has begun no file";
    const std::string told = Connection(cutDir_.Path(newest), kPlainVfs)
                                 .Rows("SELECT ended, (SELECT count(*) FROM bookmark) FROM previous_run");
    if (told != "cut off|1\n" && told != "clean|1\n") return "the next run tells " + told;
    for (const auto& [name, whole] : files_) {
      if (!state.contains(name)) continue;
      const Content found = ContentOf(cutDir_.Path(name));
      if (!found.fault.empty() || !whole.records.starts_with(found.records))
        return "the next run has changed " + name;
    }
    return sealed_.Unproven(cutDir_.Path(""));
  }

  const Content& Look(const DiskState& state, const std::string& name) {
    const auto [known, isNew] = known_.try_emplace(Hash(state, name));
    if (isNew && state.contains(name)) {
      WriteFiles(state, name, cutDir_);
      known->second = ContentOf(cutDir_.Path(name));
    }
    return known->second;
  }

  TempDir dir_;
  TempDir cutDir_;
  Sealed sealed_;
  DiskState before_ = RunWithoutClose(sealed_.KeyFile());
  DiskRecorder recorder_;
  std::vector<std::string> keys_;  // the key file before each operation, and at the end
  std::vector<Call> calls_;
  std::map<std::size_t, Content> known_;
};

TEST_F(PowerCutTest, NothingCommittedIsLostWhereverTheStretchIsCut) {
  EXPECT_EQ(FirstFault(Honesty::kHonest, kStep), "");
  std::printf("%zu states\n", states_.size());
  EXPECT_GE(states_.size(), 3000 / kStep);
  EXPECT_GE(files_.size(), 3U) << "the earlier run's, and at least two";
}

// Proves that the checks can fail.
TEST_F(PowerCutTest, ABadMediumIsFoundOut) {
  for (const Honesty honesty : {Honesty::kNoSync, Honesty::kNoDirectorySync}) {
    const std::string fault = FirstFault(honesty, 1);
    EXPECT_NE(fault, "");
    std::printf("%s\n", fault.c_str());
  }
}

// One bit of the WAL is flipped. The WAL and its file are evidence: the next run never changes them, wherever
// the power is cut.
TEST(DamagedWal, IsNeverChangedWhereverTheNextRunIsCut) {
  const TempDir dir;
  const std::string wal = std::string(kEarlierRun) + "-wal";
  DiskState before = RunWithoutClose();
  before[wal][before[wal].size() / 2] ^= 1;
  WriteFiles(before, "", dir);
  DiskRecorder recorder;
  {
    const WatchedVfs vfs(recorder);
    Usage usage(dir.Path("metadata"));
    UseStore(usage);
  }
  std::mt19937 random(1);
  Disk disk(before, Honesty::kHonest);
  for (const DiskOp& op : recorder.Ops()) {
    disk.Apply(op);
    DiskState state = disk.Cut(Fate::kChance, random);
    ASSERT_EQ(state[kEarlierRun], before[kEarlierRun]);
    ASSERT_EQ(state[wal], before[wal]);
  }
  EXPECT_TRUE(dir.Read(kEarlierRun) == before[kEarlierRun] && dir.Read(wal) == before[wal]);
  EXPECT_EQ(Connection(dir.Path("metadata.000002.db"), kPlainVfs).Rows("SELECT ended FROM previous_run"),
            "damaged\n");
}

}  // namespace
