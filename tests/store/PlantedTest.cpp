// Attacks with files beside recordings, and with altered files of an earlier run. They delete no file, change
// no recording, and neither stop nor delay the next run.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>

#include "StoreFixture.h"
#include "WalFiles.h"
#include "faults/WatchedVfs.h"
#include "support/HotJournal.h"
#include "support/LogCapture.h"

namespace fs = std::filesystem;

namespace {

constexpr uid_t kAnother = 65534;

class PlantedTest : public StoreTest {
 protected:
  // An earlier run of some commits, which ended in order or by a power cut.
  void EarlierRun(bool clean) {
    Open(clean ? "metadata" : "cut");
    for (short i = 0; i < 8; ++i) {
      Temperature(i);
      After(500);
    }
    if (clean) {
      Store().ReportShutdownData();
    } else {
      CopyFilesTo("metadata");
    }
    Close();
  }
  std::string HotJournal() const {
    const auto pages = static_cast<std::uint32_t>(fs::file_size(dir_.Path("metadata.000001.db")) / 1024);
    return ::HotJournal(dir_.Path("victim"), pages);
  }
  // Starts the next run, whose file has this number. Returns what it recorded about the earlier run.
  std::string NextRunTells(int number = 2) {
    const auto begun = std::chrono::steady_clock::now();
    Open();
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(5));
    Store().ReportShutdownDataAtStartup();
    Close();
    return Rows("SELECT ended||'|'||file FROM previous_run", number);
  }
  std::string Read(const char* suffix) const { return dir_.Read(std::string("metadata.000001.db") + suffix); }
  void Plant(const char* suffix, const std::string& bytes) const {
    dir_.Write(std::string("metadata.000001.db") + suffix, bytes);
  }
};

// ---- Journals

TEST_F(PlantedTest, SqliteItselfFollowsAPlantedJournal) {
  EarlierRun(true);
  dir_.Write("victim", "somebody's");
  Plant("-journal", HotJournal());
  EXPECT_EQ(Rows("SELECT count(*) FROM run_end"), "1\n");
  EXPECT_FALSE(fs::exists(dir_.Path("victim"))) << "else the other tests show nothing";
}

TEST_F(PlantedTest, AJournalBesideAnEarlierRecordingIsNeitherFollowedNorChanged) {
  for (const bool clean : {true, false}) {
    EarlierRun(clean);
    dir_.Write("victim", "somebody's");
    const std::string journal = HotJournal();
    Plant("-journal", journal);
    EXPECT_EQ(NextRunTells(), std::string(clean ? "clean" : "cut off") + "|metadata.000001.db\n");
    EXPECT_EQ(dir_.Read("victim"), "somebody's");
    EXPECT_EQ(Read("-journal"), journal);
    fs::remove(dir_.Path("metadata.000001.db-journal"));
    EXPECT_EQ(Rows("SELECT count(*) FROM temperature; PRAGMA integrity_check"), "8\nok\n");
    for (const int number : {1, 2}) fs::remove(File(number));
  }
}

// Plants a journal beside the first file at its Nth operation.
class Planter : public FileWatch {
 public:
  Planter(std::string journal, int nth) : journal_(std::move(journal)), nth_(nth) {}
  Verdict Before(const FileEvent& event) override {
    if (--nth_ == 0) {
      const std::string path(event.path.substr(0, event.path.find(".db") + 3));
      std::ofstream(path + "-journal", std::ios::binary) << journal_;
    }
    return {};
  }
  bool HasPlanted() const { return nth_ <= 0; }

 private:
  std::string journal_;
  int nth_;
};

TEST_F(PlantedTest, AJournalBesideANewFileIsNotFollowedWheneverItComes) {
  const std::string victim = dir_.Write("victim", "somebody's");
  for (int nth = 1;; nth += 1 + nth / 16) {
    Planter planter(::HotJournal(victim, 1), nth);
    const WatchedVfs vfs(planter);
    Open("new" + std::to_string(nth));
    Temperature(1);
    After(500);
    Close();
    if (!planter.HasPlanted()) break;
    ASSERT_TRUE(fs::exists(victim)) << "operation " << nth;
    ASSERT_TRUE(fs::exists(File(1) + "-journal"));
    fs::remove(File(1) + "-journal");
    ASSERT_EQ(Connection(File(1), kPlainVfs).Rows("SELECT temperature FROM temperature"), "1\n") << nth;
  }
}

