// docs/seal.md is complete: a Python verifier written from it alone gives our verdicts, and our code computes
// its worked example.
#include <gtest/gtest.h>

#include <sstream>

#include "SealedCar.h"
#include "seal/KeyTree.h"
#include "support/Connection.h"
#include "support/Hex.h"
#include "support/Program.h"

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

template <typename Bytes>
std::string Blob(const Bytes& bytes) {
  return bytes.empty() ? "NULL" : "x'" + PlainHex(Hex(bytes)) + "'";
}

std::string Sql(const Value& value) {
  if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  if (const auto* text = std::get_if<std::string>(&value)) return "'" + *text + "'";
  return "NULL";
}

std::string Insert(const Commit& commit) {
  std::string sql;
  for (const Row& row : commit.rows) {
    sql += "INSERT INTO " + row.table + " VALUES(";
    for (const Value& value : row.values) sql += (&value == row.values.data() ? "" : ",") + Sql(value);
    sql += ");";
  }
  const seal::Seal& seal = commit.seal;
  sql += "INSERT INTO seal VALUES(" + std::to_string(seal.place.number);
  for (const std::int64_t field : {seal.firstSeq, seal.lastSeq, seal.lastTick, seal.epoch}) {
    sql += "," + std::to_string(field);
  }
  return sql + "," + Blob(seal.place.hash) + "," + (seal.isSigned ? Blob(seal.signature) : "NULL") + "," +
         Blob(seal.note) + ");";
}

constexpr const char* kTables =
    "CREATE TABLE speed(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER "
    "NOT "
    "NULL, source INTEGER NOT NULL, speed INTEGER NOT NULL, tag INTEGER NOT NULL) STRICT;"
    "CREATE TABLE string(seq INTEGER PRIMARY KEY, tick INTEGER NOT NULL, sender_tick INTEGER, event INTEGER "
    "NOT "
    "NULL, tag INTEGER NOT NULL, text TEXT NOT NULL) STRICT;"
    "CREATE TABLE seal(number INTEGER PRIMARY KEY, first_seq INTEGER NOT NULL, last_seq INTEGER NOT NULL, "
    "last_tick INTEGER NOT NULL, epoch INTEGER NOT NULL, hash BLOB NOT NULL, signature BLOB, note BLOB) "
    "STRICT;";

class Verifier : public testing::Test {
 protected:
  Verifier() {
    if (RunProgram({"/usr/bin/python3", "-c", "import nacl"}).status != 0) return;
    hasPython_ = true;
  }
  void SetUp() override { ASSERT_TRUE(hasPython_) << "python3 and python3-nacl are needed"; }

  void Write(const std::vector<File>& files) {
    for (const File& file : files) {
      paths_.push_back(dir_.Write(std::to_string(paths_.size()) + ".db", ""));
      Connection database(paths_.back());
      std::string sql = kTables;
      for (const Commit& commit : file) sql += Insert(commit);
      EXPECT_EQ(database.Rows("BEGIN;" + sql + "COMMIT"), "");
    }
  }
  Ran Verify(const seal::PublicKey& key) const {
    std::vector<std::string> command{"/usr/bin/python3", "-B", VERIFIER, "--key", PlainHex(Hex(key))};
    command.insert(command.end(), paths_.begin(), paths_.end());
    return RunProgram(command);
  }

  TempDir dir_;
  std::vector<std::string> paths_;
  bool hasPython_ = false;
};

struct ThreeFiles : SealedCar {
  ThreeFiles() {
    Start();
    RecordFor(5'000);
    NewFile();
    RecordFor(5'000);
    Record(2, seal::Sealer::kEpochMs);
    End();
    Drive(5'000);
  }
};

TEST_F(Verifier, InPythonProvesWhatWeSealed) {
  ThreeFiles car;
  Write(car.files);
  const Ran proven = Verify(car.Root());
  EXPECT_EQ(proven.status, 0) << proven.out << proven.said;
  EXPECT_NE(proven.out.find("0.db: proven to record "), std::string::npos) << proven.out;
  const Ran other = Verify(SealedCar(SealedCar::Key::kOwn, 8).Root());
  EXPECT_EQ(other.status, 3) << other.out << other.said;
}

TEST_F(Verifier, InPythonFindsWhatWeFind) {
  ThreeFiles car;
  const struct {
    const char* sql;
    const char* expected;
  } kChanges[] = {
      {"UPDATE speed SET speed=speed+1 WHERE seq=7", "seal 3, records 7 to 9: the records are not"},
      {"UPDATE string SET text='x' WHERE seq=9", "seal 3, records 7 to 9: the records are not"},
      {"UPDATE speed SET sender_tick=NULL WHERE seq=7", "seal 3, records 7 to 9: the records are not"},
      {"DELETE FROM speed WHERE seq=8", "seal 3, records 7 to 9: the records are not"},
      {"INSERT INTO speed VALUES(999,1,1,1,1,1,1)", "record 999 is under no seal"},
      {"DELETE FROM seal WHERE number=4", "record 10 is under no seal"},
      {"UPDATE seal SET epoch=2 WHERE number=4", "the epoch before was not ended"},
      {"UPDATE seal SET signature=zeroblob(64) WHERE number=1", "the signature is wrong"},
      {"UPDATE seal SET signature=NULL WHERE number=1", "an epoch ends without"},
  };
  for (const auto& change : kChanges) {
    paths_.clear();
    Write({car.files[0]});
    EXPECT_EQ(Connection(paths_[0]).Rows(change.sql), "");
    const Ran ran = Verify(car.Root());
    EXPECT_EQ(ran.status, 1) << change.sql;
    EXPECT_NE(ran.out.find(change.expected), std::string::npos) << change.sql << ": " << ran.out << ran.said;
    std::filesystem::remove(paths_[0]);
  }
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
