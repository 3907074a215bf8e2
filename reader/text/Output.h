#pragma once

#include <functional>
#include <string>

namespace reader {

// Standard output, or a descriptor that is open for writing, in large pieces. Control characters never
// reach a terminal.
class Output {
 public:
  enum class Kind {
    kData,     // for programs: written as it is, but to a terminal
    kText,     // for people: control characters are replaced wherever it goes
    kDrawing,  // made of this program's own words: may control the terminal
  };

  explicit Output(Kind kind = Kind::kData);
  Output(int fd, Kind kind);
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  // Called before each piece is written, which may take as long as its reader likes.
  void BeforeWriting(std::function<void()> action) { beforeWriting_ = std::move(action); }

  // To append to; Commit after each record.
  std::string& Text() { return text_; }
  void Commit() {
    if (text_.size() >= kPieceBytes) Flush();
  }
  // False when it could not be written.
  bool Flush();
  bool Good() const { return error_ == 0; }
  // Why not: an errno value, or 0.
  int Error() const { return error_; }

 private:
  static constexpr std::size_t kPieceBytes = std::size_t{1} << 18;
  int fd_;
  bool printable_;  // without control characters
  std::string text_;
  std::function<void()> beforeWriting_;
  int error_ = 0;
};

}  // namespace reader
