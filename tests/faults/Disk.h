#pragma once

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "WatchedVfs.h"

// Files by name, as a power cut leaves them.
using DiskState = std::map<std::string, std::string>;

// One recorded operation.
struct DiskOp {
  FileOp op;
  std::string name;
  std::size_t offset = 0;
  std::string data = {};
  bool directory = false;
};

// Notes what is done to the files of a stretch.
class DiskRecorder : public FileWatch {
 public:
  void After(const FileEvent& event) override;
  const std::vector<DiskOp>& Ops() const { return ops_; }

 private:
  std::vector<DiskOp> ops_;
};

// What becomes of all that no sync has made sure of.
enum class Fate {
  kDropped,   // nothing of it is there
  kKept,      // all of it is
  kTornLast,  // all, but of the last write only its first sectors
  kChance,    // each sector, each truncation and each directory entry as a coin falls
};

// How much a sync is worth.
enum class Honesty {
  kHonest,
  kNoSync,           // nothing is ever synced
  kNoDirectorySync,  // entries are never synced
};

// A medium behind a cache, with one directory. Contents and directory entries are durable once
// synced, the directory with a sync of its own; until then each write can be lost, or torn at
// sectors, and each entry can be missing, or still be there after its deletion, one independently
// of the other. A sector is old or new, never something else.
class Disk {
 public:
  static constexpr std::size_t kSectorBytes = 512;

  Disk(const DiskState& before, Honesty honesty);

  void Apply(const DiskOp& op);
  DiskState Cut(Fate fate, std::mt19937& random) const;

 private:
  struct Change {
    bool truncate;
    std::size_t offset;
    std::string data;
  };
  struct Node {
    std::string durable;
    std::vector<Change> pending;
  };
  struct EntryChange {
    std::string name;
    int node;  // kGone: deleted
  };
  static constexpr int kGone = -1;

  void Create(const std::string& name, const std::string& content);
  void SyncNode(Node& node) const;
  void SyncDirectory();
  static void Do(const Change& change, std::size_t bytes, std::string& content);
  static void DoByChance(const Change& change, std::mt19937& random, std::string& content);
  static std::string Content(const Node& node, Fate fate, std::mt19937& random);

  Honesty honesty_;
  std::vector<Node> nodes_;
  std::map<std::string, int> entries_;  // as the program sees them
  std::map<std::string, int> durableEntries_;
  std::vector<EntryChange> pendingEntries_;
};
