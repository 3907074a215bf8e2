// Recordings that an attacker has planted or altered. The reader reports what it finds, executes nothing,
// changes nothing, and terminates.
#include <sys/stat.h>

#include <cstdio>
#include <fstream>

#include "ReaderFixture.h"
#include "Recording.h"
#include "support/HotJournal.h"

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

class PlantedTest : public ReaderTest {
 protected:
  void SetUp() override {
    ReaderTest::SetUp();
    Open();
    Drive();
  }
  // Copies the recording, as a crash leaves it, into an empty directory.
  void LeaveOver() {
    After(500);
    CopyFilesTo("planted/metadata");
    Close();
  }
  void LeaveClosed() {
    Store().ReportShutdownData();
    Close();
    dir_.Write("planted/metadata.000001.db", dir_.Read("metadata.000001.db"));
  }
  std::string Planted(const std::string& suffix = "") const {
    return dir_.Path("planted/metadata.000001.db" + suffix);
  }
  void Alter(const std::string& sql) const { ASSERT_EQ(Connection(Planted()).Rows(sql), ""); }
};

TEST_F(PlantedTest, AJournalIsNeverObeyed) {
  LeaveClosed();
  const std::string victim = dir_.Write("victim", "somebody's evidence");
  dir_.Write("planted/metadata.000001.db-journal", HotJournal(victim, 1));
  const std::string before = dir_.Read("planted/metadata.000001.db");
  for (const char* command : {"info", "check", "dump"}) {
    const Ran ran = Metadata({command, Planted()});
    EXPECT_EQ(ran.status, 0) << command << ran.said;
  }
  dir_.Write("planted/metadata.000001.db-wal", "");
  EXPECT_EQ(Metadata({"dump", Planted()}).status, 0);
  EXPECT_EQ(dir_.Read("victim"), "somebody's evidence");
  EXPECT_TRUE(fs::exists(Planted("-journal")));
  EXPECT_EQ(dir_.Read("planted/metadata.000001.db"), before);
}

// Things that are not regular files, and files that would fill memory or disk.
TEST_F(PlantedTest, WhatCannotBeReadIsSaidAtOnce) {
  struct Case {
    const char* name;
    const char* suffix;
    void (*plant)(const std::string& path);
    const char* said;
  };
  constexpr auto fifo = [](const std::string& path) { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); };
  constexpr auto directory = [](const std::string& path) { fs::create_directory(path); };
  constexpr auto sparse = [](const std::string& path) {
    std::ofstream(path).put('\0');
    fs::resize_file(path, std::uintmax_t{1} << 40);
  };
  const Case cases[] = {
      {"a FIFO as recording", "", fifo, "is not a regular file"},
      {"a FIFO as WAL", "-wal", fifo, "-wal is not a regular file"},
      {"a directory as WAL", "-wal", directory, "-wal is not a regular file"},
      {"a FIFO as index", "-shm", fifo, "-shm is not a regular file"},
      {"a sparse WAL of 1 TB", "-wal", sparse, "-wal has 1099511627776 bytes, more than any recording"},
  };
  LeaveOver();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    fs::rename(dir_.Path("planted"), dir_.Path("kept"));
    fs::copy(dir_.Path("kept"), dir_.Path("planted"));
    fs::remove(Planted(c.suffix));
    c.plant(Planted(c.suffix));
    for (const char* command : {"info", "check", "report"}) {
      const Ran ran = RunProgram({"timeout", "20", METADATA_PROGRAM, command, Planted()});
      EXPECT_EQ(ran.status, 1) << command;
      EXPECT_THAT(ran.said + ran.out, HasSubstr(c.said)) << command;
    }
    fs::remove_all(dir_.Path("planted"));
    fs::rename(dir_.Path("kept"), dir_.Path("planted"));
  }
}

