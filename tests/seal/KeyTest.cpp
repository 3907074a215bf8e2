// The tree of keys, its file, and starts after a power cut.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <set>

#include "SealedCar.h"
#include "seal/KeyFile.h"
#include "seal/KeyTree.h"

namespace {

using seal::KeyFile;
using seal::KeyTree;
using Outcome = KeyFile::Outcome;

seal::Seed SeedOf(unsigned char value) {
  seal::Seed seed{};
  seed.fill(value);
  return seed;
}

std::string PathOf(const KeyTree& tree) {
  std::string path(KeyTree::kPathBytes, 0);
  std::span<unsigned char, KeyTree::kPathBytes> bytes(reinterpret_cast<unsigned char*>(path.data()),
                                                      path.size());
  tree.PutPath(bytes);
  return path;
}

bool Proves(const seal::PublicKey& root, std::int64_t epoch, const std::string& path, const seal::Hash& hash,
            const seal::Signature& signature) {
  KeyTree::GoodPath good;
  return KeyTree::CheckPath(root, epoch, {reinterpret_cast<const unsigned char*>(path.data()), path.size()},
                            good) &&
         KeyTree::CheckHash(good.key, hash, signature);
}

TEST(KeyTree, ProvesEachEpochByTheRootAlone) {
  KeyTree tree(SeedOf(1));
  const seal::PublicKey root = tree.Root();
  const seal::Hash hash = SeedOf(9);
  std::set<seal::Signature> signatures;
  for (std::int64_t epoch = 0; epoch < 70; ++epoch) {
    ASSERT_EQ(tree.Epoch(), epoch);
    const std::string path = PathOf(tree);
    const seal::Signature signature = tree.SignHash(hash);
    signatures.insert(signature);
    ASSERT_TRUE(Proves(root, epoch, path, hash, signature)) << epoch;
    EXPECT_FALSE(Proves(root, epoch + 1, path, hash, signature)) << epoch;
    EXPECT_FALSE(Proves(KeyTree(SeedOf(2)).Root(), epoch, path, hash, signature)) << epoch;
    ASSERT_TRUE(tree.Advance());
  }
  EXPECT_EQ(signatures.size(), 70U);  // each has its own key
}

TEST(KeyTree, EndsWithItsLastEpoch) {
  KeyTree tree(SeedOf(1));
  std::array<unsigned char, KeyTree::kStateBytes> state;
  tree.Save(state);
  state[5] = 0x0F;  // eight bytes of the epoch: 1048574
  state[6] = 0xFF;
  state[7] = 0xFE;
  ASSERT_TRUE(tree.Load(state));
  EXPECT_TRUE(tree.Advance());
  EXPECT_EQ(tree.Epoch(), KeyTree::kEpochs - 1);
  EXPECT_FALSE(tree.Advance());
  state[5] = 0x10;
  EXPECT_FALSE(tree.Load(state));
}

class KeyFiles : public testing::Test {
 protected:
  Outcome Open(const std::string& hardware = kHardware) {
    KeyFile file;
    return file.Open(path_, hardware, tree_, last_);
  }
  void Create() {
    KeyFile file;
    ASSERT_EQ(file.Create(path_, kHardware, KeyTree(SeedOf(1))), Outcome::kOk);
  }
  // Moves the key to the next epoch. Returns the file before the move.
  std::string Move() {
    std::string before = dir_.Read("key");
    KeyFile file;
    EXPECT_EQ(file.Open(path_, kHardware, tree_, last_), Outcome::kOk);
    EXPECT_TRUE(tree_.Advance());
    EXPECT_TRUE(file.Save(tree_, {last_.number + 10, SeedOf(3)}));
    return before;
  }

