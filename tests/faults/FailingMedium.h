#pragma once

#include <ostream>

#include "WatchedVfs.h"

// What goes wrong.
struct Fault {
  const char* name;
  FileOp op;
  int code;            // of SQLite
  bool half = false;   // half of the data is written nevertheless
  bool anyOp = false;  // not only this one
  int every = 1;       // only every so manieth is tried

  friend std::ostream& operator<<(std::ostream& out, const Fault& fault) { return out << fault.name; }
};

// A medium on which the Nth operation of a kind fails, and with `forEver` all that follow it.
class FailingMedium : public FileWatch {
 public:
  // Counts from 1.
  FailingMedium(const Fault& fault, bool forEver, int nth) : fault_(fault), forEver_(forEver), nth_(nth) {}

  Verdict Before(const FileEvent& event) override {
    if (!fault_.anyOp && event.op != fault_.op) return {};
    ++count_;
    if (healed_ || (forEver_ ? count_ < nth_ : count_ != nth_)) return {};
    return {fault_.code, fault_.half ? event.data.size() / 2 : 0};
  }
  // Ends what has begun to fail.
  void Heal() { healed_ = Failed(); }

  bool Failed() const { return count_ >= nth_; }

 private:
  Fault fault_;
  bool forEver_;
  int nth_;
  int count_ = 0;
  bool healed_ = false;
};
