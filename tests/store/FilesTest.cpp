#include <unistd.h>

#include <algorithm>

#include "StoreFixture.h"

namespace fs = std::filesystem;

namespace {

// Gives up writing into a directory, also where the tests run as root.
class ReadOnlyDirectory {
 public:
  explicit ReadOnlyDirectory(const std::string& path) : path_(path) {
    fs::permissions(path_, fs::perms{0555});
    if (self_ == 0 && seteuid(kNobody) != 0) std::abort();
  }
  ~ReadOnlyDirectory() {
    if (self_ == 0 && seteuid(self_) != 0) std::abort();
    fs::permissions(path_, fs::perms::owner_all);
  }
  ReadOnlyDirectory(const ReadOnlyDirectory&) = delete;
  ReadOnlyDirectory& operator=(const ReadOnlyDirectory&) = delete;

 private:
  static constexpr uid_t kNobody = 65534;
  std::string path_;
  uid_t self_ = geteuid();
};

TEST_F(StoreTest, ACleanCloseLeavesOneFile) {
  Open();
  Temperature(1);
  Store().ReportShutdownData();
  Close();
  EXPECT_EQ(std::distance(fs::directory_iterator(dir_.Path("")), {}), 1);
  EXPECT_EQ(Rows("PRAGMA integrity_check"), "ok\n");
  EXPECT_EQ(Rows("PRAGMA journal_mode"), "delete\n") << "readable where nothing can be written beside it";
}

TEST_F(StoreTest, EachRunBeginsAFileAndLeavesTheEarlierOnesAsTheyWere) {
  Open();
  Temperature(1);
  Close();
  const std::string first = dir_.Read("metadata.000001.db");
  Open();
  Temperature(2);
  Close();
  EXPECT_EQ(dir_.Read("metadata.000001.db"), first);
  EXPECT_EQ(Temperatures(2), "2\n");
}

TEST_F(StoreTest, NumbersGoOnFromTheHighestInUse) {
  for (const char* name :
       {"metadata.000007.db", "metadata.000009.db-wal", "metadata.12.db", "metadata.000011.dbx",
        "metadata.-00012.db", "other.000013.db", "metadata.999999999999.db", "metadata.x.db"}) {
    dir_.Write(name, "");
  }
  Open();
  EXPECT_TRUE(Exists(10));
}

TEST_F(StoreTest, OpenFailsWithoutAWordWhereNothingCanBeCreated) {
  dir_.Write("plain", "not a directory");
  LogLines lines;
  for (const char* base : {"missing/metadata", "plain/metadata"}) {
    DataStoreNormal store(dir_.Path(base), options_);
    EXPECT_FALSE(store.Open()) << base;
    store.ReportBookmark(1);
    store.TimerTick(1);
    store.Close();
  }
  {
    const ReadOnlyDirectory directory(dir_.Path(""));
    EXPECT_FALSE(DataStoreNormal(dir_.Path("metadata"), options_).Open());
  }
  EXPECT_EQ(lines.Take(), "");
}

TEST_F(StoreTest, WhereNoFileCanBeBegunAnyMoreRecordingGoesOnInTheOldOne) {
  options_.maxFileBytes = 131'072;
  Open();
  LogLines lines;
  {
    const ReadOnlyDirectory directory(dir_.Path(""));
    for (short i = 1; i <= 2000; ++i) {
      Temperature(i);
      if (i % 20 == 0) After(500);
    }
  }
  const std::string said = lines.Take();
  EXPECT_NE(said.find("No new file can be begun, recording goes on in "), std::string::npos) << said;
  EXPECT_LT(std::count(said.begin(), said.end(), '\n'), 100) << "not with each commit";
  EXPECT_EQ(Rows("SELECT count(*), max(temperature) FROM temperature WHERE event=1"), "2000|2000\n");
  EXPECT_FALSE(Exists(2));
  for (short i = 1; !Exists(2) && i < 2000; ++i) {
    Temperature(i);
    After(500);
  }
  EXPECT_TRUE(Exists(2)) << "as soon as one can";
}

TEST_F(StoreTest, AFileThatIsFullIsFollowedByOneThatStandsAlone) {
  options_.maxFileBytes = 262'144;
  Open();
  unsigned char mac[6] = {1, 2, 3, 4, 5, 6};
  Store().ReportMac(mac, false);
  Store().ReportSystemSerialNum("KV-0042");
  Brakes(true);
  short value = 0;
  while (!Exists(3)) {
    ASSERT_LT(value, 30'000);
    for (int i = 0; i < 100; ++i) Temperature(++value);
    After(500);
  }
  Close();

  const std::string lastBefore =
      Temperatures(1).substr(Temperatures(1).rfind('\n', Temperatures(1).size() - 2) + 1);
  EXPECT_EQ(
      Rows("SELECT source,text FROM timeline WHERE seq < (SELECT min(seq) FROM temperature WHERE event=1)",
           2),
      "clock|set by system\nbrakes|on\ntemperature 0|" + lastBefore +
          "device|hardware address 01:02:03:04:05:06\ndevice|serial number KV-0042\n");
  int total = 0;
  for (int file = 1; file <= 3; ++file) {
    EXPECT_EQ(Rows("PRAGMA integrity_check", file), "ok\n");
    EXPECT_EQ(Rows("SELECT count(*) FROM timeline WHERE utc IS NULL", file), "0\n");
    total += std::stoi(Rows("SELECT count(*) FROM temperature WHERE event=1", file));
  }
  EXPECT_EQ(total, value) << "each is in one of the files";
}

TEST_F(StoreTest, ALimitTooSmallToHoldAnythingIsRaised) {
  options_.maxFileBytes = 1;
  Open();
  for (short i = 0; i < 5; ++i) {
    Temperature(i);
    After(1000);
  }
  EXPECT_FALSE(Exists(2));
}

struct HarmCase {
  const char* name;
  void (*harm)(const std::string& path);
};

class HarmTest : public StoreTest, public testing::WithParamInterface<HarmCase> {};

TEST_P(HarmTest, IsNoticedAtTheNextCommitAndANewFileIsBegun) {
  Open();
  Store().ReportSystemSerialNum("KV-0042");
  Store().WriteFullState(true);
  GetParam().harm(File(1));

  LogLines lines;
  Temperature(1);
  After(500);
  Temperature(2);
  After(500);
  const std::string said = lines.Take();
  EXPECT_NE(said.find(" was removed or replaced"), std::string::npos) << said;
  EXPECT_EQ(said.find('\n'), said.size() - 1) << said;

  EXPECT_EQ(Temperatures(2), "1\n2\n");
  EXPECT_EQ(Rows("SELECT text FROM timeline WHERE source='device'", 2), "serial number KV-0042\n");
  EXPECT_EQ(Rows("SELECT count(*) FROM timeline WHERE utc IS NULL", 2), "0\n");
  EXPECT_FALSE(Exists(3));
}

INSTANTIATE_TEST_SUITE_P(
    Files, HarmTest,
    testing::Values(HarmCase{"Deleted", [](const std::string& path) { fs::remove(path); }},
                    HarmCase{"DeletedWithItsLog",
                             [](const std::string& path) {
                               for (const char* suffix : {"", "-wal", "-shm"}) fs::remove(path + suffix);
                             }},
                    HarmCase{"LogDeleted", [](const std::string& path) { fs::remove(path + "-wal"); }},
                    HarmCase{"Replaced",
                             [](const std::string& path) {
                               fs::copy_file(path, path + ".copy");
                               fs::rename(path + ".copy", path);
                             }},
                    HarmCase{"Truncated", [](const std::string& path) { fs::resize_file(path, 0); }}),
    [](const auto& param) { return std::string(param.param.name); });

TEST_F(StoreTest, WhatReplacedTheFileIsLeftAlone) {
  Open();
  for (const char* suffix : {"", "-wal", "-shm"}) {
    fs::remove(File(1) + suffix);
    dir_.Write("metadata.000001.db" + std::string(suffix), "someone else's");
  }
  Temperature(1);
  After(500);
  Close();
  EXPECT_EQ(Temperatures(2), "1\n");
  for (const char* suffix : {"", "-wal", "-shm"}) {
    EXPECT_EQ(dir_.Read("metadata.000001.db" + std::string(suffix)), "someone else's") << suffix;
  }
}

TEST_F(StoreTest, ADirectoryThatComesBackIsRecordedIntoAgain) {
  fs::create_directory(dir_.Path("data"));
  Open("data/metadata");
  fs::remove_all(dir_.Path("data"));
  LogLines lines;
  for (short i = 1; i <= 3; ++i) {
    Temperature(i);
    After(500);
  }
  fs::create_directory(dir_.Path("data"));
  After(500);
  const std::string said = lines.Take();
  EXPECT_NE(said.find(" fails: no new file can be begun"), std::string::npos) << said;
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 3) << "removed, fails, works again: " << said;
  EXPECT_EQ(Temperatures(2), "1\n2\n3\n");
}

}  // namespace
