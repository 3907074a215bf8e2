#include "Disk.h"

#include <algorithm>
#include <utility>

#include "support/TempDir.h"

namespace {

bool Coin(std::mt19937& random) {
  return (random() & 1U) != 0;
}

}  // namespace

void DiskRecorder::After(const FileEvent& event) {
  std::string data(event.data);
  if (event.op == FileOp::kOpen) data = TextOfFile(std::string(event.path));
  ops_.push_back({event.op, std::string(event.path.substr(event.path.rfind('/') + 1)),
                  static_cast<std::size_t>(event.offset), std::move(data), event.directory});
  afterOp();
}

Disk::Disk(const DiskState& before, Honesty honesty) : honesty_(honesty) {
  for (const auto& [name, content] : before) {
    entries_[name] = durableEntries_[name] = static_cast<int>(nodes_.size());
    nodes_.push_back({content, {}});
  }
}

// The program syncs such a file before it gets its name, and the directory after.
void Disk::Create(const std::string& name, const std::string& content) {
  const int node = static_cast<int>(nodes_.size());
  nodes_.emplace_back();
  entries_[name] = node;
  pendingEntries_.push_back({name, node});
  if (content.empty()) return;
  nodes_.back().pending.push_back({false, 0, content});
  SyncNode(nodes_.back());
  SyncDirectory();
}

void Disk::Apply(const DiskOp& op) {
  const auto found = entries_.find(op.name);
  switch (op.op) {
    case FileOp::kOpen:  // detects files that the program created without SQLite
      if (found == entries_.end()) Create(op.name, op.data);
      return;
    case FileOp::kDelete:
      entries_.erase(op.name);
      pendingEntries_.push_back({op.name, kGone});
      break;
    case FileOp::kWrite:
    case FileOp::kTruncate:
      nodes_.at(static_cast<std::size_t>(found->second))
          .pending.push_back({op.op == FileOp::kTruncate, op.offset, op.data});
      return;
    case FileOp::kRead:
      return;
    case FileOp::kSync:
      SyncNode(nodes_.at(static_cast<std::size_t>(found->second)));
      break;
  }
  if (op.directory) SyncDirectory();
}

void Disk::SyncNode(Node& node) const {
  if (honesty_ == Honesty::kNoSync) return;
  for (const Change& change : node.pending) Do(change, change.data.size(), node.durable);
  node.pending.clear();
}

void Disk::SyncDirectory() {
  if (honesty_ == Honesty::kNoSync || honesty_ == Honesty::kNoDirectorySync) return;
  durableEntries_ = entries_;
  pendingEntries_.clear();
}

// Applies the first bytes of a write, or a truncation.
void Disk::Do(const Change& change, std::size_t bytes, std::string& content) {
  if (change.truncate) {
    content.resize(change.offset);
  } else if (bytes > 0) {
    content.resize(std::max(content.size(), change.offset + bytes));
    content.replace(change.offset, bytes, change.data, 0, bytes);
  }
}

void Disk::DoByChance(const Change& change, std::mt19937& random, std::string& content) {
  if (change.truncate) {
    if (Coin(random)) Do(change, 0, content);
    return;
  }
  for (std::size_t done = 0; done < change.data.size();) {
    const std::size_t offset = change.offset + done;
    const std::size_t size = std::min(kSectorBytes - offset % kSectorBytes, change.data.size() - done);
    if (Coin(random)) Do({false, offset, change.data.substr(done, size)}, size, content);
    done += size;
  }
}

std::string Disk::Content(const Node& node, Fate fate, std::mt19937& random) {
  std::string content = node.durable;
  if (fate == Fate::kDropped) return content;
  for (const Change& change : node.pending) {
    const bool last = &change == &node.pending.back();
    if (fate == Fate::kChance) {
      DoByChance(change, random, content);
    } else if (fate == Fate::kTornLast && last && !change.truncate) {
      const std::size_t firstSector = kSectorBytes - change.offset % kSectorBytes;
      const std::size_t sectors = random() % (change.data.size() / kSectorBytes + 1);
      Do(change, std::min(change.data.size(), sectors == 0 ? 0 : firstSector + (sectors - 1) * kSectorBytes),
         content);
    } else {
      Do(change, change.data.size(), content);
    }
  }
  return content;
}

DiskState Disk::Cut(Fate fate, std::mt19937& random) const {
  std::map<std::string, int> entries = durableEntries_;
  for (const EntryChange& change : pendingEntries_) {
    if (fate == Fate::kDropped || (fate == Fate::kChance && !Coin(random))) continue;
    if (change.node == kGone) {
      entries.erase(change.name);
    } else {
      entries[change.name] = change.node;
    }
  }
  DiskState state;
  for (const auto& [name, node] : entries)
    state[name] = Content(nodes_[static_cast<std::size_t>(node)], fate, random);
  return state;
}
