// Attacks on recordings with the current key of the recorder. VerifyTest has those with the card alone.
#include <gtest/gtest.h>

#include <algorithm>

#include "SealedCar.h"
#include "seal/KeyTree.h"

namespace {

using Files = std::vector<File>;

// Three drives in four files: files 1 and 2 are the first drive, with a change of epoch in file 2.
class Attacks : public testing::Test {
 protected:
  Attacks() {
    car_.Start();
    car_.RecordFor(20'000);
    car_.NewFile();
    car_.RecordFor(seal::Sealer::kEpochMs);
    car_.End();
    car_.Drive(20'000);
    car_.Drive(20'000);
  }

  std::string Verdict(const Files& files) const { return Verify(files, car_.Root()); }

  SealedCar car_;
};

TEST_F(Attacks, NoneIsProven) {
  EXPECT_EQ(Verdict(car_.files), "proven");
  for (const File& file : car_.files) {  // each file alone, except commits after its last signature
    EXPECT_EQ(Verdict({file}), file.back().seal.isSigned ? "proven" : "tail");
  }
}

// Recomputes the hashes from this seal on, and signs the signed seals again with the stolen key.
void Reseal(Files& files, const seal::KeyTree& stolen, std::int64_t from) {
  seal::Hash previous{};
  for (File& file : files) {
    for (Commit& commit : file) {
      seal::Seal& seal = commit.seal;
      if (seal.place.number >= from) {
        constexpr std::ptrdiff_t kPreviousAt = 5;  // offset in the note of a file's first seal
        if (&commit == &file.front())
          std::copy(previous.begin(), previous.end(), seal.note.begin() + kPreviousAt);
        seal::CommitHash hash(previous, seal);
        for (const Row& row : commit.rows) Add(hash, row);
        seal.place.hash = hash.End();
        if (seal.isSigned) seal.signature = stolen.SignHash(seal.place.hash);
      }
      previous = seal.place.hash;
    }
  }
}

// The attacker has the card, and the recorder's key after the last drive.
struct Theft {
  const char* name;
  std::int64_t resealedFrom;
  std::function<void(Files&, const seal::KeyTree&)> change;
  const char* expected;
};

const Theft kThefts[] = {
    {"everything resealed", 1, [](Files&, const seal::KeyTree&) {}, "altered: file 1, seal 1: the signature"},
    {"old signatures left away", 1,
     [](Files& files, const seal::KeyTree&) {
       for (File& file : files) {
         for (Commit& commit : file) commit.seal.isSigned = false;
       }
     },
     "altered: file 1, seal 1: an epoch ends without"},
    {"no old epoch ends", 5,
     [](Files& files, const seal::KeyTree&) {
       files.resize(1);
       files[0].resize(10);
       for (Commit& commit : files[0])
         commit.seal.isSigned = commit.seal.isSigned && commit.seal.place.number < 5;
     },
     "altered: file 1, seal 5: its signature was removed"},
    {"cut within an epoch, and gone on", 31,
     [](Files& files, const seal::KeyTree& stolen) {
       files.resize(1);
       files[0].resize(31);
       files[0][30].seal.epoch = stolen.Epoch();
     },
     "altered: file 1, seal 31: epoch 7 follows on epoch 1"},
    {"cut between two files, and gone on", 42,
     [](Files& files, const seal::KeyTree& stolen) {
       files.erase(files.begin() + 1, files.begin() + 3);
       std::int64_t number = 41;
       for (Commit& commit : files[1]) {
         commit.seal.place.number = ++number;
         commit.seal.epoch = stolen.Epoch();
       }
     },
     "altered: file 2, seal 42: epoch 7 follows on epoch 1"},
};

TEST_F(Attacks, WithTodaysKeyAreFound) {
  const seal::KeyTree stolen = car_.StolenKey();
  ASSERT_EQ(stolen.Epoch(), 7);
  for (const Theft& theft : kThefts) {
    Files files = car_.files;
    theft.change(files, stolen);
    Reseal(files, stolen, theft.resealedFrom);
    EXPECT_TRUE(Verdict(files).starts_with(theft.expected)) << theft.name << ": " << Verdict(files);
  }
}

TEST_F(Attacks, WithAnotherKeyProveNothing) {
  const SealedCar other(SealedCar::Key::kOwn, 8);
  EXPECT_TRUE(Verify(car_.files, other.Root()).starts_with("cannot tell: file 1, seal 1: sealed by another"));
  EXPECT_EQ(Verify(car_.files, std::nullopt), "consistent");
  SealedCar keyless(SealedCar::Key::kNone);
  keyless.Drive(10'000);
  EXPECT_EQ(Verify(keyless.files, car_.Root()), "consistent");
  // Recordings without a key keep their verdict among others. No seals are missing between two recorders.
  Files files = car_.files;
  files.push_back(keyless.files[0]);
  files.push_back(keyless.files[0]);
  EXPECT_EQ(Verdict(files), "consistent");
}

// A change of any bit of a seal or its note is detected.
TEST(Seal, HasNoBitThatCanBeChanged) {
  SealedCar car;
  car.Drive(1'000);
  ASSERT_EQ(Verify(car.files, car.Root()), "proven");
  for (std::size_t i = 0; i < car.files[0].size(); ++i) {
    std::size_t bytes = 5 * 8 + 32 + 64 + car.files[0][i].seal.note.size();
    for (std::size_t at = 0; at < bytes; at += at < 136 ? 3 : 67) {
      Files files = car.files;
      seal::Seal& seal = files[0][i].seal;
      const auto flip = [at](auto& field, std::size_t begin) {
        if (at >= begin && at < begin + field.size())
          field[at - begin] ^= static_cast<unsigned char>(1U << (at % 8));
      };
      std::int64_t* const numbers[] = {&seal.place.number, &seal.firstSeq, &seal.lastSeq, &seal.lastTick,
                                       &seal.epoch};
      if (at < 40) *numbers[at / 8] ^= std::int64_t{1} << (at % 8 * 8 + i % 8);
      flip(seal.place.hash, 40);
      flip(seal.signature, 72);
      flip(seal.note, 136);
      if (!seal.isSigned && at >= 72 && at < 136) continue;
      EXPECT_NE(Verify(files, car.Root()), "proven") << "seal " << i + 1 << ", byte " << at;
    }
  }
}

}  // namespace
