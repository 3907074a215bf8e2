#include <sys/resource.h>

#include <csignal>

#include "StoreFixture.h"
#include "support/LogCapture.h"
#include "support/NoDescriptors.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kSuffixes[] = {"", "-wal", "-shm"};

TEST_F(StoreTest, EachRunBeginsAFileAndLeavesTheEarlierOnesAsTheyWere) {
  Open();
  Temperature(1);
  Close();
  EXPECT_EQ(std::distance(fs::directory_iterator(dir_.Path("")), {}), 1) << "a clean close leaves one file";
  EXPECT_EQ(Rows("PRAGMA integrity_check; PRAGMA journal_mode"), "ok\ndelete\n")
      << "readable where nothing can be written beside it";
  const std::string first = dir_.Read("metadata.000001.db");
  Open();
  Temperature(2);
  Close();
  EXPECT_EQ(dir_.Read("metadata.000001.db"), first);
  EXPECT_EQ(Temperatures(2), "2\n");
}

TEST_F(StoreTest, WhyNoRecordingCanBeBegunIsLogged) {
  dir_.Write("file", "");
  std::string deep;
  for (int i = 0; i < 3; ++i) deep += std::string(200, 'd') + "/";
  dir_.Write(deep + "file", "");
  const struct {
    std::string base;
    const char* reason;
  } kCases[] = {
      {"nowhere/metadata", "No such file or directory"},
      {"file/metadata", "Not a directory"},
      {std::string(250, 'n'), "File name too long"},
      {deep + "metadata", "File name too long"},
  };
  for (const auto& c : kCases) {
    const LogCapture log;
    DataStoreNormal store(dir_.Path(c.base), options_);
    EXPECT_FALSE(store.Open()) << c.base;
    store.ReportBookmark(1);
    store.TimerTick(1);
    EXPECT_EQ(log.Lines(std::string("No recording can be begun (") + c.reason + ")"), 1) << log.Text();
  }
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
  const rlimit before = limit;
  (void)std::signal(SIGXFSZ, SIG_IGN);
  limit.rlim_cur = 40'000;
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  const LogCapture log;
  DataStoreNormal store(dir_.Path("metadata"), options_);
  EXPECT_FALSE(store.Open());
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  EXPECT_EQ(log.Lines("No recording can be begun (File too large)"), 1) << log.Text();
}

// Only recordings count for the next number. A name that anything has is never used.
TEST_F(StoreTest, NumbersGoOnFromTheNewestRecordingAndPassOverOtherNames) {
  alters_ = true;
  Open();
  Close();
  fs::rename(File(1), File(7));
  for (const char* name :
       {"metadata.000008.db", "metadata.000009.db-wal", "metadata.000010.db-journal", "metadata.000500.db",
        "metadata.999999999.db", "metadata.999999999999.db", "metadata.12.db", "metadata.0000012.db",
        "metadata.-00012.db", "other.000013.db"}) {
    dir_.Write(name, "");
  }
  fs::create_directory(dir_.Path("metadata.000011.db"));
  fs::create_symlink(File(7), dir_.Path("metadata.000600.db"));
  Open();
  EXPECT_TRUE(Exists(12));
}

TEST_F(StoreTest, NumbersHaveMoreDigitsBehindTheLastOfSixAndNoneIsTheLast) {
  Open();
  Close();
  for (const auto& [newest, next] : {std::pair{"metadata.999999.db", "metadata.1000000.db"},
                                     std::pair{"metadata.999999999.db", "metadata.000001.db"}}) {
    const auto first = *fs::directory_iterator(dir_.Path(""));
    fs::rename(first.path(), dir_.Path(newest));
    Open();
    Close();
    EXPECT_TRUE(fs::exists(dir_.Path(next)));
    fs::remove(dir_.Path(newest));
  }
}

