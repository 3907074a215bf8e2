// What other users can do: those in the group ask, subscribe and read; all others nothing.
#include <fcntl.h>
#include <grp.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <set>

#include "Car.h"
#include "support/Child.h"
#include "support/Eventually.h"
#include "support/RawPeer.h"

namespace {

namespace fs = std::filesystem;

constexpr uid_t kObserver = 4242;
const std::string kOwnNotice = U32(0) + U32(4711);  // item 0, under this notification id

struct Try {
  const char* what;
  std::string packet;
  std::string answer;  // begin of the answer; empty: no answer
};

const Try kTries[] = {
    {"ping", Packet(kPing), Packet(kPong)},
    {"last tick", Packet(kGetTick), Packet(kTick)},
    {"log level", Packet(kLogLevelGet, U32(0)), Packet(kLogLevel, U32(7))},
    {"follow item 0", Packet(kSubscribeItem, kOwnNotice), Packet(kItem, kOwnNotice + U32(0))},
    {"copy", Packet(kCopy, FromHex(CopyRequest("/tmp/no-copy.db"))), Packet(kCopied, std::string(1, '\0'))},
    {"quit", Packet(kQuit), ""},
    {"a process died", Packet(kDied, U32(12)), ""},
    {"a process was restarted", Packet(kRestarted, U32(12)), ""},
    {"subscribe to the servers", Packet(kSubscribe, "\1"), ""},
    {"full run", Packet(kFullRun), ""},
    {"set the log level", Packet(kLogLevelSet, U32(0)), ""},
    {"bookmark", Packet(kBookmark, U32(1)), ""},
    {"recording", Packet(kRecordStartStop, U32(1) + "\1"), ""},
    {"stream state", Packet(kStreamState, U32(1) + U32(1) + U32(1)), ""},
    {"camera state", Packet(kCameraState, U32(1) + U32(1) + U32(1)), ""},
    {"microphone state", Packet(kMicState, U32(1) + U32(1) + "\1\1"), ""},
    {"notice of the state manager", Packet(kRecordStart, U32(1)), ""},
    {"notice of a live stream", Packet(kLiveStream0, std::string(8, '\0')), ""},
    {"answer of a server", Packet(kItem, U32(1) + U32(kRecordStart) + U32(0) + U32(1)), ""},
    {"unknown", Packet(4711, "x"), ""},
};

// Runs the body as the observer, or as another user. Its result is the exit status.
int AsObserver(const std::function<int()>& body, uid_t user = kObserver, gid_t group = getegid()) {
  if (setgroups(0, nullptr) != 0 || setresgid(group, group, group) != 0 || setresuid(user, user, user) != 0)
    return 99;
  return body();
}

// What another user does to files, to the shared record and to the process. The group may do some of it.
struct Attempt {
  const char* what;
  bool ofGroup;
  std::function<int(const Car&)> tries;  // below 0, and errno, when it fails
};

Attempt Opens(const char* what, bool ofGroup, const std::string& path, int flags) {
  return {what, ofGroup, [=](const Car& car) {
            return open((path[0] == '/' ? car.IpcDirectory() + path : car.Path(path)).c_str(),
                        flags | O_CLOEXEC, 0600);
          }};
}

std::vector<Attempt> Attempts() {
  const std::string recordings = "disk/metadata/";
  const std::string recording = recordings + "metadata.000001.db";
  const auto record = [](const Car& car) { return car.environment.at("METADATA_SHM"); };
  return {
      Opens("take the endpoint's lock", false, "/MetadataMgr.lock", O_RDWR),
      Opens("make an endpoint", false, "/intruder", O_WRONLY | O_CREAT),
      Opens("list the recordings", true, recordings, O_DIRECTORY),
      Opens("make a file beside them", true, recordings + "intruder", O_WRONLY | O_CREAT),
      Opens("read a recording", true, recording, O_RDONLY),
      Opens("write a recording", false, recording, O_WRONLY),
      Opens("read its WAL", true, recording + "-wal", O_RDONLY),
      Opens("write its WAL", false, recording + "-wal", O_WRONLY),
      Opens("write its index", false, recording + "-shm", O_WRONLY),
      Opens("read a copy", true, "copy.db", O_RDONLY),
      Opens("write a copy", false, "copy.db", O_WRONLY),
      {"read the shared record", true, [=](auto& car) { return shm_open(record(car).c_str(), O_RDONLY, 0); }},
      {"write the shared record", false, [=](auto& car) { return shm_open(record(car).c_str(), O_RDWR, 0); }},
      {"remove the shared record", false, [=](auto& car) { return shm_unlink(record(car).c_str()); }},
      {"remove a recording", false, [=](auto& car) { return unlink(car.Path(recording).c_str()); }},
      {"remove the endpoint", false, [](auto&) { return unlink(IpcDir::File("MetadataMgr").c_str()); }},
      {"replace the endpoints' directory", false,
       [](auto& car) { return rename(car.IpcDirectory().c_str(), car.Path("ipc").c_str()); }},
      {"end the process", false, [](auto& car) { return kill(car.program->Id(), SIGTERM); }},
  };
}

// The number of the first attempt that does not end as it should for this user, from 1; 0: none.
int FirstWrong(const Car& car, bool isOfGroup) {
  int number = 0;
  for (const Attempt& attempt : Attempts()) {
    ++number;
    const bool refused = attempt.tries(car) < 0 && (errno == EACCES || errno == EPERM);
    if (refused == (isOfGroup && attempt.ofGroup)) return number;
  }
  return 0;
}

// The number of the first failed row, from 1; 0: all rows are as expected.
int TryAll() {
  for (std::size_t i = 0; i < std::size(kTries); ++i) {
    const RawPeer peer = RawPeer::To("MetadataMgr", "Viewer" + std::to_string(i));
    const Try& row = kTries[i];
    if (peer.Send(row.packet) != 0 || peer.Send(Packet(kPing)) != 0) return static_cast<int>(i + 1);
    const std::string& expected = row.answer.empty() ? Packet(kPong) : row.answer;
    if (!peer.Receive().value_or("").starts_with(expected)) return static_cast<int>(i + 1);
    if (!row.answer.empty() && peer.Receive() != Packet(kPong)) return static_cast<int>(i + 1);
  }
  return 0;
}

int SayNamesOfTheSystem() {
  int number = 0;
  for (const char* name : {"StateMgr", "GpsHal", "StreamMgr", "MetadataMgr"}) {
    ++number;
    if (!RawPeer::To("MetadataMgr", name).Closed(20000)) return number;
  }
  return 0;
}

class ObserverTest : public testing::Test {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "needs a second user, so root";
    chmod(fs::path(car_.IpcDirectory()).parent_path().c_str(), 0755);
    chmod(car_.IpcDirectory().c_str(), 02750);
    car_.Run();
  }