// ---- WALs

void Flip(std::string& bytes, std::size_t at) {
  bytes[at] = static_cast<char>(bytes[at] ^ 1);
}

// A WAL frame has 24 + 1024 bytes.
TEST_F(PlantedTest, ADamagedWalIsSaidAndLeftWithItsFileAsItIs) {
  const struct {
    const char* what;
    void (*damage)(std::string& wal);
    const char* offset;
  } kCases[] = {
      {"a bit of its header", [](std::string& wal) { Flip(wal, 17); }, " 0"},
      {"its header", [](std::string& wal) { wal.replace(0, 32, 32, '\0'); }, " 0"},
      {"cut to a byte", [](std::string& wal) { wal.resize(1); }, " 0"},
      {"a bit of the first page", [](std::string& wal) { Flip(wal, 32 + 24 + 5); }, " 32"},
      {"a bit of a synced commit", [](std::string& wal) { Flip(wal, wal.size() / 2); }, " "},
  };
  EarlierRun(false);
  const std::string file = Read("");
  const std::string wal = Read("-wal");
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    std::string damaged = wal;
    c.damage(damaged);
    Plant("-wal", damaged);
    const LogCapture log;
    EXPECT_EQ(NextRunTells(), "damaged|metadata.000001.db\n");
    EXPECT_EQ(log.Lines("metadata.000001.db: its WAL is damaged at offset" + std::string(c.offset)), 1);
    EXPECT_EQ(log.Lines(""), 1) << log.Text();
    EXPECT_TRUE(Read("") == file);
    EXPECT_TRUE(Read("-wal") == damaged);
    fs::remove(File(2));
  }
}

// Another file under the tail's name is not replaced.
TEST_F(PlantedTest, ATornEndIsKeptBesideWhatIsFoldedIn) {
  for (const bool nameIsTaken : {false, true}) {
    EarlierRun(false);
    std::string wal = Read("-wal");
    Flip(wal, wal.size() - 1);
    Plant("-wal", wal);
    if (nameIsTaken) Plant("-wal.tail", "somebody's");
    const auto found = store::ScanWal(ReaderOf(wal));
    ASSERT_EQ(found.state, store::WalState::kTorn);
    EXPECT_EQ(NextRunTells(), "cut off|metadata.000001.db\n");
    EXPECT_FALSE(fs::exists(File(1) + "-wal"));
    EXPECT_EQ(Read(nameIsTaken ? "-wal.tail2" : "-wal.tail"),
              wal.substr(static_cast<std::size_t>(found.endOfCommits)));
    if (nameIsTaken) {
      EXPECT_EQ(Read("-wal.tail"), "somebody's");
    }
    EXPECT_EQ(Rows("SELECT max(temperature) FROM temperature; PRAGMA integrity_check"), "6\nok\n");
    for (const auto& entry : fs::directory_iterator(dir_.Path(""))) fs::remove(entry.path());
  }
}

// ---- Names

// Such names are skipped; how the last run ended is still recorded.
TEST_F(PlantedTest, NamesOfWhatIsNoFileStopNothing) {
  const struct {
    const char* what;
    void (*plant)(const std::string& path);
  } kCases[] = {
      {"FIFO", [](const std::string& path) { ASSERT_EQ(mkfifo(path.c_str(), 0666), 0); }},
      {"directory", [](const std::string& path) { fs::create_directory(path); }},
      {"link to a FIFO",
       [](const std::string& path) {
         ASSERT_EQ(mkfifo((path + ".fifo").c_str(), 0666), 0);
         fs::create_symlink(path + ".fifo", path);
       }},
      {"link to itself", [](const std::string& path) { fs::create_symlink(path, path); }},
      {"link to a device", [](const std::string& path) { fs::create_symlink("/dev/zero", path); }},
      {"empty file", [](const std::string& path) { std::ofstream{path}; }},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    EarlierRun(true);
    for (const char* name :
         {"metadata.000002.db", "metadata.999999.db", "metadata.999999999.db", "metadata.000003.db-wal",
          "metadata.000003.db-shm", "metadata.000004.db-journal"}) {
      c.plant(dir_.Path(name));
    }
    for (const char* name : {"metadata.000001.db-wal", "metadata.000001.db-shm"}) c.plant(dir_.Path(name));
    const LogCapture log;
    EXPECT_EQ(NextRunTells(5), "clean|metadata.000001.db\n");
    EXPECT_EQ(log.Text(), "");
    for (const auto& entry : fs::directory_iterator(dir_.Path(""))) fs::remove(entry.path());
  }
}

