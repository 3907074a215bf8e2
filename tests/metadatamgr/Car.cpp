#include "Car.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

namespace {

constexpr const char* kSwitches[] = {"NO_CONFIGMGR", "NO_FPGA",     "NO_GPSHAL",   "NO_RADARHAL",
                                     "NO_MICMGR",    "NO_VIDEOMGR", "NO_ACCELHAL", "NO_TEMPHAL"};

}  // namespace

Car::Car() {
  environment = {{"LOG_TARGET", "stderr"},
                 {"METADATA_ROOT", Path("disk")},
                 {"METADATA_SHM", "/metadata-test-" + std::to_string(getpid())},
                 {"MFG_FILE", Path("serial")},
                 {"VERSION_FILE", Path("versions")}};
  for (const char* variable : kSwitches) environment[variable] = "";
  Write("disk/present", "");
}

Car::~Car() {
  program.reset();
  shm_unlink(environment["METADATA_SHM"].c_str());
}

void Car::UseServers() {
  servers = std::make_unique<FakeServers>(
      std::map<std::string, Behaviour>{{"StateMgr", {.absent = true}}, {"ExternalMgr", {.absent = true}}});
  for (const char* variable : kSwitches) environment.erase(variable);
}

void Car::Start(const Arguments& arguments, int out) {
  program.reset();
  program = std::make_unique<Program>(Path(""), arguments, environment, out);
}

std::unique_ptr<Program> Car::StartAnother() const {
  return std::make_unique<Program>(Path(""), Arguments{}, environment);
}

void Car::Run(const Arguments& arguments) {
  Start(arguments);
  EXPECT_EQ(stateMgr.Await(kStarted), "00 00 00 13");
  EXPECT_EQ(Subscribe(), "01");
  stateMgr.Send(kFullRun);
  EXPECT_TRUE(Answers());
}

std::string Car::Subscribe(const std::string& flag) {
  stateMgr.Send(kSubscribe, flag);
  Serve();
  return stateMgr.Await(kSubscribed);
}

void Car::Serve(bool withStateMgr) {
  for (int event = 0; withStateMgr && event < 4; ++event) stateMgr.Accept("00000000");
  for (int stream = 0; stream < 6; ++stream) externalMgr.Accept("00 00 0000 0000 0000");
}

int Car::Quit() {
  stateMgr.Send(kQuit);
  EXPECT_EQ(stateMgr.Await(kShutdownDone), "");
  return End();
}

Lines Car::LogOf(const Program& program, unsigned int masks) {
  Lines lines = LogText(program.Err());
  std::erase_if(lines, [masks](const std::string& line) {
    return (std::strtoul(line.c_str(), nullptr, 10) & masks) == 0;
  });
  return lines;
}

bool Car::Logged(const std::string& line) const {
  const Lines lines = Log();
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

Lines Car::LogAfter(Peer& sender, unsigned int type, const std::string& payload) {
  const std::size_t before = Log().size();
  sender.Send(type, payload);
  EXPECT_EQ(sender.Ask(kPing, "", kPong), "");
  Lines lines = Log();
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(before));
  std::erase(lines, "64 MetadataMgr: Ping Handler");
  return lines;
}

Lines Car::Records(const std::string& where) const {
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

std::string Car::SharedRecord() const {
  const int fd = shm_open(environment.at("METADATA_SHM").c_str(), O_RDONLY, 0);
  std::string record(88, '\0');
  EXPECT_EQ(read(fd, record.data(), record.size()), static_cast<ssize_t>(record.size()));
  close(fd);
  return record;
}