  TempDir dir_;
  std::string path_ = dir_.Path("key");
  KeyTree tree_;
  seal::Place last_;
};

TEST_F(KeyFiles, KeepTheNewestStateAloneAndNothingOlder) {
  Create();
  std::set<std::string> states;
  for (std::int64_t epoch = 1; epoch < 9; ++epoch) {
    const std::string before = Move();
    const std::string now = dir_.Read("key");
    ASSERT_EQ(Open(), Outcome::kOk);
    EXPECT_EQ(tree_.Epoch(), epoch);
    EXPECT_EQ(last_.number, epoch * 10);
    EXPECT_EQ(now.size(), 8192U);
    const std::size_t used = epoch % 2 == 0 ? 0 : 4096;
    EXPECT_EQ(now.substr(4096 - used, 4096), std::string(4096, '\0'));
    EXPECT_EQ(before.substr(used, 4096), std::string(4096, '\0'));
  }
}

// A power cut leaves any sectors of the new slot beside the old slot, or both slots whole.
TEST_F(KeyFiles, SurvivePowerCutsAtAnyPoint) {
  Create();
  for (int round = 0; round < 2; ++round) {
    const std::string before = Move();
    const std::string after = dir_.Read("key");
    const std::size_t fresh = round == 0 ? 4096 : 0;
    for (unsigned sectors = 0; sectors < 256; ++sectors) {
      std::string torn = before;
      torn.resize(8192);
      for (unsigned i = 0; i < 8; ++i) {
        const std::size_t at = fresh + std::size_t{i} * 512;
        if ((sectors >> i & 1) != 0) torn.replace(at, 512, after, at, 512);
      }
      dir_.Write("key", torn);
      ASSERT_EQ(Open(), Outcome::kOk) << sectors;
      EXPECT_EQ(tree_.Epoch(), sectors == 255 ? round + 1 : round);
      const std::string opened = dir_.Read("key");
      const std::size_t older = sectors == 255 ? 4096 - fresh : fresh;
      EXPECT_EQ(opened.substr(older, 4096), std::string(4096, '\0')) << "erased down to the newest";
    }
  }
}

TEST_F(KeyFiles, OfAnotherRecorderOrDamagedAreInvalid) {
  Create();
  EXPECT_EQ(Open("02:00:00:00:00:02"), Outcome::kInvalid);
  const std::string good = dir_.Read("key");
  for (const std::size_t at : {0U, 8U, 40U, 100U, 2000U, 3999U}) {
    std::string bad = good;
    bad[at] = static_cast<char>(bad[at] ^ 1);
    dir_.Write("key", bad);
    EXPECT_EQ(Open(), Outcome::kInvalid) << at;
  }
  dir_.Write("key", good.substr(0, 4000));
  EXPECT_EQ(Open(), Outcome::kInvalid);
  dir_.Write("key", "");
  EXPECT_EQ(Open(), Outcome::kInvalid);
}

TEST_F(KeyFiles, AreOfOneUserAndOneProcess) {
  EXPECT_EQ(Open(), Outcome::kMissing);
  Create();
  struct stat status {};
  ASSERT_EQ(stat(path_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0600U);
  KeyFile first;
  ASSERT_EQ(first.Open(path_, kHardware, tree_, last_), Outcome::kOk);
  EXPECT_EQ(Open(), Outcome::kBusy);
  first.Close();
  EXPECT_EQ(KeyFile().Create(path_, kHardware, tree_), Outcome::kFailed);
  EXPECT_EQ(Open(), Outcome::kOk);
  ASSERT_EQ(chmod(path_.c_str(), 0640), 0);
  EXPECT_EQ(Open(), Outcome::kExposed);
  ASSERT_EQ(chmod(path_.c_str(), 0600), 0);
  ASSERT_EQ(rename(path_.c_str(), dir_.Path("other").c_str()), 0);
  ASSERT_EQ(symlink(dir_.Path("other").c_str(), path_.c_str()), 0);
  EXPECT_EQ(Open(), Outcome::kExposed);
}

class Starts : public testing::Test {
 protected:
  Starts() {
    car_.Drive(5'000);
    car_.Start();
    car_.RecordFor(5'000);
  }
  std::string Verdict() const { return Verify(car_.files, car_.Root()); }
  std::string KeyNow() const { return TextOfFile(car_.KeyPath()); }
  void PutKeyBack(const std::string& key) const { std::ofstream(car_.KeyPath(), std::ios::binary) << key; }

  SealedCar car_;
};

TEST_F(Starts, AfterACutGoOnWithTheSameChain) {
  car_.CutOff();
  car_.Drive(5'000);
  EXPECT_EQ(Verdict(), "proven");
}

TEST_F(Starts, AfterACutTellWhatFollowsTheLastSignature) {
  car_.Record();
  while (car_.files.back().back().seal.isSigned) car_.Record();
  car_.CutOff();
  EXPECT_EQ(Verdict(), "tail");
}

// The last seal of the epoch is on the medium, the moved key is not.
TEST_F(Starts, BetweenAnEpochsEndAndTheMoveOfTheKeyEndNoEpochTwice) {
  const std::string before = KeyNow();
  car_.Record(1, seal::Sealer::kEpochMs);
  const std::int64_t ended = car_.files.back().back().seal.epoch;
  car_.CutOff();
  PutKeyBack(before);
  car_.Drive(5'000);
  EXPECT_EQ(car_.files.back().front().seal.epoch, ended + 1);
  EXPECT_EQ(Verdict(), "proven");
}

// While the key file cannot be written the epoch continues, and each seal ends it again.
TEST_F(Starts, WithAKeyFileThatFailsGoOnAndMoveItLater) {
  const std::string before = KeyNow();
  (void)signal(SIGXFSZ, SIG_IGN);
  struct rlimit whole {};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &whole), 0);
  const struct rlimit none { 0, whole.rlim_max };
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &none), 0);
  car_.Record(1, seal::Sealer::kEpochMs);
  car_.Record(1);
  const bool stuck = car_.Sealer().KeyStuck();
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &whole), 0);
  EXPECT_TRUE(stuck);
  EXPECT_EQ(KeyNow(), before);
  const std::int64_t epoch = car_.files.back().back().seal.epoch;
  EXPECT_TRUE(car_.files.back().back().seal.isSigned);
  car_.Record(1);
  EXPECT_FALSE(car_.Sealer().KeyStuck());
  car_.Record(1);
  EXPECT_EQ(car_.files.back().back().seal.epoch, epoch + 1);
  EXPECT_NE(KeyNow(), before);
  car_.End();
  EXPECT_EQ(Verdict(), "proven");
}

