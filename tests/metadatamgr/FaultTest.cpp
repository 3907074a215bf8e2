// The start-up of the real process with servers that refuse, are missing, mute or late, or die, at
// each of its steps: what is said, how it ends, and that the next start works.
#include <algorithm>
#include <chrono>
#include <deque>
#include <ostream>

#include "FakeServers.h"
#include "Recorder.h"
#include "support/Eventually.h"

namespace {

// The steps, in their order, and the two lines that tell of a failure.
struct Step {
  const char* server;
  unsigned int item;
  const char* refused;
  const char* failed;
};

constexpr const char* kConfig = "MetadataMgr - Failed to subscribe to ConfigMgr";
constexpr const char* kInputs = "MetadataMgr - Failed to subscribe to External Events";
constexpr const char* kStateMgr = "MetadataMgr - Failed to subscribe to StateMgr Events";
constexpr const char* kRadar = "MetadataMgr - Failed to subscribe to RadarHal Events";
constexpr const char* kVideo = "MetadataMgr - Failed to subscribe to VideoMgr Events";
constexpr const char* kLvs = "MetadataMgr - Failed to subscribe to LVS state changes";
constexpr const char* kLvsStream = "Failed to subscribe to ExternalMgr LVS state changes";

constexpr Step kSteps[] = {
    {"ConfigMgr", 10, "MetadataMgr - Failed to subscribe to VehicleInfo", kConfig},
    {"ConfigMgr", 7, "MetadataMgr - Failed to subscribe to SystemInfo", kConfig},
    {"ConfigMgr", 11, "MetadataMgr - Failed to subscribe to DepartmentInfo", kConfig},
    {"ConfigMgr", 12, "MetadataMgr - Failed to subscribe to Officer", kConfig},
    {"ConfigMgr", 13, "MetadataMgr - Failed to subscribe to VideoRecording", kConfig},
    {"Fpga", 17, kInputs, kInputs},
    {"GpsHal", 1, "MetadataMgr - Failed to subscribe to GpsStatus Events",
     "MetadataMgr - Failed to subscribe to Gps Events"},
    {"StateMgr", 1, "MetadataMgr - Failed to subscribe to StateMgr Record Start Event", kStateMgr},
    {"StateMgr", 2, "MetadataMgr - Failed to subscribe to StateMgr Record Stop Event", kStateMgr},
    {"StateMgr", 3, "MetadataMgr - Failed to subscribe to StateMgr Enter Covert Mode Event", kStateMgr},
    {"StateMgr", 4, "MetadataMgr - Failed to subscribe to StateMgr Exit Cover Mode Event", kStateMgr},
    {"RadarHal", 1, kRadar, kRadar},
    {"MicMgr", 0, "Failed to subscribe to Mic Mgr Events",
     "MetadataMgr - Failed to subscribe to MicMgr Events"},
    {"VideoMgr", 0, "Failed to subscribe to Video Mgr Events", kVideo},
    {"VideoMgr", 1, "Failed to subscribe to Video Mgr Events", kVideo},
    {"AccelHal", 1, "Failed to subscribe to Mic Mgr Events",
     "MetadataMgr - Failed to subscribe to Accelerometer Events"},
    {"TempHal", 0, "Failed to subscribe to TempHal Events",
     "MetadataMgr::SubscribeToServers - Failed to subscribe to TempHal Events"},
    {"ExternalMgr", 16, kLvsStream, kLvs},
    {"ExternalMgr", 17, kLvsStream, kLvs},
    {"ExternalMgr", 18, kLvsStream, kLvs},
    {"ExternalMgr", 19, kLvsStream, kLvs},
    {"ExternalMgr", 20, kLvsStream, kLvs},
    {"ExternalMgr", 21, kLvsStream, kLvs},
};

// "Server item" of the steps up to this one.
Lines AskedUpTo(const Step& last) {
  Lines asked;
  for (const Step* step = kSteps; step <= &last; ++step)
    asked.push_back(std::string(step->server) + " " + std::to_string(step->item));
  return asked;
}

enum class Fault { kRefuses, kDies, kIsMute, kIsAbsent, kIsLate, kDiesAndReturns };
constexpr const char* kFaultNames[] = {"refuses",   "dies",    "is mute",
                                       "is absent", "is late", "dies and returns"};

Behaviour BehaviourOf(Fault fault, unsigned int item) {
  constexpr When kWhen[] = {When::kRefuses, When::kDies,   When::kIsMute,
                            When::kAnswers, When::kIsLate, When::kDies};
  return {.absent = fault == Fault::kIsAbsent,
          .when = {{item, kWhen[static_cast<int>(fault)]}},
          .returns = fault == Fault::kDiesAndReturns};
}

// One start with one fault.
class Start {
 public:
  Start(const Step& step, Fault fault) : step_(step), fault_(fault) {
    std::map<std::string, Behaviour> behaviours;
    if (IsFatal()) {  // nobody is asked after that
      for (const Step& other : kSteps) behaviours[other.server].absent = &other > &step;
      for (const Step* other = kSteps; other <= &step; ++other) behaviours[other->server].absent = false;
      behaviours["StateMgr"].absent = false;
    }
    behaviours[step.server] = BehaviourOf(fault, step.item);
    servers_ = std::make_unique<FakeServers>(behaviours);
    recorder_.Start({"-l", "1"});
  }

  bool Ended() const { return recorder_.program->Ended(); }

