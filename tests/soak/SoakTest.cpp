// A week of drives: the real process, with clocks that the test drives, starts and ends fourteen times, in
// order and by force. Its memory and descriptors do not grow, it logs only the expected lines, and it leaves
// only its recordings behind. With MM_SOAK in the environment a drive takes four hours, else four minutes.
#include <fcntl.h>
#include <sched.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>

#include "DrivenClock.h"
#include "items/ConfigurationItems.h"
#include "items/FpgaExternalEventItem.h"
#include "items/GpsStatusItem.h"
#include "items/MicStatusResponse.h"
#include "items/RadarItem.h"
#include "items/TempStatus.h"
#include "items/VideoMgrCameraItem.h"
#include "metadatamgr/Car.h"
#include "support/Connection.h"
#include "support/Eventually.h"
#include "support/RawPeer.h"
#include "system/Servers.h"

namespace {

namespace fs = std::filesystem;

const bool kLong = std::getenv("MM_SOAK") != nullptr;
constexpr int kDrives = 14;
const int kSeconds = kLong ? 14'400 : 225;
const int kRarely = kLong ? 600 : 75;  // seconds between rare events
constexpr std::int64_t kHalfADayMs = 43'200'000;
constexpr std::int64_t kTicks = std::int64_t{1} << 32;

struct Usage {
  std::int64_t heapBytes;
  std::ptrdiff_t descriptors;
};

std::set<std::string> Names(const std::string& directory) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(directory)) names.insert(entry.path().filename());
  return names;
}

