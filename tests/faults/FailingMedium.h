#pragma once

#include "WatchedVfs.h"

// What goes wrong.
struct Fault {
  const char* name;
  bool anyOp;  // not only this one
  FileOp op;
  int code;      // of SQLite, for EIO or ENOSPC
  bool half;     // half of the data is written nevertheless
  bool forEver;  // this one and all that follow, until it heals
  int turn = 0;  // of the faults that take turns, which; 0: this one does not
};

// A medium on which the Nth operation of a kind fails.
class FailingMedium : public FileWatch {
 public:
  static constexpr int kNone = 0;

  // Counts from 1; kNone: nothing fails, operations are only counted.
  FailingMedium(const Fault& fault, int nth) : fault_(fault), nth_(nth) {}

  Verdict Before(const FileEvent& event) override;
  // Ends what has begun to fail.
  void Heal() { healed_ = Failed(); }

  int Count() const { return count_; }
  bool Failed() const { return nth_ != kNone && count_ >= nth_; }

 private:
  Fault fault_;
  int nth_;
  int count_ = 0;
  bool healed_ = false;
};
