// The bytes of a row that are hashed. Hashing allocates no memory.
#include <gtest/gtest.h>

#include <limits>

#include "seal/CommitHash.h"
#include "support/AllocationCount.h"
#include "support/Hex.h"

namespace {

TEST(Allocation, NoneToHashACommit) {
  const std::string text(1024, 'x');
  const seal::Seal seal;
  const std::size_t before = AllocationCount();
  seal::CommitHash commit({}, seal);
  for (std::int64_t seq = 1; seq < 100; ++seq) {
    commit.BeginRow("string", 6);
    for (int column = 0; column < 5; ++column) commit.Add(seq);
    commit.Add(std::string_view(text));
  }
  const seal::Hash hash = commit.End();
  EXPECT_EQ(AllocationCount(), before);
  EXPECT_NE(hash, seal::Hash{});
}

// The hashed head of a first, empty seal: no previous hash, and all fields zero or empty.
const std::string kNothingBefore(32 + 5 * 8 + 4, '\0');

seal::Hash HashOf(const std::string& canonical) {
  const std::string bytes = kNothingBefore + canonical;
  seal::HashState state(seal::Label::kCommit);
  state.Add({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()});
  return state.End();
}

TEST(Canonical, NumbersAreAsShortAsTheyCanBe) {
  const struct {
    std::int64_t value;
    const char* bytes;
  } kNumbers[] = {
      {0, "01"},
      {-1, "05"},
      {1, "09"},
      {15, "79"},
      {-16, "7d"},
      {16, "81 01"},
      {2047, "f9 7f"},
      {-2048, "fd 7f"},
      {2048, "81 80 01"},
      {std::numeric_limits<std::int64_t>::max(), "f9 ff ff ff ff ff ff ff ff 07"},
      {std::numeric_limits<std::int64_t>::min(), "fd ff ff ff ff ff ff ff ff 07"},
  };
  for (const auto& number : kNumbers) {
    seal::CommitHash hash({}, seal::Seal{});
    hash.BeginRow("t", 1);
    hash.Add(number.value);
    EXPECT_EQ(hash.End(), HashOf("\1t\1" + FromHex(number.bytes))) << number.value;
  }
}

// Empty texts, and texts longer than the buffer, at every position in the buffer.
TEST(Canonical, TextIsTheSameWhereverTheBufferEnds) {
  for (const std::size_t bytes : {0U, 1U, 31U, 32U, 200U, 500U, 505U, 506U, 507U, 508U, 509U, 600U, 1024U}) {
    const std::string text(bytes, 'y');
    seal::CommitHash hash({}, seal::Seal{});
    hash.BeginRow("t", 2);
    hash.Add(std::string_view(text));
    hash.AddNull();
    std::string canonical{1, 't', 2};
    canonical += static_cast<char>((bytes & 31) << 2 | 2 | (bytes >= 32 ? 128 : 0));
    if (bytes >= 32) canonical += static_cast<char>(bytes >> 5);
    EXPECT_EQ(hash.End(), HashOf(canonical + text + '\0')) << bytes;
  }
}

}  // namespace
