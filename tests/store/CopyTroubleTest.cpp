// Failed copies, and the effects of a copy on the process and the recording.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "CopyFixture.h"
#include "support/LogCapture.h"
#include "system/Watchdog.h"

namespace {

int pets = 0;

}  // namespace

// Replaces the platform's watchdog, and counts the pets.
struct Watchdog::Listener {};
Watchdog::Watchdog(e_Process /*process*/, e_ThreadIds /*thread*/) {}
Watchdog::~Watchdog() = default;
void Watchdog::PetWatchdog() {
  ++pets;
}

namespace {

// tests/metadatamgr/CopyTest.cpp tests existing files at the path.
TEST_F(CopyTest, IsMadeOnlyUnderAWholePathThatCanBe) {
  Open();
  Temperature(1);
  std::filesystem::create_directory(dir_.Path("directory"));
  dir_.Write("file", "content");
  After(1000);
  const auto before = Names();
  for (const std::string& destination :
       {std::string(), std::string("copy.db"), std::string("./copy.db"), std::string("/"), dir_.Path("new/"),
        dir_.Path("nowhere/copy.db"), dir_.Path("file/copy.db"), dir_.Path(std::string(256, 'n')),
        std::string("/proc/copy.db")}) {
    EXPECT_FALSE(
        MetadataReader().ReadToNewFile(dir_.Path("metadata"), destination, kFromBeginning, kToEnd, nullptr))
        << destination;
    EXPECT_EQ(Names(), before) << destination;
  }
  EXPECT_FALSE(std::filesystem::exists("copy.db"));

  dir_.Write("copy.db.partial", "");  // a power cut left it
  EXPECT_TRUE(Copy());
  EXPECT_TRUE(Copy(kFromBeginning, kToEnd, "directory/metadata.000002.db")) << "another directory's";
  EXPECT_TRUE(Copy(kFromBeginning, kToEnd, "a copy of 100%, isn't it?.db"));
  EXPECT_EQ(InCopy("SELECT temperature FROM temperature"), "1\n");
}

TEST_F(CopyTest, TakesEveryNameThatTheFileSystemTakesAndTellsWhyNot) {
  Open();
  for (const std::size_t size : {247U, 248U, 255U}) {
    EXPECT_TRUE(Copy(kFromBeginning, kToEnd, std::string(size, 'n'))) << size;
  }
  const std::string directories = std::string(400, '/') + "a/" + std::string(400, '/');
  const struct {
    std::string name;
    const char* reason;
  } kCases[] = {
      {std::string(256, 'n'), "File name too long"},
      {directories + "copy.db", "No such file or directory"},
      {"metadata.000007.db", "the name is one of the recordings' own"},
  };
  for (const auto& c : kCases) {
    const LogCapture log;
    EXPECT_FALSE(Copy(kFromBeginning, kToEnd, c.name));
    EXPECT_NE(log.Text().find(std::string("Copy failed (") + c.reason + "): "), std::string::npos)
        << log.Text();
  }
}

TEST_F(CopyTest, ACopyBelongsToTheRecordingsOwnerAndIsMadeOnlyWhereItIsSafe) {
  Open();
  Temperature(1);
  const bool isRoot = geteuid() == 0;
  const uid_t owner = isRoot ? 65534 : geteuid();
  if (isRoot) {
    ASSERT_EQ(chown(File(1).c_str(), owner, owner), 0);
  }
  const mode_t mask = umask(0);
  int number = 0;
  for (const mode_t ours : {0000U, 0077U}) {
    (void)umask(ours);
    for (const auto& [mode, made] : {std::pair{0700U, true},
                                     {0755U, true},
                                     {0770U, false},
                                     {0777U, false},
                                     {01777U, true},
                                     {02755U, true}}) {
      const std::string name = "place" + std::to_string(++number);
      std::filesystem::create_directory(dir_.Path(name));
      ASSERT_EQ(chmod(dir_.Path(name).c_str(), mode), 0);
      EXPECT_EQ(Copy(kFromBeginning, kToEnd, name + "/copy.db"), made) << std::oct << mode;
      struct stat status {};
      ASSERT_EQ(stat(dir_.Path(name + "/copy.db").c_str(), &status) == 0, made);
      if (!made) continue;
      EXPECT_EQ(status.st_mode, S_IFREG | 0640U);
      EXPECT_EQ(status.st_uid, owner);
      EXPECT_EQ(status.st_gid, isRoot ? owner : getegid());
    }
  }
  (void)umask(mask);
}

TEST_F(CopyTest, LeavesNothingBehindWhereTheMediumIsFull) {
  alters_ = true;
  Open();
  Fill(20'000);
  Temperature(1);
  After(1000);
  const auto before = Names();
  const LogCapture log;
  (void)std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
  for (limit.rlim_cur = 0; limit.rlim_cur < 400'000; limit.rlim_cur += 40'000) {
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);  // the maximum size of a file
    EXPECT_FALSE(Copy()) << limit.rlim_cur;
    EXPECT_EQ(Names(), before) << limit.rlim_cur;
  }
  limit.rlim_cur = limit.rlim_max;
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  EXPECT_TRUE(Copy());
  EXPECT_EQ(InCopy("SELECT count(*) FROM temperature"), "20001\n");
}

TEST_F(CopyTest, DoesNotDisturbTheRecording) {
  Open();
  Temperature(1);
  After(500);
  Temperature(2);
  ASSERT_TRUE(Copy());
  const std::string wal = dir_.Read("metadata.000001.db-wal");
  const std::string file = dir_.Read("metadata.000001.db");
  ASSERT_TRUE(Copy(kFromBeginning, kToEnd, "second.db"));
  EXPECT_EQ(dir_.Read("metadata.000001.db-wal"), wal) << "nothing was folded in";
  EXPECT_EQ(dir_.Read("metadata.000001.db"), file);
  Temperature(3);
  After(500);
  EXPECT_EQ(Temperatures(), "1\n2\n3\n");
  EXPECT_EQ(Rows("PRAGMA wal_checkpoint(TRUNCATE)"), "0|0|0\n") << "nobody holds the WAL";
}

// The watchdog is petted once per some thousand steps of SQLite, so pets measure the work.
TEST_F(CopyTest, CostsWhatItHoldsHoweverLongTheRunIs) {
  alters_ = true;
  const auto record = [this](int count) {
    for (int i = 0; i < count; ++i) {
      Temperature(i);
      if (i % 100 == 0) After(500);
    }
  };
  Open();
  Brakes(true);
  record(50'000);
  After(10);
  const unsigned int from = clock_.tick;
  Temperature(-1);
  After(1000);
  record(50'000);
  Watchdog watchdog(e_Process_MetadataMgr, e_ThreadIds{});
  const auto copy = [&](const char* name) {
    pets = 0;
    EXPECT_TRUE(Copy(from, from + 10, name, &watchdog));
    EXPECT_EQ(Connection(dir_.Path(name))
                  .Rows("SELECT source, text FROM timeline WHERE source='brakes' OR "
                        "(source='temperature 0' AND event<>'restated')"),
              "brakes|on\ntemperature 0|-1\n");
    return pets;
  };
  EXPECT_LT(copy("short.db"), 60) << "and 148 when all is read";
  Rows(
      "DELETE FROM state WHERE event=2 AND seq IN (SELECT max(state.seq) FROM state, clock WHERE "
      "state.tick<" +
      std::to_string(from) + ")");
  (void)copy("lost.db");  // uses the previous full state
}

TEST_F(CopyTest, KeepsTheWatchdogQuietAndTheMemoryFlat) {
  alters_ = true;
  Open();
  Temperature(1);
  After(1000);
  std::int64_t used[2];
  for (int turn = 0; turn < 2; ++turn) {
    if (turn == 1) Fill(400'000);
    Watchdog watchdog(e_Process_MetadataMgr, e_ThreadIds{});
    pets = 0;
    (void)sqlite3_memory_highwater(1);
    ASSERT_TRUE(Copy(kFromBeginning, kToEnd, turn == 0 ? "short.db" : "long.db", &watchdog));
    used[turn] = sqlite3_memory_highwater(0);
  }
  EXPECT_GT(pets, 100) << "each few milliseconds";
  EXPECT_LT(used[1] - used[0], 3'000'000) << "the caches of the two files";
}

}  // namespace