  std::set<std::string> Endpoints() const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(car_.IpcDirectory()))
      names.insert(entry.path().filename());
    return names;
  }

  Car car_;
};

TEST_F(ObserverTest, MayAskAndFollowAndNothingElse) {
  Child tries([] { return AsObserver(TryAll); });
  const int first = tries.Wait();
  EXPECT_EQ(first, 0) << (first > 0 && first <= static_cast<int>(std::size(kTries)) ? kTries[first - 1].what
                                                                                    : "");
  Child names([] { return AsObserver(SayNamesOfTheSystem); });
  EXPECT_EQ(names.Wait(), 0);
  const Lines log = car_.Log();
  const auto count = [&log](const std::string& part) {
    return std::count_if(log.begin(), log.end(),
                         [&](const std::string& line) { return line.find(part) != std::string::npos; });
  };
  EXPECT_GE(count("user 4242: observers may only ask"), 1);
  EXPECT_GE(count("user 4242: its name belongs to the system"), 1);
  EXPECT_EQ(count("observers may only ask") + count("Refused a connection"), static_cast<long>(log.size()));
  EXPECT_LE(log.size(), 12U) << "of each kind one line a second";
  EXPECT_EQ(car_.stateMgr.Ask(kLogLevelGet, "00", kLogLevel), "00 00 00 07") << "and any payload asks";
  EXPECT_EQ(car_.Quit(), 0);
  EXPECT_EQ(car_.Events(), Lines{});
}

