#include "RecordReader.h"

#include <utility>

#include "Recording.h"
#include "TableCursor.h"

namespace reader {

RecordReader::RecordReader(std::string path, Wanted wanted, Messages& messages,
                           std::shared_ptr<Recording> copy)
    : path_(std::move(path)),
      wanted_(wanted),
      messages_(messages),
      recording_(std::move(copy)),
      lastSeq_(wanted.afterSeq) {}

RecordReader::~RecordReader() = default;

bool RecordReader::Open() {
  if (recording_ != nullptr) return Begin();
  std::string error;
  recording_ = std::make_shared<Recording>();
  if (!recording_->Open(path_, error)) {
    messages_.Problem(path_ + ": " + error);
    recording_.reset();
    return false;
  }
  return Begin();
}

bool RecordReader::Begin() {
  // One transaction gives one snapshot of all tables, so records that arrive meanwhile are not skipped.
  if (recording_->HowItIs() == Recording::Kind::kLive) (void)recording_->Sql().Execute("BEGIN");
  clock_.Read(recording_->Sql());
  advanceFirst_ = false;
  for (const RecordTable& table : recording_->Tables().tables) {
    if (wanted_.selection != nullptr && !wanted_.selection->MaySelect(table.name)) continue;
    cursors_.push_back(
        std::make_unique<TableCursor>(recording_->Sql().Handle(), table, wanted_.selection, wanted_.text));
    TableCursor& cursor = *cursors_.back();
    if (Advance(cursor, true)) heap_.push_back(&cursor);
  }
  for (std::size_t i = heap_.size(); i-- > 0;) SiftDown(i);
  return true;
}

bool RecordReader::Advance(TableCursor& cursor, bool begins) {
  SqliteCode code = begins ? cursor.Begin(lastSeq_) : cursor.Next();
  while (code != SqliteCode::kRow && code != SqliteCode::kDone) {
    const std::int64_t before = cursor.Seq();
    const std::string why = ErrorText(code);
    if (highestSeq_ == 0) highestSeq_ = recording_->Committed("last_seq", kMaxGuess);
    code = cursor.SkipDamage(highestSeq_);
    const bool goesOn = code == SqliteCode::kRow;
    messages_.Problem(path_ + ": table " + cursor.Table().name + " cannot be read" +
                      (before < 0 ? "" : " after record " + std::to_string(before)) +
                      (goesOn ? " up to record " + std::to_string(cursor.Seq() - 1) : "") + ": " + why);
    if (!goesOn) return false;
  }
  return code == SqliteCode::kRow;
}

bool RecordReader::Next(Row& row) {
  if (paused_ && !Resume()) return false;
  if (advanceFirst_) {
    advanceFirst_ = false;
    TableCursor& first = *heap_.front();
    if (!Advance(first, false)) {
      heap_.front() = heap_.back();
      heap_.pop_back();
    }
    SiftDown(0);
  }
  if (heap_.empty()) return false;
  heap_.front()->Fill(row);
  clock_.Tell(row);
  lastSeq_ = row.seq;
  advanceFirst_ = true;
  return true;
}

void RecordReader::SiftDown(std::size_t at) {
  for (;;) {
    std::size_t lowest = at;
    for (const std::size_t child : {2 * at + 1, 2 * at + 2}) {
      if (child < heap_.size() && heap_[child]->Seq() < heap_[lowest]->Seq()) lowest = child;
    }
    if (lowest == at) return;
    std::swap(heap_[at], heap_[lowest]);
    at = lowest;
  }
}

void RecordReader::Pause() {
  if (recording_ == nullptr || recording_->HowItIs() != Recording::Kind::kLive) return;
  heap_.clear();
  cursors_.clear();
  recording_.reset();
  paused_ = true;
}

bool RecordReader::Resume() {
  paused_ = false;
  return Open();
}

}  // namespace reader