TEST_F(PlantedTest, NeitherStartNorTurnoverFollowsThem) {
  options_.maxFileBytes = 1;  // the store raises it to the minimum
  Open();
  for (const char* name :
       {"metadata.000002.db", "metadata.000003.db-wal", "metadata.000900.db", "metadata.999999999.db"}) {
    dir_.Write(name, "planted");
  }
  for (int i = 0; i < 3000 && !Exists(4); ++i) {
    Temperature(i);
    if (i % 20 == 0) After(500);
  }
  ASSERT_TRUE(Exists(4));
  Close();
  EXPECT_EQ(dir_.Read("metadata.000002.db"), "planted");
  EXPECT_EQ(Rows("SELECT count(*)>0 FROM temperature", 4), "1\n");
}

TEST_F(PlantedTest, TenThousandNamesDelayNothing) {
  EarlierRun(true);
  for (int i = 2; i < 10'002; ++i) std::ofstream{File(i)};
  std::string told = "unreadable";  // on a machine too busy to skip all of them in time
  for (int number = 10'002; number < 10'022 && told.starts_with("unreadable"); ++number)
    told = NextRunTells(number);
  EXPECT_TRUE(told == "clean|metadata.000001.db\n" || told.starts_with("cut off|metadata.0100")) << told;
}

// Files of another user are no recordings, whatever they hold.
TEST_F(PlantedTest, FilesOfAnotherUserArePassedOver) {
  alters_ = true;
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user, so root";
  EarlierRun(true);
  const auto giveAway = [&](const std::string& name, const std::string& content) {
    ASSERT_EQ(chown(dir_.Write(name, content).c_str(), kAnother, kAnother), 0);
  };
  giveAway("metadata.000002.db", Read(""));
  giveAway("metadata.000700.db", Read(""));
  giveAway("metadata.000800.db", "text");
  giveAway("metadata.000001.db-wal", MakeWal(4).wal);
  EXPECT_EQ(NextRunTells(3), "clean|metadata.000001.db\n");
}

// Reading the file takes longer than allowed.
TEST_F(PlantedTest, ASlowFileIsLeftAloneInTime) {
  alters_ = true;
  EarlierRun(true);
  const auto tamper = [this](const std::string& sql) { EXPECT_EQ(Rows(sql), ""); };
  tamper(
      "DROP TABLE clock; CREATE TABLE clock(seq, utc_ms, tick AS (length(hex(zeroblob(400000+seq)))) "
      "VIRTUAL);"
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<1000) "
      "INSERT INTO clock SELECT 1, 1 FROM n");
  const std::string before = Read("");
  (void)NextRunTells();
  EXPECT_TRUE(Read("") == before);
  EXPECT_EQ(Rows("SELECT max(seq)>0 FROM record", 2), "1\n");
}

// The signal has its default action, which would kill the process.
TEST_F(PlantedTest, ALimitOnFileSizesIsAFullMedium) {
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
  const rlimit before = limit;
  Open();
  limit.rlim_cur = fs::file_size(File(1) + "-wal");
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  const LogCapture log;
  Temperature(1);
  After(500);
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  EXPECT_EQ(log.Lines(" fails: "), 1);
  After(500);
  EXPECT_EQ(log.Lines(" works again"), 1);
  EXPECT_EQ(Temperatures(), "1\n");
}

}  // namespace