TEST_F(ObserverTest, ReadsRecordingsAndStrangersNothing) {
  EXPECT_EQ(car_.stateMgr.Ask(kCopy, CopyRequest(car_.Path("copy.db")), kCopied), "01");
  // Only the modes of the process's own files refuse.
  chmod(car_.Path("").c_str(), 0755);
  for (const bool isOfGroup : {false, true}) {
    chmod(car_.Path("disk/metadata").c_str(), isOfGroup ? 01770 : 01771);
    const gid_t group = isOfGroup ? getegid() : kObserver;
    const auto tries = [&] {
      return AsObserver([&] { return FirstWrong(car_, isOfGroup); }, kObserver, group);
    };
    const int wrong = Child(tries).Wait();
    EXPECT_EQ(wrong, 0) << (wrong > 0 && wrong < 99 ? Attempts()[static_cast<std::size_t>(wrong) - 1].what
                                                    : "");
  }
  for (const Attempt& attempt : Attempts()) EXPECT_GE(attempt.tries(car_), 0) << attempt.what;  // its owner
  EXPECT_EQ(car_.End(), 0);
}

// The process keeps few notices for an observer that never reads.
TEST_F(ObserverTest, IsToldOfBookmarksAsLongAsItReads) {
  constexpr unsigned int kIds = 32;
  int told[2];
  ASSERT_EQ(pipe2(told, O_NONBLOCK | O_CLOEXEC), 0);
  Child follower([&told] {
    return AsObserver([&told] {
      const RawPeer peer = RawPeer::To("MetadataMgr", "Viewer");
      for (unsigned int id = 1; id <= kIds; ++id) (void)peer.Send(Packet(kSubscribeItem, U32(0) + U32(id)));
      for (unsigned int id = 1; id <= kIds; ++id) {
        if (!peer.Receive().value_or("").starts_with(Packet(kItem, U32(0) + U32(id)))) return 1;
      }
      if (write(told[1], "s", 1) != 1 || peer.Receive() != Packet(1, "\1")) return 2;
      return write(told[1], "b", 1) == 1 ? poll(nullptr, 0, -1) : 3;
    });
  });
  char byte = 0;
  ASSERT_TRUE(Eventually([&] { return read(told[0], &byte, 1) == 1; }));
  int bookmarks = 0;
  const auto isFull = [this] { return Joined(car_.Log()).find("Viewer is too slow") != std::string::npos; };
  for (; bookmarks < 100 && !isFull(); ++bookmarks) {
    car_.stateMgr.Send(kBookmark, "00000001");
    ASSERT_TRUE(car_.Answers());
  }
  EXPECT_TRUE(Eventually([&] { return read(told[0], &byte, 1) == 1; }));
  EXPECT_LT(bookmarks, 50) << "of " << kIds << " notices each";
}

#ifdef METADATA_PROGRAM
// The reader asks without its own endpoint, and reports when it gets no answer.
TEST_F(ObserverTest, AsksWithTheReaderAndLeavesNothingBehind) {
  const struct {
    std::vector<std::string> arguments;
    int status;
  } rows[] = {
      {{"ping"}, 0},
      {{"tick"}, 0},
      {{"loglevel"}, 0},
      {{"loglevel", "255", "--timeout", "0.5"}, 1},
      {{"copy", "/tmp/no-copy.db"}, 1},
      {{"quit", "--timeout", "0.5"}, 1},
  };
  if (Child([] { return AsObserver([] { return access(METADATA_PROGRAM, X_OK); }); }).Wait() != 0)
    GTEST_SKIP() << "another user cannot run what was built here";
  const std::set<std::string> before = Endpoints();
  for (const auto& row : rows) {
    std::vector<std::string> command{METADATA_PROGRAM, "ask"};
    command.insert(command.end(), row.arguments.begin(), row.arguments.end());
    Child asks([&command] { return AsObserver([&command] { return Exec(command); }); });
    EXPECT_EQ(asks.Wait(), row.status) << row.arguments[0];
  }
  EXPECT_EQ(Child({METADATA_PROGRAM, "ask", "ping"}).Wait(), 0) << "as the system";
  EXPECT_EQ(Endpoints(), before);
  EXPECT_EQ(car_.Quit(), 0);
}
#endif

}  // namespace
