#include "Recorder.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

namespace {

std::string UnusedRecordName() {
  static int number = 0;
  return "/metadata-test-" + std::to_string(getpid()) + "-" + std::to_string(++number);
}

}  // namespace

Recorder::Recorder() {
  environment = {{"LOG_TARGET", "stderr"},
                 {"METADATA_ROOT", Path("disk")},
                 {"METADATA_SHM", UnusedRecordName()},
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
  program = std::make_unique<Program>(directory_, arguments, environment, out, standardError);
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
  sqlite3* file = nullptr;
  EXPECT_EQ(sqlite3_open_v2(latest.c_str(), &file, SQLITE_OPEN_READWRITE, nullptr), SQLITE_OK);
  const std::string sql =
      "SELECT source||' '||text||' '||event||coalesce(' '||sender_tick,'') FROM timeline WHERE " + where +
      " ORDER BY seq";
  Lines records;
  const auto add = [](void* context, int, char** values, char**) {
    static_cast<Lines*>(context)->emplace_back(values[0]);
    return 0;
  };
  EXPECT_EQ(sqlite3_exec(file, sql.c_str(), add, &records, nullptr), SQLITE_OK) << sqlite3_errmsg(file);
  sqlite3_close(file);
  return records;
}

std::string Recorder::SharedRecord() const {
  const int fd = shm_open(environment.at("METADATA_SHM").c_str(), O_RDONLY, 0);
  std::string record(88, '\0');
  EXPECT_EQ(read(fd, record.data(), record.size()), static_cast<ssize_t>(record.size()));
  close(fd);
  return record;
}
