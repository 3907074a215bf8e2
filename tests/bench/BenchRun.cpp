#include "BenchRun.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "support/Eventually.h"

namespace {

// Runs in a child: becomes vehiclebench, with its output in a file.
int ExecBench(std::vector<std::string> arguments, const std::string& output, int terminal = -1) {
  for (const char* variable : {"METADATA_ROOT", "METADATA_SHM", "LINX_IPC_DIR", "LOG_TARGET"})
    unsetenv(variable);
  arguments.insert(arguments.begin(), VEHICLEBENCH);
  if (terminal >= 0 && (setsid() < 0 || ioctl(terminal, TIOCSCTTY, 0) != 0)) return 126;
  return ExecInto(arguments, output, output, terminal);
}

}  // namespace

BenchRun::BenchRun() {
  if (*METADATAMGR != '\0') program_ = {"--program", METADATAMGR};
}

BenchRun::BenchRun(const std::string& stubBehaviour)
    : program_{"--program", STUB_METADATAMGR}, behaviour_(stubBehaviour) {}

void BenchRun::Start(const std::vector<std::string>& arguments) {
  std::vector<std::string> command{"run"};
  if (!drive_.empty()) command.insert(command.end(), {"--drive", drive_});
  StartCommand(std::move(command), arguments);
}

void BenchRun::StartReplay(const std::string& recording, const std::vector<std::string>& arguments) {
  const bool timed = std::find(arguments.begin(), arguments.end(), "--speed") != arguments.end();
  StartCommand(timed ? std::vector<std::string>{"replay", recording}
                     : std::vector<std::string>{"replay", recording, "--speed", "max"},
               arguments);
}

int BenchRun::Replay(const std::string& recording, const std::vector<std::string>& arguments) {
  StartReplay(recording, arguments);
  return Finish();
}

void BenchRun::StartCommand(std::vector<std::string> all, const std::vector<std::string>& arguments) {
  all.insert(all.end(), {"--out", directory_.Path(out_)});
  const bool named = std::find(arguments.begin(), arguments.end(), "--program") != arguments.end();
  if (!named) all.insert(all.end(), program_.begin(), program_.end());
  all.insert(all.end(), arguments.begin(), arguments.end());
  child_ = std::make_unique<Child>([&] {
    setenv("STUB", behaviour_.c_str(), 1);
    return ExecBench(all, directory_.Path("output"), terminal_);
  });
}

bool BenchRun::Said(const std::string& text) const {
  return Eventually([&] { return Output().find(text) != std::string::npos; });
}

int BenchRun::Finish() {
  return child_->Wait();
}

int BenchRun::Run(const std::vector<std::string>& arguments) {
  Start(arguments);
  return Finish();
}

int BenchRun::Send(const std::vector<std::string>& words) const {
  std::vector<std::string> all{"send", "--out", directory_.Path(out_)};
  all.insert(all.end(), words.begin(), words.end());
  return Child([&] { return ExecBench(all, directory_.Path("send")); }).Wait();
}

Ran RunVehicleBench(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), VEHICLEBENCH);
  return RunProgram(arguments);
}

std::string BenchRun::DriveWithoutItsEnd() {
  const std::string drive = TextOfFile(DEFAULT_DRIVE);
  return drive.substr(0, drive.rfind('\n', drive.find(" quit")) + 1);
}

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++count;
  return count;
}