// After a commit in doubt the file decides whether the commit was written.
TEST_F(Starts, SettleACommitInDoubtByTheFile) {
  seal::Sealer& sealer = car_.Sealer();
  const seal::Place before = sealer.Last();
  const auto attempt = [&] {
    sealer.Begin(1000, 1000, 1'000'000);
    Add(sealer.Rows(), {"bookmark", {1000}});
    return sealer.End().place;
  };
  const seal::Place first = attempt();
  EXPECT_TRUE(sealer.Settle(before));
  EXPECT_EQ(sealer.Last(), before);
  EXPECT_EQ(attempt(), first) << "the same once more";
  EXPECT_TRUE(sealer.Settle(first));
  EXPECT_EQ(sealer.Last(), first);
  EXPECT_FALSE(sealer.Settle({first.number + 1, first.hash}));
  EXPECT_FALSE(sealer.Settle(seal::Place()));
}

TEST_F(Starts, TellThatTheCardLostSeals) {
  car_.End();
  car_.files.back().resize(3);
  car_.Drive(5'000);
  EXPECT_TRUE(
      Verdict().starts_with("incomplete: file 3, seal 1048612: the seals between 15 and 1048601 are missing"))
      << Verdict();
  std::vector<File> last{car_.files.back()};
  EXPECT_NE(Verify(last, car_.Root()).find("seals up to 24 were expected and up to 15 were found"),
            std::string::npos)
      << Verify(last, car_.Root());
}

TEST_F(Starts, WithAnotherCardGoOnWithTheirOwnChain) {
  car_.End();
  SealedCar other(SealedCar::Key::kOwn, 8);
  other.Drive(60'000);
  const std::vector<File> own = car_.files;
  car_.files = other.files;
  car_.Drive(5'000);
  std::vector<File> all = own;
  all.push_back(car_.files.back());
  EXPECT_GT(car_.files.back().front().seal.place.number, own.back().back().seal.place.number + 1)
      << "the numbers between may be on the card that was taken out";
  EXPECT_EQ(Verify(all, car_.Root()), "proven");  // no seal is missing
}

}  // namespace
