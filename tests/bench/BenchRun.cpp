#include "BenchRun.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "support/Eventually.h"

namespace {

// In a child: vehiclebench, writing into a file.
int Exec(const std::vector<std::string>& arguments, const std::string& output) {
  std::vector<char*> argv;
  std::string program = VEHICLEBENCH;
  argv.push_back(program.data());
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  for (const char* variable : {"METADATA_ROOT", "METADATA_SHM", "LINX_IPC_DIR", "LOG_TARGET"})
    unsetenv(variable);
  const int fd = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (dup2(fd, STDOUT_FILENO) >= 0 && dup2(fd, STDERR_FILENO) >= 0) (void)execv(argv[0], argv.data());
  return 127;
}

}  // namespace

BenchRun::BenchRun() {
  if (*METADATAMGR != '\0') program_ = {"--program", METADATAMGR};
}

BenchRun::BenchRun(const std::string& stubBehaviour)
    : program_{"--program", STUB_METADATAMGR}, behaviour_(stubBehaviour) {}

void BenchRun::Start(const std::vector<std::string>& arguments) {
  std::vector<std::string> all{"run", "--out", directory_.Path(out_)};
  if (!drive_.empty()) all.insert(all.end(), {"--drive", drive_});
  const bool named = std::find(arguments.begin(), arguments.end(), "--program") != arguments.end();
  if (!named) all.insert(all.end(), program_.begin(), program_.end());
  all.insert(all.end(), arguments.begin(), arguments.end());
  child_ = std::make_unique<Child>([&] {
    setenv("STUB", behaviour_.c_str(), 1);
    return Exec(all, directory_.Path("output"));
  });
}

bool BenchRun::SaidAfter(std::size_t bytes, const std::string& text) const {
  return Eventually([&] { return Output().find(text, bytes) != std::string::npos; });
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
  return Child([&] { return Exec(all, directory_.Path("send")); }).Wait();
}

int RunVehicleBench(const std::vector<std::string>& arguments, std::string& output) {
  const TempDir directory;
  const int status = Child([&] { return Exec(arguments, directory.Path("output")); }).Wait();
  output = directory.Read("output");
  return status;
}
