#include "Victim.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "support/Eventually.h"
#include "system/BigEndian.h"
#include "system/Messages.h"
#include "system/Servers.h"

namespace {

void Send(LinxIpc& from, unsigned int type, std::string payload = {}) {
  IpcMessage message;
  (void)message.Allocate(type, static_cast<unsigned int>(payload.size()), payload.data());
  Need(Eventually([&] { return from.Notify(kProcess, message, true) == 0; }), "a message to the process");
}

std::string Await(LinxIpc& at, unsigned int type) {
  constexpr int kTimeoutMs = 20000;
  IpcMessage message;
  Need(at.Receive(kTimeoutMs, type, kProcess, &message) == 0, "a message from the process");
  return message.DataPtr() == nullptr ? ""
                                      : std::string(message.DataPtr(), message.DataPtr() + message.Size());
}

// Accepts all subscriptions with a server. The zero bytes are result and item.
void AcceptAll(LinxIpc& server, e_Process process) {
  for (std::size_t i = 0; i < servers::Of(process).items.size(); ++i) {
    Send(server, SubscribeMsg_Answer, Await(server, SubscribeMsg_Subscribe) + std::string(20, '\0'));
  }
}

}  // namespace

void Need(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s failed\n", what);
  std::exit(1);
}

Victim::Victim() : sharedName_("/metadata-hostile-" + std::to_string(getpid())) {
  setenv("METADATA_ROOT", directory_.Beside("").c_str(), 1);
  setenv("METADATA_SHM", sharedName_.c_str(), 1);
  setenv("LOG_TARGET", "stderr", 1);
  for (const ServerRow& server : servers::kAll) {
    const bool played = server.process == e_Process_StateMgr || server.process == e_Process_ExternalMgr;
    Need(played || server.offSwitch != nullptr, server.name);
    if (!played) setenv(server.offSwitch, "", 1);
  }
  unsetenv("RUN_WITHOUT_STATEMGR");
  const std::string log = directory_.Beside("log");
  process_ = std::make_unique<Child>([&log] {
    (void)dup2(open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600), STDERR_FILENO);
    (void)execl(METADATAMGR_PROGRAM, METADATAMGR_PROGRAM, nullptr);
    return 127;
  });
  stateMgr_ = std::make_unique<LinxIpc>("StateMgr");
  externalMgr_ = std::make_unique<LinxIpc>("ExternalMgr");
  Need(stateMgr_->Init() == 0 && externalMgr_->Init() == 0, "an endpoint");
  LeadToFullRun();
}

Victim::~Victim() {
  (void)shm_unlink(sharedName_.c_str());
}

void Victim::LeadToFullRun() {
  (void)Await(*stateMgr_, StateMgrProcessMsg_Started);
  Send(*stateMgr_, StateMgrProcessMsg_Subscribe, std::string(1, '\0'));
  AcceptAll(*stateMgr_, e_Process_StateMgr);
  AcceptAll(*externalMgr_, e_Process_ExternalMgr);
  Need(Await(*stateMgr_, StateMgrProcessMsg_Subscribed) == "\x01", "the start");
  Send(*stateMgr_, StateMgrProcessMsg_FullRun);
  Send(*stateMgr_, MetadataMgrMsg_Ping);
  (void)Await(*stateMgr_, MetadataMgrMsg_PingResponse);
}

Taken Victim::Usage() const {
  const std::string proc = "/proc/" + std::to_string(process_->Id());
  Taken taken;
  std::ifstream status(proc + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) taken.residentPeakKb = std::strtol(line.c_str() + 6, nullptr, 10);
  }
  const std::filesystem::directory_iterator descriptors(proc + "/fd");
  taken.descriptors = static_cast<int>(std::distance(begin(descriptors), end(descriptors)));
  return taken;
}

bool Victim::Quit() {
  Send(*stateMgr_, LinxIpc::kShutdownNotice);
  (void)Await(*stateMgr_, StateMgrProcessMsg_ShutdownResponse);
  return process_->Wait() == 0;
}

long Victim::CameraRecords(unsigned int camera) const {
  sqlite3* file = nullptr;
  const std::string path = directory_.Beside("metadata/metadata.000001.db");
  Need(sqlite3_open_v2(path.c_str(), &file, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK, "the recording");
  const std::string sql = "SELECT count(*) FROM camera WHERE event=1 AND camera=" + std::to_string(camera);
  long count = -1;
  const auto take = [](void* context, int, char** values, char**) {
    *static_cast<long*>(context) = std::strtol(values[0], nullptr, 10);
    return 0;
  };
  (void)sqlite3_exec(file, sql.c_str(), take, &count, nullptr);
  (void)sqlite3_close(file);
  return count;
}

long Victim::LogBytes() const {
  std::error_code ignored;
  return static_cast<long>(std::filesystem::file_size(directory_.Beside("log"), ignored));
}
