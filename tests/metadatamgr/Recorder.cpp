#include "Recorder.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "support/Connection.h"

Recorder::Recorder() {
  const std::filesystem::path unique = Path("");
  environment = {{"LOG_TARGET", "stderr"},
                 {"METADATA_ROOT", Path("disk")},
                 {"METADATA_KEY", Path("no.key")},
                 {"METADATA_SHM", "/metadata-" + unique.parent_path().filename().string()},
                 {"MFG_FILE", Path("serial")},
                 {"VERSION_FILE", Path("versions")}};
  Write("disk/present", "");
}

Recorder::~Recorder() {
  program.reset();
  shm_unlink(environment["METADATA_SHM"].c_str());
}

void Recorder::Start(const Arguments& arguments, int out) {
  program.reset();
  program = std::make_unique<Program>(directory_, arguments, environment, out);
}

Lines Recorder::Log(unsigned int masks) const {
  Lines lines = LogText(program->Err());
  std::erase_if(lines, [masks](const std::string& line) {
    return (std::strtoul(line.c_str(), nullptr, 10) & masks) == 0;
  });
  return lines;
}

Lines Recorder::Records(const std::string& where) const {
  std::string latest;
  for (const auto& entry : std::filesystem::directory_iterator(Path("disk/metadata"))) {
    if (entry.path().extension() == ".db") latest = std::max(latest, entry.path().string());
  }
  return LinesOf(Connection(latest).Rows(
      "SELECT source||' '||text||' '||event||coalesce(' '||sender_tick,'') FROM timeline WHERE " + where +
      " ORDER BY seq"));
}

std::string Recorder::SharedRecord() const {
  const int fd = shm_open(environment.at("METADATA_SHM").c_str(), O_RDONLY, 0);
  std::string record(88, '\0');
  EXPECT_EQ(read(fd, record.data(), record.size()), static_cast<ssize_t>(record.size()));
  close(fd);
  return record;
}
