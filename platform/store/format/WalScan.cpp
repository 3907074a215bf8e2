// A WAL begins with a header of 32 bytes, eight big-endian words: magic number, format, page size, number of
// the checkpoint, two salts, two words of checksum over the six before. Frames follow, each a header of 24
// bytes and a page. The words of a frame header: page number, pages in the database after a commit (0: no
// commit), the WAL's two salts, two words of checksum.
//
// Checksums are chained: s0 += x + s1; s1 += y + s0 for each pair of words x, y. The header's checksum starts
// at 0, 0. A frame's starts at the checksum of the frame before it, and covers the frame's first two words
// and its page. The lowest bit of the magic number gives the byte order of the words in the sum: 1 is
// big-endian.
//
// Once everything is in the database, SQLite starts again at the front with other salts. A frame belongs to
// the WAL's generation if its salts are the header's. Frames of earlier generations after it are stale.
//
//   - A frame is sound if it belongs to the generation and its checksum is right. The check starts at the
//     checksum stored in the frame before it, so that one broken frame does not spoil all after it.
//   - The first frame that is not sound is the break. A frame whose checksum continues that of a frame of the
//     generation also belongs to the generation, whatever its salts: the checksum does not cover them.
//   - The WAL is sound if no frame of the generation follows from the break on.
//   - It is torn if at most one commit follows from the break on: a power cut tears the last transaction like
//     this before its sync.
//   - It is damaged if more commits follow: synced data is broken. It is also damaged if its header is
//     invalid.
#include "WalScan.h"

#include <array>
#include <vector>

#include "system/BigEndian.h"

namespace store {
namespace {

constexpr std::size_t kHeaderBytes = 32;
constexpr std::size_t kFrameHeaderBytes = 24;
constexpr std::uint32_t kMagic = 0x377F0682;  // plus 1 for big-endian sums
constexpr std::uint32_t kFormat = 3007000;
constexpr std::uint32_t kMinPageBytes = 512;
constexpr std::uint32_t kMaxPageBytes = 65536;

using Pair = std::array<std::uint32_t, 2>;

Pair GetPair(const unsigned char* p) {
  return {GetU32(p), GetU32(p + 4)};
}

std::uint32_t GetLittleEndian(const unsigned char* p) {
  return (std::uint32_t{p[3]} << 24) | (std::uint32_t{p[2]} << 16) | (std::uint32_t{p[1]} << 8) | p[0];
}

// `size` is a multiple of 8.
Pair Sum(bool bigEndian, Pair sum, const unsigned char* data, std::size_t size) {
  for (const unsigned char* p = data; p < data + size; p += 8) {
    sum[0] += (bigEndian ? GetU32(p) : GetLittleEndian(p)) + sum[1];
    sum[1] += (bigEndian ? GetU32(p + 4) : GetLittleEndian(p + 4)) + sum[0];
  }
  return sum;
}

class Scan {
 public:
  explicit Scan(const ReadAt& read) : read_(read) {}

  WalFinding Run() {
    unsigned char header[kHeaderBytes];
    const std::size_t size = read_(0, header, sizeof header);
    if (size == 0) return found_;
    found_.state = WalState::kDamaged;
    if (size < sizeof header || !TakeHeader(header)) return found_;
    found_.endOfCommits = kHeaderBytes;
    std::vector<unsigned char> frame(found_.frameBytes);
    for (std::uint64_t at = kHeaderBytes;; at += frame.size()) {
      const std::size_t got = read_(at, frame.data(), frame.size());
      if (got < kFrameHeaderBytes) break;
      Take(at, frame.data(), got == frame.size());
    }
    found_.state = !lost_ ? WalState::kSound : lostCommits_ <= 1 ? WalState::kTorn : WalState::kDamaged;
    return found_;
  }

 private:
  bool TakeHeader(const unsigned char* header) {
    const std::uint32_t magic = GetU32(header);
    const std::uint32_t pageBytes = GetU32(header + 8);
    if ((magic & ~1U) != kMagic || GetU32(header + 4) != kFormat) return false;
    if (pageBytes < kMinPageBytes || pageBytes > kMaxPageBytes || (pageBytes & (pageBytes - 1)) != 0)
      return false;
    bigEndian_ = (magic & 1U) != 0;
    salts_ = GetPair(header + 16);
    sum_ = GetPair(header + 24);
    if (Sum(bigEndian_, {0, 0}, header, 24) != sum_) return false;
    found_.frameBytes = static_cast<std::uint32_t>(kFrameHeaderBytes) + pageBytes;
    return true;
  }

  void Take(std::uint64_t at, const unsigned char* frame, bool whole) {
    const bool hasSalts = GetPair(frame + 8) == salts_;
    const bool fits = whole && Fits(frame);
    const bool ours = hasSalts || (fits && oursBefore_);
    const bool commits = GetU32(frame + 4) != 0;
    const bool sound = hasSalts && fits && GetU32(frame) != 0;
    if (!sound && found_.brokenAt == 0) found_.brokenAt = at;
    if (found_.brokenAt == 0) {
      if (commits) found_.endOfCommits = at + found_.frameBytes;
    } else if (ours) {
      lost_ = true;
      if (commits) ++lostCommits_;
    }
    oursBefore_ = ours;
    sum_ = GetPair(frame + 16);
  }

  bool Fits(const unsigned char* frame) const {
    const Pair sum = Sum(bigEndian_, sum_, frame, 8);
    const std::size_t pageBytes = found_.frameBytes - kFrameHeaderBytes;
    return Sum(bigEndian_, sum, frame + kFrameHeaderBytes, pageBytes) == GetPair(frame + 16);
  }

  const ReadAt& read_;
  WalFinding found_;
  bool bigEndian_ = false;
  Pair salts_{};
  Pair sum_{};              // as stored in the frame before
  bool oursBefore_ = true;  // that frame is of the generation
  bool lost_ = false;       // there are frames of the generation from the break on
  unsigned int lostCommits_ = 0;
};

}  // namespace

WalFinding ScanWal(const ReadAt& read) {
  return Scan(read).Run();
}

}  // namespace store
