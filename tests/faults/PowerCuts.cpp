#include "PowerCuts.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>

#include "DiskFiles.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kEarlierRun = "metadata.000001.db";

bool IsRecording(const std::string& name) {
  return name.ends_with(".db");
}

}  // namespace

PowerCuts::PowerCuts(std::uint64_t maxFileBytes, void (*stretch)(Usage& usage)) : before_(RunWithoutClose()) {
  StoreOptions options;
  options.maxFileBytes = maxFileBytes;
  WriteFiles(before_, "", dir_);
  const WatchedVfs vfs(recorder_);
  Usage usage(dir_.Path("metadata"), options);
  usage.afterCall = [this, &usage] { NoteCall(usage); };
  stretch(usage);
  ReadFiles();
}

void PowerCuts::NoteCall(const Usage& usage) {
  Call call{usage.Now(), recorder_.Ops().size(), {}};
  for (const auto& entry : fs::directory_iterator(dir_.Path(""))) {
    const std::string name = entry.path().filename().string();
    if (!IsRecording(name)) continue;
    const std::string last =
        Connection(entry.path().string(), kPlainVfs).Rows("SELECT last_seq FROM progress");
    call.committed[name] = std::strtoll(last.c_str(), nullptr, 10);
    files_[name].AddCommit(call.committed[name]);
  }
  calls_.push_back(std::move(call));
}

void PowerCuts::ReadFiles() {
  for (auto& [name, whole] : files_) {
    whole.Read(dir_.Path(name));
    if (name == kEarlierRun) continue;
    std::istringstream rows(
        Connection(dir_.Path(name), kPlainVfs)
            .Rows("SELECT seq||' '||tick||' '||(source IN ('bookmark','covert')) FROM record WHERE event=1"));
    std::int64_t seq = 0;
    for (Recorded row{}; rows >> seq >> row.tick >> row.critical;) recorded_[seq] = row;
  }
}

int PowerCuts::Count(FileOp op, const std::string& name) const {
  const auto same = [op, &name](const DiskOp& done) {
    return done.op == op && done.name == name && done.offset == 0;
  };
  return static_cast<int>(std::count_if(recorder_.Ops().begin(), recorder_.Ops().end(), same));
}

bool PowerCuts::NearFileWrite(std::size_t point) const {
  constexpr std::size_t kNear = 12;
  const std::vector<DiskOp>& ops = recorder_.Ops();
  const std::size_t end = std::min(ops.size(), point + kNear);
  for (std::size_t i = point < kNear ? 0 : point - kNear; i < end; ++i) {
    if (ops[i].op != FileOp::kOpen && IsRecording(ops[i].name)) return true;
  }
  return false;
}

PowerCuts::Result PowerCuts::Cut(const Plan& plan) {
  Result result;
  std::set<std::uint64_t> seen;
  std::mt19937 random(1);
  Disk disk(before_, plan.honesty);
  for (std::size_t point = 0; point <= recorder_.Ops().size(); ++point) {
    if (plan.untilFault && result.faults > 0) break;
    if (point > 0) disk.Apply(recorder_.Ops()[point - 1]);
    if (point % plan.step != 0 || (plan.onlyNearFileWrites && !NearFileWrite(point))) continue;
    for (int i = 0; i < static_cast<int>(Fate::kChance) + plan.chances; ++i) {
      const Fate fate = std::min(static_cast<Fate>(i), Fate::kChance);
      const DiskState state = disk.Cut(fate, random);
      if (seen.insert(Hash(state, "")).second) ++result.states;
      std::string fault = FaultOf(state, point, result);
      if (fault.empty() && plan.reopenEvery > 0 &&
          result.states >= plan.reopenEvery * (result.reopened + 1)) {
        ++result.reopened;
        fault = FaultOfReopening(state);
      }
      if (fault.empty()) continue;
      if (result.faults++ == 0) result.firstFault = fault.append(" at point ").append(std::to_string(point));
    }
  }
  return result;
}

std::string PowerCuts::FaultOf(const DiskState& state, std::size_t point, Result& result) {
  std::size_t returned = 0;  // calls
  while (returned < calls_.size() && calls_[returned].ops <= point) ++returned;
  std::int64_t last = 0;
  bool complete = true;  // each file up to here
  for (const auto& [name, whole] : files_) {
    const WholeFile::Found found = Look(state, name);
    if (!found.fault.empty()) return name + ": " + found.fault;
    if (!complete && found.last > 0) return name + " follows one that is not complete";
    complete = complete && found.last == whole.Last();
    if (name == kEarlierRun) {
      if (!complete) return "records of the earlier run are lost";
      continue;
    }
    last = std::max(last, found.last);
    if (returned == 0) continue;
    const auto committed = calls_[returned - 1].committed.find(name);
    if (committed != calls_[returned - 1].committed.end() && found.last < committed->second)
      return name + ": a commit is lost";
  }
  NoteAges(calls_[std::min(returned, calls_.size() - 1)].tick, last, result);
  return {};
}

// How old at this tick those are that are lost: all behind the last.
void PowerCuts::NoteAges(unsigned int now, std::int64_t last, Result& result) const {
  for (auto it = recorded_.upper_bound(last); it != recorded_.end() && it->second.tick <= now; ++it) {
    unsigned int& oldest = it->second.critical ? result.oldestLostCriticalMs : result.oldestLostMs;
    oldest = std::max(oldest, now - it->second.tick);
  }
}

std::string PowerCuts::FaultOfReopening(const DiskState& state) const {
  WriteFiles(state, "", cutDir_);
  Usage usage(cutDir_.Path("metadata"), StoreOptions());
  if (!usage.Open()) return "the next run cannot record";
  usage.Bookmark();
  usage.Close();
  const DiskState after = ::ReadFiles(cutDir_);
  const std::string newest = after.rbegin()->first;
  if (!IsRecording(newest) || state.contains(newest)) return "the next run has begun no file";
  Connection file(cutDir_.Path(newest), kPlainVfs);
  if (file.Rows("SELECT count(*) FROM bookmark") != "1\n") return "the next run has not recorded";
  const std::string ended = file.Rows("SELECT ended FROM previous_run");
  if (ended != "cut off\n" && ended != "clean\n") return "told of this run: " + ended;
  for (const auto& [name, whole] : files_) {
    if (!state.contains(name)) continue;
    const std::string fault = whole.Compare(cutDir_.Path(name)).fault;
    if (!fault.empty()) return "the next run has changed " + name;
  }
  return {};
}

WholeFile::Found PowerCuts::Look(const DiskState& state, const std::string& name) {
  if (!state.contains(name)) return {};
  const auto [known, isNew] = known_.try_emplace(Hash(state, name));
  if (isNew) {
    WriteFiles(state, name, cutDir_);
    known->second = files_.at(name).Compare(cutDir_.Path(name));
  }
  return known->second;
}
