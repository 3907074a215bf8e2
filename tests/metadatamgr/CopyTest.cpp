// Copies requested over the wire, also when the process ends meanwhile, or where they would cost a file.
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <functional>
#include <sstream>

#include "Car.h"
#include "support/Connection.h"
#include "support/Eventually.h"
#include "support/Hex.h"

namespace {

namespace fs = std::filesystem;

const std::string kRecordings = "disk/metadata/";
const std::string kRecording = kRecordings + "metadata.000001.db";

TEST(Copy, HoldsWhatWasSentBefore) {
  Car car;
  car.Run();
  car.stateMgr.Send(kRecordStartStop, "000003e8 01");
  car.stateMgr.Send(kCameraState, "000003e9 00000002 00000001");
  const std::string tick = car.stateMgr.Ask(kGetTick, "", kTick).substr(0, 11);
  EXPECT_EQ(car.stateMgr.Ask(kCopy, CopyRequest(car.Path("copy.db")), kCopied), "01");
  EXPECT_EQ(
      Connection(car.Path("copy.db")).Rows("SELECT source||' '||text FROM timeline WHERE sender_tick>=1000"),
      "recording started\ncamera 2 state 1\n");
  EXPECT_EQ(car.stateMgr.Ask(kCopy, CopyRequest(car.Path("part.db"), tick + "ffffffff"), kCopied), "01");
  EXPECT_EQ(Connection(car.Path("part.db")).Rows("SELECT from_tick=first_asked FROM copy"), "1\n");
  EXPECT_EQ(car.stateMgr.Ask(kCopy, CopyRequest(car.Path("copy.db")), kCopied), "00") << "is there already";
}

constexpr int kManyRows = 500'000;

class LongCopy : public testing::Test {
 protected:
  // Requests a long copy, and returns when the copy has begun.
  void SetUp() override {
    car_.Run();
    (void)Rows("disk/metadata/metadata.000001.db",
               "PRAGMA busy_timeout=20000; WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n "
               "WHERE i<" +
                   std::to_string(kManyRows) +
                   ") INSERT INTO temperature SELECT -i, 1, NULL, 1, 9, i%100 FROM n; "
                   "PRAGMA wal_checkpoint");
    tool_.Send(kBookmark, "00000001");  // its commit truncates the WAL
    tool_.Send(kCopy, CopyRequest(car_.Path("copy.db")));
    ASSERT_TRUE(Eventually([this] { return Copying(); }));
  }
  // A copy in progress is a file without a name.
  bool Copying() const {
    std::error_code gone;
    for (const auto& entry :
         std::filesystem::directory_iterator("/proc/" + std::to_string(car_.program->Id()) + "/fd", gone)) {
      const std::string target = std::filesystem::read_symlink(entry.path(), gone).string();
      if (target.starts_with(car_.Path("")) && target.ends_with(" (deleted)")) return true;
    }
    return false;
  }
  bool Exists(const std::string& name) const { return std::filesystem::exists(car_.Path(name)); }
  std::string Rows(const std::string& name, const std::string& sql) const {
    return Connection(car_.Path(name)).Rows(sql);
  }
  std::string Copied() const {
    return Rows("copy.db", "SELECT count(*) FROM temperature WHERE sensor=9; PRAGMA quick_check");
  }

  Car car_;
  Peer tool_{"Tool"};
};

TEST_F(LongCopy, IsFinishedAndAnsweredBeforeAShutDown) {
  car_.program->Signal(SIGTERM);
  EXPECT_FALSE(Exists("copy.db")) << "too short";
  EXPECT_EQ(tool_.Await(kCopied), "01");
  EXPECT_EQ(car_.End(), 0);
  EXPECT_EQ(Copied(), std::to_string(kManyRows) + "\nok\n");
  EXPECT_EQ(car_.Records("source='run'"), Lines{"run clean end event"});
}

TEST_F(LongCopy, ThatIsKilledShowsNoFileAndIsMadeAnew) {
  car_.program->Signal(SIGKILL);
  EXPECT_EQ(car_.End(), 128 + SIGKILL);
  EXPECT_FALSE(Exists("copy.db"));
  car_.Run();
  EXPECT_EQ(Rows("disk/metadata/metadata.000002.db", "SELECT DISTINCT ended FROM previous_run"), "cut off\n");
  Peer again("Again");
  EXPECT_EQ(again.Ask(kCopy, CopyRequest(car_.Path("copy.db")), kCopied), "01");
  EXPECT_EQ(Copied(), "0\nok\n") << "of the new run";
}

// The kinds and contents of all files in a directory.
std::string Everything(const std::string& directory) {
  Lines all;
  for (const auto& entry : fs::recursive_directory_iterator(directory)) {
    const std::string path = entry.path();
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0);
    std::ostringstream text;
    text << path << ' ' << status.st_mode << ' ' << status.st_ino << ' ' << status.st_nlink << ' ';
    if (S_ISLNK(status.st_mode)) text << fs::read_symlink(path);
    const bool changes = path.ends_with("-shm") || path.ends_with(".err");  // marks of readers, and the log
    if (S_ISREG(status.st_mode) && !changes)
      text << status.st_mtime << ' ' << std::hash<std::string>()(TextOfFile(path));
    all.push_back(text.str());
  }
  std::sort(all.begin(), all.end());
  return Joined(all);
}

TEST(Request, ForACopyCostsNobodyAFile) {
  Car car;
  car.Run();
  car.stateMgr.Send(kBookmark, "00000001");
  const auto copied = [&](const std::string& destination) {
    return car.stateMgr.Ask(kCopy, CopyRequest(destination), kCopied);
  };
  const auto path = [&](const std::string& name) { return car.Path(name); };
  EXPECT_EQ(copied(path("done.db")), "01");
  const std::string victim = "somebody's only copy";
  for (const char* name : {"file", "empty.db", "logged.db-wal", "journaled.db-journal"}) {
    car.Write(name, name == std::string("empty.db") ? "" : victim);
  }
  fs::create_hard_link(path("file"), path("hard"));
  fs::create_hard_link(path(kRecording), path("hard recording"));
  fs::create_symlink("file", path("link"));
  fs::create_symlink("nowhere", path("dangling"));
  fs::create_symlink("itself", path("itself"));
  fs::create_directory_symlink(path(kRecordings), path("directory"));
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0666), 0);
  const auto before = Everything(path(""));
  const auto endpoints = Everything(car.IpcDirectory());

  for (const char* name : {"done.db", "file", "empty.db", "logged.db", "journaled.db", "hard",
                           "hard recording", "link", "dangling", "itself", "directory", "pipe", "disk"}) {
    EXPECT_EQ(copied(path(name)), "00") << name;
  }
  for (const std::string& destination :
       {path(kRecording), path(kRecording + "-wal"), path(kRecordings + "metadata.000002.db"),
        path("directory/metadata.000002.db"), path("disk/../directory/metadata.000001.db"),
        "/dev/shm" + car.environment["METADATA_SHM"], IpcDir::File("MetadataMgr"),
        IpcDir::File("MetadataMgr.lock"), std::string("/dev/null"), std::string("/proc/self/mem")}) {
    EXPECT_EQ(copied(destination), "00") << destination;
  }
  EXPECT_EQ(Everything(path("")), before);
  EXPECT_EQ(Everything(car.IpcDirectory()), endpoints);
  EXPECT_EQ(car.SharedRecord()[0], 1);
  EXPECT_EQ(copied(path("free.db")), "01");
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Events(), Lines{"bookmark set event 1"});
}

}  // namespace
