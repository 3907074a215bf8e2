#include "support/Program.h"

#include <fcntl.h>
#include <unistd.h>

#include "support/Child.h"
#include "support/TempDir.h"

int ExecInto(const std::vector<std::string>& arguments, const std::string& out, const std::string& said,
             int in) {
  constexpr int kNew = O_WRONLY | O_CREAT | O_TRUNC | O_APPEND;
  const bool redirected = dup2(in < 0 ? open("/dev/null", O_RDONLY) : in, STDIN_FILENO) >= 0 &&
                          dup2(open(out.c_str(), kNew, 0600), STDOUT_FILENO) >= 0 &&
                          dup2(open(said.c_str(), kNew, 0600), STDERR_FILENO) >= 0;
  return redirected ? Exec(arguments) : 126;
}

Ran RunProgram(const std::vector<std::string>& arguments) {
  const TempDir directory;
  const std::string out = directory.Path("out");
  const std::string said = directory.Path("said");
  const int status = Child([&] { return ExecInto(arguments, out, said); }).Wait();
  return {status, directory.Read("out"), directory.Read("said")};
}

bool IsInstalled(const std::string& program) {
  return RunProgram({"sh", "-c", "command -v " + program}).status == 0;
}
