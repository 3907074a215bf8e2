// Starts the real process with servers that refuse, are missing, mute or late, or die, at each step. Checks
// the log lines and the exit status, and that the next start succeeds.
#include <algorithm>
#include <chrono>
#include <deque>
#include <ostream>

#include "FakeServers.h"
#include "FollowedServers.h"
#include "Recorder.h"
#include "support/Eventually.h"
#include "system/Servers.h"

namespace {

// A subscription, and the log line of its failure.
struct Step {
  std::string server;
  unsigned int item;
  const char* refused;
};

// In the order of the start-up.
const std::vector<Step> kSteps = [] {
  std::vector<Step> steps;
  for (const ServerRow& server : servers::kAll) {
    for (const ServedItem& item : server.items)
      steps.push_back({server.name, item.id, FollowedItemOf(item.notificationId).failure});
  }
  return steps;
}();

// The steps up to this one, each as "Server item".
Lines AskedUpTo(const Step& last) {
  Lines asked;
  for (const Step* step = kSteps.data(); step <= &last; ++step)
    asked.push_back(step->server + " " + std::to_string(step->item));
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
    if (IsFatal()) {  // the servers after the fault are absent
      for (const Step& other : kSteps) behaviours[other.server].absent = &other > &step;
      for (const Step* other = kSteps.data(); other <= &step; ++other)
        behaviours[other->server].absent = false;
      behaviours["StateMgr"].absent = false;
    }
    behaviours[step.server] = BehaviourOf(fault, step.item);
    servers_ = std::make_unique<FakeServers>(behaviours);
    recorder_.Start({"-l", "1"});
  }

  bool Ended() const { return recorder_.program->Ended(); }

  // Checks a start that has ended, and the next start after a fatal fault.
  void Check() {
    SCOPED_TRACE(step_.server + " " + kFaultNames[static_cast<int>(fault_)] + " at item " +
                 std::to_string(step_.item));
    EXPECT_EQ(recorder_.End(), IsFatal() ? 1 : 0);
    Lines log = recorder_.Log();
    if (IsFatal() && log.size() > 1) {  // the line of the step comes second
      EXPECT_NE(log[1].find("Failed to subscribe to "), std::string::npos) << log[1];
      log.erase(log.begin() + 1);
    }
    EXPECT_EQ(log, IsFatal() ? FatalLines() : Lines{});
    if (fault_ == Fault::kIsAbsent || fault_ == Fault::kIsMute) {
      EXPECT_GE(std::chrono::steady_clock::now() - began_, Patience());
    }
    Lines asked = AskedUpTo(IsFatal() ? step_ : *kSteps.rbegin());
    if (fault_ == Fault::kIsAbsent) asked.pop_back();
    if (fault_ == Fault::kDiesAndReturns) {  // requested again
      const std::string again = step_.server + " " + std::to_string(step_.item);
      asked.insert(std::find(asked.begin(), asked.end(), again), again);
    }
    EXPECT_EQ(servers_->Asked(), asked);
    EXPECT_EQ(recorder_.Records("event='restated'").empty(), IsFatal());
    // Items of the same server are recorded together or not at all.
    const bool cameras = !recorder_.Records("event='initial' AND source LIKE 'camera %'").empty();
    Lines passed = AskedUpTo(step_);
    passed.pop_back();
    EXPECT_EQ(cameras, !IsFatal() || std::count(passed.begin(), passed.end(), "VideoMgr 1") == 1);
    if (IsFatal()) CheckAgain();
  }

 private:
  bool IsFatal() const { return fault_ < Fault::kIsLate; }

  void CheckAgain() {
    servers_ = nullptr;  // frees the names of the endpoints
    setenv("LINX_IPC_DIR", recorder_.IpcDirectory().c_str(), 1);
    servers_ = std::make_unique<FakeServers>();
    recorder_.Start({"-l", "1"});
    EXPECT_EQ(recorder_.End(), 0);
    EXPECT_EQ(recorder_.Log(), Lines{});
    EXPECT_EQ(servers_->Asked(), AskedUpTo(*kSteps.rbegin()));
  }

  // How long the process waits for the server.
  std::chrono::seconds Patience() const {
    return std::chrono::seconds(step_.server == "ConfigMgr" ? 30 : step_.server == "ExternalMgr" ? 2 : 10);
  }

  Lines FatalLines() const {
    Lines lines = {By(kManager, std::string("1 ") + step_.refused),
                   By(kInitializer, "1 ProcessInitializer::WaitForStateMgr - Failed Subscribe")};
    if (step_.server == "StateMgr" && fault_ == Fault::kDies) {
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

// Runs cases side by side, because they mostly wait. Too many at once would make late answers time out.
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
  return &step == kSteps.data() || (&step)[-1].server != step.server;
}

TEST(Fault, OfAServerForGoodEndsTheStartWithTwoLinesAndTheNextStartWorks) {
  std::vector<std::pair<const Step*, Fault>> cases;
  for (const Step& step : kSteps) {
    const bool leads = step.server == "StateMgr";
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