// Schemas that would run code or never end. The other tables are still read.
TEST_F(PlantedTest, NothingOfASchemaIsRun) {
  constexpr const char* kEndless =
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n) SELECT max(i) FROM n";
  const std::string header = "(seq INTEGER PRIMARY KEY, tick INTEGER, sender_tick INTEGER, event INTEGER";
  const std::string cases[] = {
      std::string(
          "DROP VIEW timeline; DROP VIEW record; CREATE VIEW record AS SELECT seq, tick, sender_tick, "
          "event, (") +
          kEndless + ") AS source, (" + kEndless + ") AS text, 0 AS shift FROM bookmark",
      std::string("DROP TABLE tag_name; CREATE VIEW tag_name AS SELECT 0 AS tag, (") + kEndless +
          ") AS name, '' AS active_text, '' AS inactive_text",
      "DROP VIEW record; CREATE VIEW record AS SELECT zeroblob(1000000000) AS seq FROM state",
      "UPDATE tag_name SET name='gps', active_text='planted', inactive_text='planted'",
      R"(CREATE TABLE "x" "; DROP TABLE state; --")" + header + ")",
      R"(CREATE TABLE "a"" FROM state; --")" + header + ", \"v\"\" , (SELECT 1)\" INTEGER)",
      "CREATE TABLE grown" + header + ", big TEXT AS (printf('%.*c', 1000000000, 'x')))",
  };
  LeaveClosed();
  const std::string sound = dir_.Read("planted/metadata.000001.db");
  const std::string text = Metadata({"dump", Planted()}).out;
  for (const std::string& sql : cases) {
    SCOPED_TRACE(sql);
    dir_.Write("planted/metadata.000001.db", sound);
    (void)Connection(Planted()).Rows(sql);
    const Ran ran = RunProgram({"timeout", "60", METADATA_PROGRAM, "dump", Planted()});
    EXPECT_EQ(ran.status, 0) << ran.said;
    EXPECT_EQ(ran.out, text);
  }
}

TEST_F(PlantedTest, ARowThatTakesMoreMemoryThanAnyIsSaid) {
  LeaveClosed();
  Alter("UPDATE string SET text=CAST(zeroblob(100000000) AS TEXT)");
  const Ran large = Metadata({"dump", Planted()});
  EXPECT_EQ(large.status, 1);
  EXPECT_THAT(large.said, HasSubstr("table string cannot be read: reading it takes more memory than any "
                                    "recording does"));
  EXPECT_THAT(large.out, HasSubstr("  bookmark "));
}

// No text of a recording reaches a terminal or a spreadsheet as a command.
TEST_F(PlantedTest, TextsReachNeitherTerminalNorSpreadsheetAsCommands) {
  LeaveClosed();
  Alter(
      "UPDATE string SET text='=1+2'; INSERT INTO officer VALUES(100,12100,NULL,1,'-Smith',"
      "'a'||char(155)||'2J'||char(27)||'[2J'); INSERT INTO loss "
      "VALUES(101,12100,NULL,1,char(27)||'c',1,2,1); "
      "CREATE TABLE \"odd\x1B[2J\"(seq INTEGER PRIMARY KEY, tick INTEGER, sender_tick INTEGER, event "
      "INTEGER, "
      "\"v\xC2\x9B\" TEXT); INSERT INTO \"odd\x1B[2J\" VALUES(102,12100,NULL,1,'x')");
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"info"}, {"check"}, {"dump"}, {"state", "--at", "bookmark"}}) {
    std::vector<std::string> all = words;
    all.push_back(Planted());
    const Ran ran = Metadata(all);
    EXPECT_THAT(ran.out + ran.said, AllOf(Not(HasSubstr("\x1B")), Not(HasSubstr("\xC2\x9B"))))
        << words.front();
  }
  if (IsInstalled("script")) {
    const std::string command = std::string(METADATA_PROGRAM) + " dump --format csv " + Planted();
    EXPECT_THAT(RunProgram({"script", "-qec", command, "/dev/null"}).out,
                AllOf(HasSubstr("-Smith"), Not(HasSubstr("\x1B"))));
  }
  EXPECT_THAT(Metadata({"dump", "--format", "csv", Planted()}).out, HasSubstr(",=1+2,"));
  const Ran sheet = Metadata({"export", "--format", "csv", Planted()});
  EXPECT_THAT(sheet.out, AllOf(HasSubstr(",'=1+2,"), HasSubstr(",'-Smith,"), HasSubstr(",-40")));
}

TEST_F(PlantedTest, AnExportThatFailsLeavesTheOldOne) {
  LeaveClosed();
  const std::string out = dir_.Write("drive.csv", "the export of yesterday");
  EXPECT_EQ(Metadata({"export", "--format", "csv", "-o", out, dir_.Path("none")}).status, 1);
  const std::string limited =
      "ulimit -f 1; trap '' XFSZ; " METADATA_PROGRAM " export --format jsonl -o " + out + " " + Planted();
  const Ran ran = RunProgram({"bash", "-c", limited});
  EXPECT_EQ(ran.status, 1);
  EXPECT_THAT(ran.said, HasSubstr("drive.csv: File too large"));
  EXPECT_EQ(dir_.Read("drive.csv"), "the export of yesterday");
  EXPECT_EQ(Metadata({"export", "--format", "csv", "-o", out, Planted()}).status, 0);
  EXPECT_THAT(dir_.Read("drive.csv"), HasSubstr("run,seq,utc,"));
  std::size_t files = 0;
  for (const auto& entry : fs::directory_iterator(dir_.Path("")))
    files += entry.path().filename().string().starts_with("drive.csv") ? 1 : 0;
  EXPECT_EQ(files, 1U) << "nothing is left beside it";
}

