// Our code computes the worked example of docs/seal.md.
#include <gtest/gtest.h>

#include <sstream>

#include "SealedCar.h"
#include "seal/KeyTree.h"
#include "support/Hex.h"

namespace {

template <typename Bytes>
std::string Hex(const Bytes& bytes) {
  return ToHex({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

std::string PlainHex(const std::string& hex) {
  std::string plain;
  for (const char c : hex) plain += c == ' ' ? std::string() : std::string(1, c);
  return plain;
}

// The bytes of a line "name: bytes" of the page, with its continuation lines.
std::string Documented(const std::string& name) {
  std::istringstream page(TextOfFile(SEAL_DOCUMENT));
  std::string line;
  std::string bytes;
  bool inside = false;
  while (std::getline(page, line)) {
    if (inside && !line.starts_with("  ")) break;
    if (line.starts_with(name + ":")) {
      inside = true;
      line.erase(0, name.size() + 1);
    }
    if (inside) bytes += line;
  }
  return PlainHex(bytes);
}

TEST(Document, WorkedExampleIsWhatWeCompute) {
  const Row row{"speed", {5, 1234, std::monostate(), 1, 2, -88, 300}};
  seal::Hash previous{};
  previous.fill(3);
  seal::Seal seal;
  seal.place.number = 9;
  seal.firstSeq = seal.lastSeq = 5;
  seal.lastTick = 1234;
  seal::CommitHash commit(previous, seal);
  Add(commit, row);
  const seal::Hash hash = commit.End();
  const std::string bytes = FromHex(Documented("commit") + Documented("row"));
  ASSERT_FALSE(bytes.empty());
  EXPECT_EQ(bytes[0], 1);
  seal::HashState canonical(seal::Label::kCommit);
  canonical.Add({reinterpret_cast<const unsigned char*>(bytes.data()) + 1, bytes.size() - 1});
  EXPECT_EQ(Hex(canonical.End()), Hex(hash)) << "the bytes";

  seal::Seed seed;
  seed.fill(7);
  const seal::KeyTree tree(seed);
  std::array<unsigned char, seal::KeyTree::kPathBytes> path;
  tree.PutPath(path);
  EXPECT_EQ(Documented("seal hash"), PlainHex(Hex(hash)));
  EXPECT_EQ(Documented("public key"), PlainHex(Hex(tree.Root())));
  EXPECT_EQ(Documented("path, beginning"), PlainHex(Hex(std::span(path).first(96))));
  EXPECT_EQ(Documented("epoch key"), PlainHex(Hex(std::span(path).last(96).first(32))));
  EXPECT_EQ(Documented("signature"), PlainHex(Hex(tree.SignHash(hash))));
  EXPECT_EQ(Documented("fingerprint"), seal::Fingerprint(tree.Root()));
}

}  // namespace