class FullFileTest : public StoreTest {
 protected:
  // 2000 records fill a file of the minimum size about once.
  void Fill(int records = 2000) {
    for (int i = 0; i < records; ++i) {
      Temperature(++value_);
      if (i % 20 == 19) After(500);
    }
  }
  int value_ = 0;
};

TEST_F(FullFileTest, WhereNoFileCanBeBegunAnyMoreRecordingGoesOnInTheOldOne) {
  options_.maxFileBytes = 1;  // the store raises it to the minimum
  Open();
  After(1000);
  EXPECT_FALSE(Exists(2));
  Fill(0);  // a sanitizer opens descriptors at the first use of a class
  {
    const LogCapture log;
    {
      const NoDescriptors none;
      Fill();
    }
    const int said = log.Lines("No new file can be begun, recording goes on in ");
    EXPECT_GT(said, 0);
    EXPECT_LT(said, 50) << "not with each commit";
    EXPECT_EQ(log.Lines(""), said) << log.Text();
  }
  EXPECT_EQ(Rows("SELECT count(*), max(temperature) FROM temperature WHERE event=1"), "2000|2000\n");
  EXPECT_FALSE(Exists(2));
  Fill();
  EXPECT_TRUE(Exists(2)) << "as soon as one can";
}

TEST_F(FullFileTest, IsFollowedByOneThatStandsAlone) {
  options_.maxFileBytes = 131'072;
  Open();
  unsigned char mac[6] = {1, 2, 3, 4, 5, 6};
  Store().ReportMac(mac, false);
  Store().ReportSystemSerialNum("KV-0042");
  Brakes(true);
  while (!Exists(3)) {
    ASSERT_LT(value_, 30'000);
    Fill();
  }
  Close();
  EXPECT_EQ(
      Rows("SELECT source,text FROM timeline WHERE seq < (SELECT min(seq) FROM temperature WHERE event=1)",
           2),
      "clock|set by system\ndevice|hardware address 01:02:03:04:05:06\ndevice|serial number KV-0042\n"
      "brakes|on\ntemperature 0|" +
          Rows("SELECT max(temperature) FROM temperature WHERE event=1"))
      << "in the order of the originals";
}

TEST_F(FullFileTest, EachFileHasTheRandomIdOfItsRun) {
  options_.maxFileBytes = 131'072;
  Open();
  while (!Exists(2)) Fill();
  Close();
  int nextRun = 3;
  while (Exists(nextRun)) ++nextRun;
  Open();
  Close();
  const std::string first = Rows("SELECT hex(id) FROM run WHERE length(id)=16", 1);
  const std::string next = Rows("SELECT hex(id) FROM run WHERE length(id)=16", nextRun);
  EXPECT_EQ(first.size(), 33U);
  EXPECT_EQ(Rows("SELECT hex(id) FROM run", 2), first);
  EXPECT_EQ(next.size(), 33U);
  EXPECT_NE(next, first);
}

TEST_F(StoreTest, AFullStateStandsBehindEachSoManyRecords) {
  Open();
  Brakes(true);
  Store().ReportSystemSerialNum("1");
  for (int i = 0; i < 40'000; ++i) {
    Temperature(i);
    if (i % 1000 == 0) After(500);
  }
  Close();
  const std::string marks = "(SELECT seq, tick, last_seq FROM full_state)";
  EXPECT_EQ(Rows("SELECT count(*) FROM " + marks), "2\n");
  EXPECT_EQ(Rows("SELECT DISTINCT source FROM record JOIN " + marks +
                 " AS m ON record.seq>m.seq AND "
                 "record.seq<=m.last_seq AND record.tick=m.tick AND event=2 ORDER BY source"),
            "brakes\ndevice\ntemperature 0\n");
  EXPECT_EQ(Rows("SELECT sum(last_seq-seq) FROM full_state"), "6\n") << "and nothing else";
}

TEST_F(StoreTest, HarmToTheFileIsNoticedAtTheNextCommitSaidAndRecordedInANewFile) {
  const struct {
    std::string what;
    void (*harm)(const std::string& path);
    std::string told;
  } kCases[] = {
      {"deleted", [](const std::string& path) { fs::remove(path); }, "removed or replaced"},
      {"WAL deleted", [](const std::string& path) { fs::remove(path + "-wal"); },
       "left without its WAL, which was removed or replaced"},
      {"replaced",
       [](const std::string& path) {
         fs::copy_file(path, path + ".copy");
         fs::rename(path + ".copy", path);
       },
       "removed or replaced"},
      {"truncated", [](const std::string& path) { fs::resize_file(path, 0); }, "truncated"},
      {"WAL emptied", [](const std::string& path) { fs::resize_file(path + "-wal", 0); },
       "damaged: its WAL was truncated"},
      {"WAL cut short",
       [](const std::string& path) { fs::resize_file(path + "-wal", fs::file_size(path + "-wal") - 1); },
       "damaged: its WAL was truncated"},
      {"WAL's head overwritten",
       [](const std::string& path) {
         std::fstream(path + "-wal", std::ios::binary | std::ios::in | std::ios::out).seekp(17) << 'x';
       },
       "damaged: its WAL was overwritten"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    Open(c.what);
    c.harm(File(1));
    const LogCapture log;
    for (const int value : {1, 2}) {
      Temperature(value);
      After(500);
    }
    EXPECT_EQ(log.Lines(" was " + c.told), 1);
    EXPECT_EQ(log.Lines(""), 1) << log.Text();
    EXPECT_EQ(Temperatures(2), "1\n2\n");
    EXPECT_EQ(Rows("SELECT file, harm FROM abandoned", 2), c.what + ".000001.db|" + c.told + "\n");
    EXPECT_EQ(Rows("SELECT count(*) FROM timeline WHERE utc IS NULL", 2), "0\n");
    EXPECT_FALSE(Exists(3));
  }
}

TEST_F(StoreTest, WhatReplacedTheFileIsLeftAlone) {
  Open();
  for (const std::string suffix : kSuffixes) {
    fs::remove(File(1) + suffix);
    dir_.Write("metadata.000001.db" + suffix, "someone else's");
  }
  Temperature(1);
  After(500);
  Close();
  EXPECT_EQ(Temperatures(2), "1\n");
  for (const std::string suffix : kSuffixes) {
    EXPECT_EQ(dir_.Read("metadata.000001.db" + suffix), "someone else's") << suffix;
  }
}

TEST_F(StoreTest, ADirectoryThatIsRemovedIsMadeAgainAsItWas) {
  fs::create_directory(dir_.Path("data"));
  fs::permissions(dir_.Path("data"), fs::perms{0770});
  Open("data/metadata");
  const auto mode = [this] { return static_cast<unsigned>(fs::status(dir_.Path("data")).permissions()); };
  EXPECT_EQ(mode(), 01770U) << "its group can add to it, and remove nothing";
  fs::remove_all(dir_.Path("data"));
  const LogCapture log;
  Temperature(1);
  After(500);
  EXPECT_EQ(log.Lines(" was removed or replaced"), 1);
  EXPECT_EQ(log.Lines(""), 1) << log.Text();
  EXPECT_EQ(Temperatures(2), "1\n");
  EXPECT_EQ(mode(), 01770U);
}

TEST_F(StoreTest, ADirectoryThatCannotBeMadeAgainIsTriedAgain) {
  fs::create_directories(dir_.Path("disk/data"));
  Open("disk/data/metadata");
  fs::remove_all(dir_.Path("disk"));
  const LogCapture log;
  for (const int value : {1, 2, 3}) {
    Temperature(value);
    After(500);
  }
  EXPECT_EQ(log.Lines(" fails: no new file can be begun"), 1);
  fs::create_directory(dir_.Path("disk"));
  After(500);
  EXPECT_EQ(log.Lines(""), 3) << "removed, fails, works again: " << log.Text();
  EXPECT_EQ(Temperatures(2), "1\n2\n3\n");
}

}  // namespace