// The reader does not map a truncated index of a live WAL.
TEST_F(PlantedTest, AnIndexThatIsCutShortIsNoCrash) {
  After(500);
  const std::string index = dir_.Read("metadata.000001.db-shm");
  fs::resize_file(File(1) + "-shm", 100);
  const Ran ran = Metadata({"dump", File(1)});
  dir_.Write("metadata.000001.db-shm", index);
  EXPECT_EQ(ran.status, 0) << ran.said;
  EXPECT_THAT(ran.out, HasSubstr("  bookmark "));
}

// The same while the reader has it mapped. The child ends in the middle of a call.
TEST_F(PlantedTest, AnIndexThatIsCutShortLaterEndsTheReaderInOrder) {
  After(500);
  const std::string index = "metadata.000001.db-shm";
  Child child([&] {
    reader::Recording recording;
    std::string error;
    if (!recording.Open(File(1), error) || recording.HowItIs() != reader::Recording::Kind::kLive) return 2;
    dir_.Write("kept", dir_.Read(index));  // here: closing the index drops the locks of a process
    fs::resize_file(dir_.Path(index), 0);
    if (std::freopen(dir_.Path("said").c_str(), "w", stderr) == nullptr) return 3;
    (void)recording.Committed("last_seq", 0);
    return 4;
  });
  EXPECT_EQ(child.Wait(), 1);
  dir_.Write(index, dir_.Read("kept"));
  EXPECT_THAT(dir_.Read("said"), HasSubstr(".db-shm) was cut short while it was read"));
}

// The pages of a table lead to the next page 142 times each, so a walk through the table never ends.
TEST_F(PlantedTest, PagesThatLeadToEachOtherAreSaidAtOnce) {
  constexpr std::size_t kPage = 1024;
  constexpr std::size_t kCells = 142;
  constexpr std::uint32_t kDepth = 6;
  const auto word = [](std::size_t value, int bytes) {
    std::string text;
    while (bytes-- > 0) text += static_cast<char>(value >> (8 * bytes));
    return text;
  };
  const auto leadingTo = [&word](std::size_t page) {
    const std::size_t content = kPage - kCells * 5;
    std::string bytes = "\x05" + word(0, 2) + word(kCells, 2) + word(content, 2) + word(0, 1) + word(page, 4);
    for (std::size_t i = 0; i < kCells; ++i) bytes += word(content + i * 5, 2);
    bytes.resize(content);
    for (std::size_t i = 0; i < kCells; ++i) bytes += word(page, 4) + "\1";
    return bytes;
  };
  LeaveClosed();
  const std::string sound = dir_.Read("planted/metadata.000001.db");
  const std::size_t first = sound.size() / kPage + 1;
  for (const std::string table : {"run_end", "clock", "state"}) {
    dir_.Write("planted/metadata.000001.db", sound);
    const std::string root = "SELECT rootpage FROM sqlite_schema WHERE name='" + table + "'";
    const std::size_t at = (std::stoul(Connection(Planted()).Rows(root)) - 1) * kPage;
    std::string file = sound;
    file.replace(at, kPage, leadingTo(first));
    for (std::size_t i = 1; i <= kDepth; ++i) file += leadingTo(first + i);
    file += sound.substr(at, kPage);
    file.replace(28, 4, word(first + kDepth, 4));  // the number of pages
    dir_.Write("planted/metadata.000001.db", file);
    for (const char* command : {"check", "info", "dump"}) {
      const Ran ran = RunProgram({"timeout", "20", METADATA_PROGRAM, command, Planted()});
      EXPECT_EQ(ran.status, 1) << command << table;
      EXPECT_THAT(ran.said + ran.out, HasSubstr(table)) << command;
    }
  }
}

TEST_F(PlantedTest, AMissingWalIsSaid) {
  After(500);
  Rows("PRAGMA wal_checkpoint");  // so the file holds a part without the WAL
  Brakes(true);
  LeaveOver();
  fs::remove(Planted("-wal"));
  const Ran check = Metadata({"check", Planted()});
  EXPECT_EQ(check.status, 1);
  EXPECT_THAT(check.out, HasSubstr("metadata.000001.db-wal is missing"));
  EXPECT_THAT(Metadata({"info", Planted()}).said, HasSubstr("metadata.000001.db-wal is missing"));
}

}  // namespace
