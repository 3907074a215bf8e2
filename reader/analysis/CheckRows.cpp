#include "CheckRows.h"

#include <algorithm>
#include <array>

#include "Catalogue.h"

namespace reader {
namespace {

constexpr std::int64_t kLargestTick = 0xFFFFFFFF;
constexpr std::array<std::string_view, 6> kFlags{"valid",        "active",  "present",
                                                 "high_quality", "enabled", "pinned"};

template <std::size_t kCount>
bool IsOneOf(std::string_view text, const std::array<std::string_view, kCount>& words) {
  return std::find(words.begin(), words.end(), text) != words.end();
}

bool FlagsAreFlags(const Row& row) {
  return std::all_of(row.fields.begin(), row.fields.end(), [](const Field& field) {
    return !IsOneOf(field.name, kFlags) || field.number == 0 || field.number == 1;
  });
}

// A rule for the values of one table.
struct Reference {
  const char* table;
  bool (*holds)(const Row& row);
  const char* text;
};
constexpr std::array<Reference, 6> kReferences{{
    {"state", [](const Row& row) { return row.Number("signal") % 2 == 0; }, "signal is not an even tag"},
    {"loss",
     [](const Row& row) { return CurrentCatalogue().Find(std::string(row.Text("lost_table"))) != nullptr; },
     "lost_table is no table"},
    {"loss",
     [](const Row& row) {
       return row.Number("count") > 0 && row.Number("from_tick") <= row.Number("to_tick");
     },
     "a loss of nothing"},
    {"clock",
     [](const Row& row) {
       return IsOneOf<2>(row.Text("clock_source"), {"system", "gps"});
     },
     "clock_source is neither system nor gps"},
    {"previous_run",
     [](const Row& row) {
       return IsOneOf<5>(row.Text("ended"), {"none", "clean", "cut off", "unreadable", "damaged"});
     },
     "ended is none of none, clean, cut off, unreadable, damaged"},
    {"string", [](const Row& row) { return row.Number("tag") >= 0 && row.Number("tag") <= kLargestTick; },
     "tag is not a tag"},
}};

}  // namespace

void CheckRows::Add(const Row& row, const char* kind, const std::string& text) {
  findings_.Add(file_ + ": table " + std::string(row.table), kind,
                "record " + std::to_string(row.seq) + ": " + text);
}

void CheckRows::Take(const Row& row, const std::string& file) {
  const bool firstOfFile = file != file_;
  file_ = file;
  isCopy_ = isCopy_ || row.table == "copy";
  if (firstOfFile && row.table != "clock" && !isCopy_)
    Add(row, "begin", "a file begins without a record of the clock");
  if (ended_) Add(row, "end", "it stands behind the end of its run");
  ended_ = ended_ || row.table == "run_end";
  CheckLedger(row);
  CheckOrder(row);
  CheckValues(row);
  if (row.table == "previous_run") CheckPreviousRun(row);
}

void CheckRows::CheckLedger(const Row& row) {
  if (row.table == "loss") lost_ = WithinCount(lost_ + WithinCount(row.Number("count")));
  const std::int64_t seq = WithinCount(row.seq);
  const std::int64_t expected = seqBefore_ + 1;
  if (seqBefore_ != 0 && seq < expected) {
    Add(row, "double", "table " + tableBefore_ + " has a record of this number, too");
  } else if (seqBefore_ != 0 && seq > expected) {
    if (missing_ == 0) {
      firstMissing_ = std::to_string(expected);
      fileOfMissing_ = file_;
    }
    missing_ = WithinCount(missing_ + seq - expected);
  }
  seqBefore_ = seq;
  tableBefore_ = row.table;
}

void CheckRows::CheckOrder(const Row& row) {
  if (row.tick < tickBefore_) {
    Add(row, "order",
        "the tick goes back from " + std::to_string(tickBefore_) + " to " + std::to_string(row.tick));
  }
  tickBefore_ = row.tick;
}

void CheckRows::CheckValues(const Row& row) {
  if (row.event > EventKind::kRestated) Add(row, "event", "event is none of 0, 1, 2");
  if (row.hasSenderTick && (row.senderTick < 0 || row.senderTick > kLargestTick)) {
    Add(row, "sender", "sender_tick has more than 32 bits");
  }
  if (!FlagsAreFlags(row)) Add(row, "flag", "a flag is neither 0 nor 1");
  for (const Reference& reference : kReferences) {
    if (row.table == reference.table && !reference.holds(row)) Add(row, reference.text, reference.text);
  }
}

void CheckRows::CheckPreviousRun(const Row& row) {
  const auto known = ends_.find(std::string(row.Text("file")));
  const std::string_view ended = row.Text("ended");
  if (known == ends_.end() || ended == "unreadable") return;
  const FileEnd& end = known->second;
  if (row.Number("last_seq") != end.lastSeq || row.Number("last_tick") != end.lastTick) {
    Add(row, "previous",
        known->first + " is said to end with record " + std::to_string(row.Number("last_seq")) + " at tick " +
            std::to_string(row.Number("last_tick")) + ", but it ends with record " +
            std::to_string(end.lastSeq) + " at tick " + std::to_string(end.lastTick));
  } else if ((ended == "clean") != end.clean) {
    Add(row, "previous",
        known->first + " is said to have ended " + std::string(ended) + ", but it has " +
            (end.clean ? "a clean end" : "no end"));
  }
}

void CheckRows::End() {
  if (isCopy_) return;
  if (missing_ > lost_) {
    const std::string which = missing_ == 1
                                  ? "1 record is missing: "
                                  : std::to_string(missing_) + " records are missing, the first is ";
    findings_.Add(fileOfMissing_, "ledger",
                  which + firstMissing_ + "; losses of " + std::to_string(lost_) + " are recorded");
  } else if (missing_ < lost_) {
    findings_.Add(file_, "ledger",
                  "losses of " + std::to_string(lost_) + " records are recorded, but " +
                      std::to_string(missing_) + " are missing");
  }
}

}  // namespace reader
