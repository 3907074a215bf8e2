#pragma once

#include <cstdint>
#include <functional>
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

// Records all operations on the files.
class DiskRecorder : public FileWatch {
 public:
  void After(const FileEvent& event) override;
  const std::vector<DiskOp>& Ops() const { return ops_; }

  // Runs after each operation.
  std::function<void()> afterOp = [] {};

 private:
  std::vector<DiskOp> ops_;
};

// What happens to unsynced changes at a power cut.
enum class Fate {
  kDropped,   // all unsynced changes are lost
  kKept,      // all unsynced changes are there
  kTornLast,  // as kKept, but the last write has only its first sectors
  kChance,    // chance decides for each sector, truncation and directory entry
};

// What a sync makes durable.
enum class Honesty {
  kHonest,
  kNoSync,           // nothing is ever durable
  kNoDirectorySync,  // directory entries are never durable
};

// A medium behind a cache, with one directory. Contents are durable after a sync of the file, directory
// entries after a sync of the directory. Until then each write can be lost or torn at sectors, and each entry
// can be missing, or still be there after its deletion, independently. A sector is old or new, never anything
// else.
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
  std::map<std::string, int> entries_;  // as the program sees them now
  std::map<std::string, int> durableEntries_;
  std::vector<EntryChange> pendingEntries_;
};
