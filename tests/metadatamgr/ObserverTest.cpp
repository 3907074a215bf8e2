// What a second user in the endpoints' group can do: ask and subscribe, nothing else.
#include <grp.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <set>

#include "Car.h"
#include "support/Child.h"
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

// Runs the body as the observer. Its result is the exit status.
int AsObserver(const std::function<int()>& body) {
  const gid_t group = getegid();
  if (setgroups(0, nullptr) != 0 || setresgid(group, group, group) != 0 ||
      setresuid(kObserver, kObserver, kObserver) != 0)
    return 99;
  return body();
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

TEST_F(ObserverTest, IsToldOfBookmarks) {
  Child follower([] {
    return AsObserver([] {
      const RawPeer peer = RawPeer::To("MetadataMgr", "Viewer");
      if (peer.Send(Packet(kSubscribeItem, kOwnNotice)) != 0) return 1;
      if (!peer.Receive().value_or("").starts_with(Packet(kItem, kOwnNotice))) return 2;
      return peer.Receive() == Packet(4711, "\1") ? 0 : 3;
    });
  });
  while (!follower.Ended()) {
    car_.stateMgr.Send(kBookmark, "00000001");
    (void)poll(nullptr, 0, 20);
  }
  EXPECT_EQ(follower.Wait(), 0);
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
