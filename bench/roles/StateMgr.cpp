#include "StateMgr.h"

#include <algorithm>

#include "Misc/StateMgrNotices.h"
#include "Processes.h"
#include "StopProcesses.h"
#include "log/LogLine.h"
#include "system/BigEndian.h"

namespace bench {

namespace {

constexpr LogSource kStateMgrLog{"StateMgr"};

}  // namespace

StateMgr::StateMgr(const Words& expected) : ipc_(StateMgrName()) {
  for (const std::string& name : expected) processes_.push_back({name, Phase::kAbsent});
  const auto telling = [this](unsigned int type) {
    return [this, type](const Words& words) {
      std::uint32_t number = 0;
      (void)ReadProcess(words[0], number);
      return TellOthers(type, number);
    };
  };
  actions_ = {
      {"died", telling(LinxIpc::kProcessDiedNotice)},
      {"restarted", telling(StateMgrProcessMsg_Restarted)},
  };
  publisher_.AddActions(actions_);
}

int StateMgr::Run() {
  LogClient::Instance().ProcessName(StateMgrName());
  if (ipc_.Init() != 0) return 1;
  ipc_.RegisterHandler(StateMgrProcessMsg_Started, StartedHandler, this);
  ipc_.RegisterHandler(StateMgrProcessMsg_Subscribed, SubscribedHandler, this);
  ipc_.RegisterHandler(StateMgrProcessMsg_FailedStart, FailedStartHandler, this);
  ipc_.RegisterHandler(BenchMsg_Died, DiedHandler, this);
  ipc_.RegisterHandler(BenchMsg_StopSystem, StopSystemHandler, this);
  ipc_.RegisterShutdown(QuitHandler, this);
  ServeActions(ipc_, actions_);
  publisher_.Open(ipc_);
  Tell(News::kReady, StateMgrName(), "ready");
  while (!stop_) {
    (void)ipc_.Receive(publisher_.WaitMs(), 0, LinxIpc::emptyString, nullptr);
    publisher_.DoDueWork();
  }
  return 0;
}

// ---- The way to full run

void StateMgr::StartedHandler(LinxIpc* /*ipc*/, void* self) {
  static_cast<StateMgr*>(self)->Started();
}

void StateMgr::Started() {
  const IpcMessage& notice = ipc_.CurrentMessage();
  const std::uint32_t number =
      notice.Size() < ProcessPayload::kSize ? 0 : std::uint32_t{ProcessPayload::Read(notice.DataPtr())};
  const bool ownName = !ProcessName(number).empty() && ProcessName(number) == notice.GetSender();
  if (ownName && Find(ProcessName(number)) == nullptr) processes_.push_back({ProcessName(number)});
  Process* process = Sender();
  if (process == nullptr) return;
  if (!ownName) {
    Fail(*process, "sent a started notice of another process");
    return;
  }
  const bool again = process->phase == Phase::kDead;
  process->phase = Phase::kStarted;
  Tell(News::kStep, process->name, "started");
  if (again) (void)TellOthers(StateMgrProcessMsg_Restarted, number);
  Advance();
}

void StateMgr::SubscribedHandler(LinxIpc* ipc, void* self) {
  auto& stateMgr = *static_cast<StateMgr*>(self);
  Process* process = stateMgr.Sender();
  if (process == nullptr || process->phase != Phase::kSubscribing) return;
  const IpcMessage& answer = ipc->CurrentMessage();
  if (answer.Size() == 0 || answer.DataPtr()[0] == 0) {
    stateMgr.Fail(*process, "could not subscribe to its servers");
    return;
  }
  process->phase = Phase::kSubscribed;
  stateMgr.Tell(News::kStep, process->name, "subscribed");
  stateMgr.Advance();
}

void StateMgr::FailedStartHandler(LinxIpc* /*ipc*/, void* self) {
  auto& stateMgr = *static_cast<StateMgr*>(self);
  Process* process = stateMgr.Sender();
  if (process != nullptr) stateMgr.Fail(*process, "reports that its start failed");
}

StateMgr::Process* StateMgr::Find(const std::string& name) {
  const auto found = std::find_if(processes_.begin(), processes_.end(),
                                  [&name](const Process& process) { return process.name == name; });
  return found == processes_.end() ? nullptr : &*found;
}

StateMgr::Process* StateMgr::Sender() {
  const std::string& sender = ipc_.CurrentMessage().GetSender();
  if (Process* process = Find(sender)) return process;
  kStateMgrLog(kLogMalformed, "Message ", ipc_.CurrentMessage().MsgType(), " from ", sender,
               ", which is not expected");
  return nullptr;
}

void StateMgr::Advance() {
  const auto allPast = [this](Phase phase) {
    return std::all_of(processes_.begin(), processes_.end(),
                       [phase](const Process& process) { return process.phase > phase; });
  };
  const std::string flag(1, '\0');
  if (allPast(Phase::kAbsent)) {
    for (Process& process : processes_) {
      if (process.phase != Phase::kStarted) continue;
      Send(process, StateMgrProcessMsg_Subscribe, flag, Phase::kSubscribing);
    }
  }
  if (allPast(Phase::kSubscribing)) {
    for (Process& process : processes_) {
      if (process.phase != Phase::kSubscribed) continue;
      Send(process, StateMgrProcessMsg_FullRun, {}, Phase::kFullRun);
    }
  }
}

void StateMgr::Send(Process& process, unsigned int type, const std::string& payload, Phase next) {
  if (SendMessage(ipc_, process.name, type, payload) != 0) {
    Fail(process, "cannot be reached");
    return;
  }
  process.phase = next;
  if (next == Phase::kFullRun) Tell(News::kFullRun, process.name, "told full run");
}

// ---- Deaths and restarts

// No process waits for a dead process.
void StateMgr::DiedHandler(LinxIpc* ipc, void* self) {
  auto& stateMgr = *static_cast<StateMgr*>(self);
  std::uint32_t number = 0;
  const std::string name = TextOf(ipc->CurrentMessage());
  Process* process = stateMgr.Find(name);
  if (process == nullptr || !ReadProcess(name, number)) return;
  process->phase = Phase::kDead;
  (void)stateMgr.TellOthers(LinxIpc::kProcessDiedNotice, number);
  stateMgr.Advance();
}

Outcome StateMgr::TellOthers(unsigned int type, std::uint32_t number) {
  ProcessPayload notice(static_cast<e_Process>(number));
  const std::string payload(notice.Bytes(), ProcessPayload::kSize);
  unsigned int told = 0;
  std::string missed;
  for (const Process& process : processes_) {
    if (!Runs(process) || process.name == ProcessName(number)) continue;
    if (SendMessage(ipc_, process.name, type, payload) == 0) {
      ++told;
    } else {
      missed += " " + process.name;
    }
  }
  if (!missed.empty()) return {false, "cannot tell" + missed};
  return {true, "told " + std::to_string(told) + " processes"};
}

// ---- Shut-down

void StateMgr::StopSystemHandler(LinxIpc* ipc, void* self) {
  const IpcMessage& message = ipc->CurrentMessage();
  if (message.Size() < sizeof(std::uint32_t)) return;
  static_cast<StateMgr*>(self)->StopSystem(static_cast<int>(GetU32(message.DataPtr())));
}

// Stops MetadataMgr first, so that it misses no message of its servers. A process whose start failed ends by
// itself.
void StateMgr::StopSystem(int timeoutMs) {
  Words recorder;
  Words others;
  for (const Process& process : processes_) {
    if (!Runs(process)) continue;
    (process.name == MetadataMgrName() ? recorder : others).push_back(process.name);
  }
  const auto tell = [this](News news, const std::string& process, const std::string& text) {
    if (news == News::kStopped) Find(process)->phase = Phase::kStopped;
    Tell(news, process, text);
  };
  StopProcesses(ipc_, recorder, timeoutMs, tell);
  StopProcesses(ipc_, others, timeoutMs, tell);
  Tell(News::kAllStopped, StateMgrName(), "is done");
}

void StateMgr::QuitHandler(LinxIpc* /*ipc*/, void* self) {
  static_cast<StateMgr*>(self)->stop_ = true;
}

// ---- News

void StateMgr::Tell(News news, const std::string& process, const std::string& text) {
  std::string payload(1, static_cast<char>(news));
  payload.append(process).append(" ").append(text);
  (void)SendMessage(ipc_, kBenchName, BenchMsg_News, payload);
}

void StateMgr::Fail(Process& process, const std::string& text) {
  process.phase = Phase::kFailed;
  Tell(News::kFailed, process.name, text);
}

}  // namespace bench