  // The start, which has ended, and another one after a fault for good.
  void Check() {
    SCOPED_TRACE(std::string(step_.server) + " " + kFaultNames[static_cast<int>(fault_)] + " at item " +
                 std::to_string(step_.item));
    EXPECT_EQ(recorder_.End(), IsFatal() ? 1 : 0);
    EXPECT_EQ(recorder_.Log(), IsFatal() ? FatalLines() : Lines{});
    if (fault_ == Fault::kIsAbsent || fault_ == Fault::kIsMute) {
      EXPECT_GE(std::chrono::steady_clock::now() - began_, Patience());
    }
    Lines asked = AskedUpTo(IsFatal() ? step_ : *std::rbegin(kSteps));
    if (fault_ == Fault::kIsAbsent) asked.pop_back();
    if (fault_ == Fault::kDiesAndReturns) {  // asked again
      const std::string again = std::string(step_.server) + " " + std::to_string(step_.item);
      asked.insert(std::find(asked.begin(), asked.end(), again), again);
    }
    EXPECT_EQ(servers_->Asked(), asked);
    EXPECT_EQ(recorder_.Records("event='restated'").empty(), IsFatal());
    // Two items of one server are recorded together or not at all.
    const bool cameras = !recorder_.Records("event='initial' AND source LIKE 'camera %'").empty();
    Lines passed = AskedUpTo(step_);
    passed.pop_back();
    EXPECT_EQ(cameras, !IsFatal() || std::count(passed.begin(), passed.end(), "VideoMgr 1") == 1);
    if (IsFatal()) CheckAgain();
  }

 private:
  bool IsFatal() const { return fault_ < Fault::kIsLate; }

  void CheckAgain() {
    servers_ = nullptr;  // before the same names are used again
    setenv("LINX_IPC_DIR", recorder_.IpcDirectory().c_str(), 1);
    servers_ = std::make_unique<FakeServers>();
    recorder_.Start({"-l", "1"});
    EXPECT_EQ(recorder_.End(), 0);
    EXPECT_EQ(recorder_.Log(), Lines{});
    EXPECT_EQ(servers_->Asked(), AskedUpTo(*std::rbegin(kSteps)));
  }

  // How long a server is waited for.
  std::chrono::seconds Patience() const {
    const std::string server = step_.server;
    return std::chrono::seconds(server == "ConfigMgr" ? 30 : server == "ExternalMgr" ? 2 : 10);
  }

  Lines FatalLines() const {
    Lines lines = {By(kManager, std::string("1 ") + step_.refused),
                   By(kManager, std::string("1 ") + step_.failed),
                   By(kInitializer, "1 ProcessInitializer::WaitForStateMgr - Failed Subscribe")};
    if (step_.server == std::string("StateMgr") && fault_ == Fault::kDies) {
      lines.push_back(By(kInitializer, "1 Error sending notify to StateMgr"));
      lines.push_back(By(kInitializer, "1 ProcessInitializer::WaitForStateMgr - Failed RespondToSubscribed"));
    }
    lines.push_back(By(kManager, "1 Unable to initialize MetadataMgr"));
    return lines;
  }

  const Step& step_;
  const Fault fault_;
  const std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
  Recorder recorder_;
  std::unique_ptr<FakeServers> servers_;
};

// Side by side, since much of it is waiting; not too many at once, since what is late must not be
// too late.
void RunAll(const std::vector<std::pair<const Step*, Fault>>& cases, std::size_t atOnce) {
  std::deque<std::unique_ptr<Start>> running;
  const auto awaitOne = [&] {
    std::size_t ended = 0;
    ASSERT_TRUE(Eventually(
        [&] {
          for (ended = 0; ended < running.size() && !running[ended]->Ended();) ++ended;
          return ended < running.size();
        },
        std::chrono::seconds(60)));
    const std::unique_ptr<Start> start = std::move(running[ended]);
    running.erase(running.begin() + static_cast<std::ptrdiff_t>(ended));
    start->Check();
  };
  for (const auto& [step, fault] : cases) {
    while (running.size() >= atOnce && !testing::Test::HasFatalFailure()) awaitOne();
    if (testing::Test::HasFatalFailure()) return;
    running.push_back(std::make_unique<Start>(*step, fault));
  }
  while (!running.empty() && !testing::Test::HasFatalFailure()) awaitOne();
}

bool IsFirstOfItsServer(const Step& step) {
  return &step == kSteps || std::string((&step)[-1].server) != step.server;
}

TEST(Fault, OfAServerForGoodEndsTheStartWithTwoLinesAndTheNextStartWorks) {
  std::vector<std::pair<const Step*, Fault>> cases;
  for (const Step& step : kSteps) {
    const bool leads = step.server == std::string("StateMgr");
    cases.emplace_back(&step, Fault::kDies);
    if (!leads && IsFirstOfItsServer(step)) cases.emplace_back(&step, Fault::kIsAbsent);
    if (!leads && IsFirstOfItsServer(step)) cases.emplace_back(&step, Fault::kIsMute);
    cases.emplace_back(&step, Fault::kRefuses);
  }
  RunAll(cases, 40);
}

TEST(Fault, OfAServerForATimeIsOvercome) {
  std::vector<std::pair<const Step*, Fault>> cases;
  for (const Step& step : kSteps) {
    cases.emplace_back(&step, Fault::kIsLate);
    cases.emplace_back(&step, Fault::kDiesAndReturns);
  }
  RunAll(cases, 4);
}

}  // namespace
