#pragma once

#include <functional>
#include <string>

// Standard output, or a descriptor that is open for writing, in large pieces.
class Output {
 public:
  Output();
  explicit Output(int fd);
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
  bool Good() const { return good_; }

 private:
  static constexpr std::size_t kPieceBytes = std::size_t{1} << 18;
  int fd_;
  std::string text_;
  std::function<void()> beforeWriting_;
  bool good_ = true;
};
