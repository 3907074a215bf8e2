#pragma once

#include <functional>
#include <string>

namespace reader {

// Writes to standard output or an open descriptor, in large pieces. Control characters from recordings never
// reach a terminal.
class Output {
 public:
  enum class Kind {
    kData,     // for programs: unchanged, except on a terminal
    kText,     // for people: control characters are always replaced
    kDrawing,  // only this program's own text: may control the terminal
  };

  explicit Output(Kind kind = Kind::kData);
  Output(int fd, Kind kind);
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  // `action` runs before each piece is written: the write may block for any time.
  void BeforeWriting(std::function<void()> action) { beforeWriting_ = std::move(action); }

  // Append to this text, and call Commit after each record.
  std::string& Text() { return text_; }
  void Commit() {
    if (text_.size() >= kPieceBytes) Flush();
  }
  // Returns false if a write failed.
  bool Flush();
  bool Good() const { return error_ == 0; }
  // The errno value of the failed write, or 0.
  int Error() const { return error_; }

 private:
  static constexpr std::size_t kPieceBytes = std::size_t{1} << 18;
  int fd_;
  bool printable_;  // replaces control characters
  std::string text_;
  std::function<void()> beforeWriting_;
  int error_ = 0;
};

}  // namespace reader
