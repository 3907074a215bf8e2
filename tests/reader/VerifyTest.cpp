// A sealed recording, attacks on copies of it, and the verdicts of `metadata verify` and of the verifier in
// Python.
#include <functional>
#include <regex>
#include <set>

#include "ReaderFixture.h"

namespace fs = std::filesystem;
using testing::HasSubstr;

namespace {

enum Status { kProven = 0, kConsistent = 3, kCannotTell = 4, kIncomplete = 5, kAltered = 6 };

class VerifyTest : public ReaderTest {
 protected:
  void SetUp() override {
    ReaderTest::SetUp();
    options_.keyFile = dir_.Path("key");
    options_.maxFileBytes = 160 << 10;
    key_ = MakeKey(options_.keyFile);
  }

  static std::string MakeKey(const std::string& path) {
    return Metadata({"seal-setup", path}).out.substr(0, 64);
  }

  // Two runs: files 1 and 2, and file 3.
  void RecordRuns() {
    Open();
    Drive();
    After(600'000);  // the next epoch
    for (int i = 0; !Exists(2); ++i) {
      for (int text = 0; text < 8; ++text)
        Store().ReportStringData(e_Tag(60'000), std::string(900, 'x').c_str());
      After(500);
    }
    Drive();
    Store().ReportShutdownData();
    Close();
    Open();
    Drive();
    Store().ReportShutdownData();
    Close();
    ASSERT_TRUE(Exists(3) && !Exists(4));
  }

  // A fresh copy of all recordings.
  std::string Copied() const {
    std::string to = dir_.Path("copied");
    fs::remove_all(to);
    fs::create_directory(to);
    for (const auto& entry : fs::directory_iterator(dir_.Path("")))
      if (entry.path().extension() == ".db")
        fs::copy_file(entry.path(), fs::path(to) / entry.path().filename());
    return to;
  }
  Ran Verify(const std::string& path) const { return Metadata({"verify", "--key", key_, path}); }
  // The verifier that was written from docs/seal.md alone.
  Ran VerifyInPython(const std::string& directory) const {
    std::vector<std::string> command{"/usr/bin/python3", "-B", SEAL_VERIFIER, "--key", key_};
    const std::set<fs::path> files(fs::directory_iterator(directory), {});
    command.insert(command.end(), files.begin(), files.end());
    return RunProgram(command);
  }

  std::string key_;
};

std::string Number(const std::string& directory, int number) {
  return directory + "/metadata.00000" + std::to_string(number) + ".db";
}

std::function<void(const std::string&)> Sql(int file, const std::string& sql) {
  return [file, sql](const std::string& directory) {
    EXPECT_EQ(Connection(Number(directory, file)).Rows(sql), "") << sql;
  };
}

struct Attack {
  const char* name;
  std::function<void(const std::string& directory)> change;
  Status status;
  const char* said;
};

// File 1 has the seals 1 to 14 and ends an epoch with seal 7. Seal 5 has the records 8 and 9.
const Attack kAttacks[] = {
    {"nothing", [](const auto&) {}, kProven, "whole, proven"},
    {"a value", Sql(1, "UPDATE temperature SET temperature=1"), kAltered,
     "1.db: altered: seal 5, records 8 to 9: the records are not those that were sealed"},
    {"a time", Sql(1, "UPDATE temperature SET tick=tick-1"), kAltered, "seal 5, records 8 to 9: the records"},
    {"no sender tick", Sql(1, "UPDATE temperature SET sender_tick=NULL"), kAltered,
     "seal 5, records 8 to 9: the"},
    {"a text", Sql(3, "UPDATE string SET text=text||'.'"), kAltered, "3.db: altered: seal "},
    {"a record removed", Sql(1, "DELETE FROM temperature"), kAltered, "seal 5, records 8 to 9: the records"},
    {"a record added", Sql(1, "INSERT INTO bookmark VALUES(999999,20000,NULL,1)"), kAltered,
     "record 999999 after it is under no seal"},
    {"a record moved", Sql(1, "UPDATE temperature SET seq=-1"), kAltered,
     "record -1 before it is under no seal"},
    {"records exchanged",
     Sql(1,
         "UPDATE state SET seq=100 WHERE seq=9; UPDATE temperature SET seq=9; "
         "UPDATE state SET seq=8 WHERE seq=100"),
     kAltered, "seal 5, records 8 to 9: "},
    {"a record in another table",
     Sql(1,
         "INSERT INTO mic_active SELECT seq,tick,sender_tick,event,0,temperature "
         "FROM temperature; DELETE FROM temperature"),
     kAltered, "seal 5, rec"},
    {"a table", Sql(1, "CREATE TABLE gps2(seq INTEGER)"), kAltered, "its schema is not the store's, at gps2"},
    {"a trigger", Sql(1, "CREATE TRIGGER t AFTER INSERT ON gps BEGIN SELECT 1; END"), kAltered, "at t\n"},
    {"a view", Sql(1, "DROP VIEW timeline; CREATE VIEW timeline AS SELECT 1"), kAltered,
     "its schema is not the store's"},
    {"a column", Sql(1, "ALTER TABLE gps ADD COLUMN more INTEGER"), kAltered, "at gps"},
    {"a name of a tag", Sql(1, "UPDATE tag_name SET name='x' WHERE tag=56"), kAltered, "its names of tags"},
    {"the run's id", Sql(1, "UPDATE run SET id=zeroblob(16)"), kAltered, "the id of its run"},
    {"progress", Sql(1, "UPDATE progress SET last_seq=1"), kAltered, "its table progress"},
    {"a commit removed",
     Sql(1,
         "DELETE FROM seal WHERE number=5; DELETE FROM temperature; DELETE FROM state WHERE "
         "seq=9"),
     kAltered, "seal 6, records 10 to 10: the seals before it were removed, from 5"},
    {"a seal removed", Sql(1, "DELETE FROM seal WHERE number=5"), kAltered,
     "the seals before it were removed, from 5"},
    {"all seals removed", Sql(1, "DELETE FROM seal"), kAltered, "1.db: altered: it has records, but no seal"},
    {"all seals removed, and said so", Sql(1, "DELETE FROM seal; UPDATE progress SET last_seq=9"),
     kCannotTell, "1.db: cannot tell: not sealed\n"},
    {"signatures removed", Sql(2, "UPDATE seal SET signature=NULL WHERE instr(hex(note),'03000000')=0"),
     kAltered, "its signature was removed"},
    {"a signature removed", Sql(1, "UPDATE seal SET signature=NULL WHERE number=4"), kAltered,
     "seal 4, records 7 to"},
    {"a signature of an end removed", Sql(1, "UPDATE seal SET signature=NULL WHERE number=7"), kAltered,
     "an epoch ends"},
    {"a later epoch", Sql(1, "UPDATE seal SET epoch=2 WHERE number>5"), kAltered,
     "epoch 2 follows on epoch 1, which"},
    {"the first commits", Sql(1, "DELETE FROM clock; DELETE FROM seal WHERE number=1"), kAltered,
     "the file's first"},
    {"a file removed", [](const auto& d) { fs::remove(Number(d, 2)); }, kIncomplete,
     "3.db: incomplete: the seals between "},
    {"a run removed",
     [](const auto& d) {
       fs::remove(Number(d, 1));
       fs::remove(Number(d, 2));
     },
     kProven, "proven"},
    {"the last run removed", [](const auto& d) { fs::remove(Number(d, 3)); }, kProven,
     "proven"},  // cannot show
    {"a file twice", [](const auto& d) { fs::copy_file(Number(d, 1), Number(d, 9)); }, kAltered,
     "the number comes again"},
    {"names exchanged", [](const auto& d) { fs::rename(Number(d, 1), Number(d, 9)); }, kProven,
     "whole, proven"},
    {"the end of a file cut off",
     Sql(2,
         "DELETE FROM run_end; DELETE FROM state WHERE seq>85; DELETE FROM bookmark WHERE seq>85;"
         "DELETE FROM seal WHERE last_seq>85"),
     kIncomplete, "3.db: incomplete: the seals between 20 and 22 are missing"},
    {"a file cut short", [](const auto& d) { fs::resize_file(Number(d, 1), 40 << 10); }, kCannotTell,
     "1.db: cannot tell: "},
};

TEST_F(VerifyTest, AttacksAreFoundAndTheFirstWrongCommitIsNamed) {
  const std::regex notInPython("its (schema|names of tags|table progress)|cannot tell");
  RecordRuns();
  for (const Attack& attack : kAttacks) {
    SCOPED_TRACE(attack.name);
    const std::string copied = Copied();
    attack.change(copied);
    const Ran ran = Verify(copied);
    EXPECT_EQ(ran.status, attack.status) << ran.out << ran.said;
    EXPECT_THAT(ran.out, HasSubstr(attack.said));
    if (std::regex_search(ran.out, notInPython)) continue;
    const Ran python = VerifyInPython(copied);
    EXPECT_EQ(python.status, ran.status) << ran.out << python.out << python.said;
  }
}

TEST_F(VerifyTest, AnEndThatWasCutAwayIsToldByANotedSeal) {
  RecordRuns();
  const std::string directory = Copied();
  const std::string noted = Metadata({"ask", "seal", directory}).out;
  const auto verify = [&](const std::string& seal) {
    return Metadata({"verify", "--key", key_, "--noted", seal.substr(0, seal.find('\n')), directory});
  };
  EXPECT_EQ(verify(noted).status, kProven) << noted;
  EXPECT_THAT(verify(noted.substr(0, noted.find(':')) + ":0123456789abcdef").out,
              HasSubstr("it is not the seal that was noted"));
  EXPECT_EQ(verify("7").status, 2);
  fs::remove(Number(directory, 3));
  EXPECT_EQ(Verify(directory).status, kProven);
  EXPECT_EQ(verify(noted).status, kIncomplete);
}

TEST_F(VerifyTest, FilesAndKeysOfOthersProveNothing) {
  RecordRuns();
  const std::string own = key_;
  const std::string directory = Copied();
  key_ = MakeKey(options_.keyFile = dir_.Path("another key"));
  EXPECT_EQ(Verify(directory).status, kCannotTell) << "with the wrong key";
  Open("another");
  Drive();
  Close();
  fs::copy_file(File(1), Number(directory, 2), fs::copy_options::overwrite_existing);
  key_ = own;
  const Ran spliced = Verify(directory);
  EXPECT_EQ(spliced.status, kIncomplete);
  EXPECT_THAT(spliced.out, HasSubstr("2.db: cannot tell: seal 1, records 1 to"));
  EXPECT_THAT(spliced.out, HasSubstr("3.db: incomplete: the seals between "));
}

TEST_F(VerifyTest, AKeyFileThatIsPutBackAloneIsFound) {
  const std::string old = dir_.Read("key");
  RecordRuns();
  dir_.Write("key", old);
  Open();
  Drive();
  Close();
  const Ran ran = Verify(Copied());
  EXPECT_EQ(ran.status, kAltered);
  EXPECT_THAT(ran.out, HasSubstr("4.db: altered: seal "));
}

}  // namespace