class Week : public Car {
 public:
  Week() {
    const int fd = open(Path("clock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0 || ftruncate(fd, sizeof(DrivenClock)) != 0) std::abort();
    void* page = mmap(nullptr, sizeof(DrivenClock), PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    close(fd);
    clock_ = static_cast<DrivenClock*>(page);
    environment["DRIVEN_CLOCK"] = Path("clock");
    UseServers();
  }

  // The car has been parked. The system starts at this tick.
  void Park(std::int64_t tick) {
    clock_->utcOffsetMs += kHalfADayMs - kSeconds * std::int64_t{1000};
    clock_->bootOffsetMs = 0;
    clock_->bootOffsetMs = tick - TickMs();
    sent_ = {};
    source_ = RawPeer();
  }

  // A second of an ordinary drive.
  void Drive(int second, int readingsASecond) {
    clock_->aheadMs += 1000;
    for (int i = 0; i < readingsASecond; ++i) {
      Notify(13504, Gps());
      if (i % 2 == 0) Notify(13510, Ticked<RadarItem>());
    }
    auto inputs = Ticked<FpgaExternalEventItem>();
    inputs.changedMask = FpgaExternalEventItem::kAllInputs;
    inputs.inputLevels = second % 2 == 0 ? FpgaExternalEventItem::kSiren : 0;
    Notify(13497, inputs);
    Notify(13511, Ticked<MicStatusResponse>());
    if (second % 10 == 1) {
      Notify(13515, Ticked<TempStatus>());
      Notify(13513, Ticked<VideoMgrCameraItem>());
    }
    if (second % 60 == 30) Remark(second);
    Settle();
    Catch();
  }

  // Restarts a server, connects a tool that subscribes and makes a copy, and a hostile peer.
  void Disturb(int number) {
    constexpr std::pair<const char*, unsigned int> kServers[] = {
        {"GpsHal", e_Process_GpsHal}, {"ConfigMgr", e_Process_ConfigMgr}, {"VideoMgr", e_Process_VideoMgr}};
    const auto& [server, process] = kServers[number % 3];
    servers_.erase(server);
    servers->Kill(server);
    (void)servers->Asked();
    servers->Start(server);
    ASSERT_TRUE(Eventually([name = server] { return RawPeer::To(name).Connected(); }));
    stateMgr.Send(kRestarted, ToHex(U32(process)));
    ASSERT_TRUE(Eventually([this] { return !servers->Asked().empty(); }));

    const RawPeer tool = RawPeer::To("MetadataMgr", "Tool" + std::to_string(number));
    ASSERT_EQ(tool.Send(Packet(kSubscribeItem, U32(0) + U32(4711))), 0);
    ASSERT_TRUE(tool.Receive().value_or("").starts_with(Packet(kItem)));
    ASSERT_EQ(tool.Send(Packet(kBookmark, U32(Tick()))), 0);
    ASSERT_EQ(tool.Receive(), Packet(4711, "\x01"));
    ASSERT_EQ(tool.Send(Packet(31337, "unknown")), 0);
    const std::string copy = Path("copy.db");
    ASSERT_EQ(tool.Send(Packet(kCopy, (copy + std::string(1024 - copy.size(), '\0')) + U32(Tick() - 60'000) +
                                          U32(0xFFFFFFFF))),
              0);
    ASSERT_EQ(tool.Receive(), Packet(kCopied, "\x01"));
    fs::remove(copy);
    const RawPeer hostile = RawPeer::To("MetadataMgr");
    ASSERT_EQ(hostile.Send("nonsense"), 0);
    ASSERT_TRUE(hostile.Closed(20000));
    sent_.bookmarks += 1;
  }

  Usage Used() const {
    const std::string process = "/proc/" + std::to_string(program->Id());
    const fs::directory_iterator descriptors(process + "/fd");
    return {clock_->heapBytes, std::distance(begin(descriptors), {})};
  }

  // Lets the process write its batch.
  void Rest() {
    EXPECT_TRUE(Answers());
    clock_->aheadMs += 1000;
    EXPECT_TRUE(Answers());
    Catch();
  }

  std::string Recordings() const { return Path("disk/metadata/"); }
  // Removes all recordings, to make room.
  void RemoveRecordings() const {
    for (const std::string& name : Names(Recordings())) fs::remove(Recordings() + name);
  }

  // Checks that these files of a run hold all sent events.
  void ExpectAllRecorded(const std::set<std::string>& names) const {
    std::int64_t readings = 0;
    std::int64_t bookmarks = 0;
    for (const std::string& name : names) {
      const std::string file = Recordings() + name;
      if (!name.ends_with(".db")) continue;
      readings += Number(file, "SELECT count(*) FROM gps WHERE event=1");
      bookmarks += Number(file, "SELECT count(*) FROM bookmark");
      EXPECT_EQ(Connection(file).Rows("SELECT count(*) FROM loss"), "0\n");
    }
    EXPECT_EQ(readings, sent_.readings);
    EXPECT_EQ(bookmarks, sent_.bookmarks);
  }

  static std::int64_t Number(const std::string& file, const std::string& sql) {
    return std::strtol(Connection(file).Rows(sql).c_str(), nullptr, 10);
  }

 private:
  // Waits until the process has taken all of `aheadMs`.
  void Catch() const {
    const std::time_t end = std::time(nullptr) + 20;
    while (clock_->aheadMs != 0 && std::time(nullptr) < end) (void)sched_yield();
    ASSERT_EQ(clock_->aheadMs, 0);
  }

  static std::int64_t MsOf(clockid_t id) {
    timespec now{};
    clock_gettime(id, &now);
    return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1000000;
  }
  std::int64_t TickMs() const { return MsOf(CLOCK_BOOTTIME) + clock_->bootOffsetMs; }
  unsigned int Tick() const { return static_cast<unsigned int>(TickMs()); }

  template <typename T>
  T Ticked() const {
    T item;
    item.tick = Tick();
    return item;
  }

  GpsStatusItem Gps() {
    auto gps = Ticked<GpsStatusItem>();
    const std::int64_t utcMs = MsOf(CLOCK_REALTIME) + clock_->utcOffsetMs;
    const std::time_t seconds = utcMs / 1000;
    tm utc{};
    gmtime_r(&seconds, &utc);
    gps.utcDate =
        static_cast<unsigned int>((utc.tm_year + 1900) * 10000 + (utc.tm_mon + 1) * 100 + utc.tm_mday);
    gps.utcTimeOfDayMs = static_cast<unsigned int>(utcMs % 86'400'000);
    gps.quality = 1;
    gps.fixDimensions = 3;
    gps.valid = 1;
    gps.latitudeDegrees = 42;
    ++sent_.readings;
    return gps;
  }

  // Sends the rare events.
  void Remark(int second) {
    Tell(Packet(kRecordStartStop, U32(Tick()) + static_cast<char>(second / 60 % 2)));
    Tell(Packet(kBookmark, U32(Tick())));
    ++sent_.bookmarks;
    Officer officer;
    officer.name = "officer " + std::to_string(second);
    Notify(13495, officer);
  }

  void Notify(unsigned int type, const Item& item) {
    std::string bytes(item.Size(), '\0');
    (void)item.Encode(reinterpret_cast<unsigned char*>(bytes.data()));
    const std::string server = ServerOf(type);
    Put(servers_[server], server, Packet(kForward, U32(type) + bytes));
  }
  void Tell(const std::string& packet) { Put(source_, "MetadataMgr", packet); }
  static void Put(RawPeer& peer, const std::string& name, const std::string& packet) {
    if (!peer.Connected()) peer = RawPeer::To(name, "Source");
    int error = 0;
    ASSERT_TRUE(Eventually([&] { return (error = peer.Send(packet)) != EAGAIN; }));
    ASSERT_EQ(error, 0);
  }
  // Waits until the process has handled all messages of the servers.
  void Settle() {
    for (auto& [name, server] : servers_) {
      Put(server, name, Packet(kSettle));
      ASSERT_EQ(server.Receive(), Packet(kSettled));
    }
  }

  struct {
    std::int64_t readings = 0;
    std::int64_t bookmarks = 0;
  } sent_;
  RawPeer source_;
  std::map<std::string, RawPeer> servers_;
  DrivenClock* clock_ = nullptr;
};

// Ends a drive by quit, SIGTERM or SIGKILL in turn.
void End(Week& week, int drive) {
  if (drive % 3 == 0) {
    EXPECT_EQ(week.Quit(), 0);
    return;
  }
  week.Rest();
  const int signal = drive % 3 == 1 ? SIGTERM : SIGKILL;
  week.program->Signal(signal);
  if (signal == SIGTERM) {
    EXPECT_EQ(week.stateMgr.Await(kShutdownDone), "");
  }
  EXPECT_EQ(week.End(), signal == SIGTERM ? 0 : 128 + SIGKILL);
}

void Tell(const Usage& early, const Usage& late, std::size_t lines) {
  std::cout << "heap " << early.heapBytes << " " << std::showpos << late.heapBytes - early.heapBytes
            << std::noshowpos << ", descriptors " << late.descriptors << ", " << lines << " log lines"
            << std::endl;
}

struct Plan {
  std::int64_t startTick = 15'000;
  bool wild = false;       // many readings; with MM_SOAK more than a file holds
  bool makesRoom = false;  // all recordings are removed, even the current one
};

// Both halves of a drive are alike, so memory must not grow in the second half. At the begin, extra readings
// fill all buffers that are kept.
void Drive(Week& week, const Plan& plan) {
  const int atFirst = kSeconds / 10;
  Usage early{};
  for (int second = 0; second < kSeconds && !testing::Test::HasFailure(); ++second) {
    week.Drive(second, plan.wild ? 60 : second < atFirst ? 200 : 4);
    if (second % kRarely == kRarely - 1) week.Disturb(second / kRarely);
    if (second != kSeconds / 2) continue;
    week.Rest();
    early = week.Used();
    if (plan.makesRoom) week.RemoveRecordings();
  }
  week.Rest();
  const Usage late = week.Used();
  const Lines log = week.Log();
  Tell(early, late, log.size());
  // A busy machine makes some buffers grow late. The smallest leak, 16 bytes a second, is more than this.
  EXPECT_LE(late.heapBytes, early.heapBytes + 1024);
  EXPECT_EQ(late.descriptors, early.descriptors);
  // Two lines per disturbance, the closed connection and the unknown message, and one for the removal.
  EXPECT_EQ(log.size(), static_cast<std::size_t>(2 * (kSeconds / kRarely) + (plan.makesRoom ? 1 : 0)))
      << testing::PrintToString(log);
}

TEST(Soak, AWeekOfDrivesLeavesNothingBehindButRecordings) {
  Week week;
  std::set<std::string> endpoints;
  std::map<int, Plan> plans;
  plans[4].startTick = kTicks - kSeconds * std::int64_t{500};  // half a drive before the wrap
  plans[7].makesRoom = true;
  plans[10].wild = true;
  for (int drive = 0; drive < kDrives && !testing::Test::HasFailure(); ++drive) {
    SCOPED_TRACE(drive);
    week.Park(plans[drive].startTick);
    const std::set<std::string> before = drive == 0 ? std::set<std::string>() : Names(week.Recordings());
    week.Run();
    Drive(week, plans[drive]);
    if (drive == 0) endpoints = Names(week.IpcDirectory());
    EXPECT_EQ(Names(week.IpcDirectory()), endpoints);
    End(week, drive);
    std::set<std::string> made = Names(week.Recordings());
    for (const std::string& name : before) made.erase(name);
    if (!plans[drive].makesRoom) week.ExpectAllRecorded(made);
    if (drive % 5 == 4) week.RemoveRecordings();
  }
  week.Run();
  EXPECT_EQ(week.Quit(), 0);
  for (const std::string& name : Names(week.Recordings())) EXPECT_TRUE(name.ends_with(".db")) << name;
}

}  // namespace
