// Other users of the machine cannot harm the process, its endpoint, its shared record or its files. No
// request destroys a file.
#include <fcntl.h>
#include <grp.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <functional>
#include <sstream>

#include "Car.h"
#include "support/RawPeer.h"

namespace {

namespace fs = std::filesystem;

const std::string kRecordings = "disk/metadata/";
const std::string kRecording = kRecordings + "metadata.000001.db";

// ---- Other users

// Opens a file. Returns a descriptor, or below 0 and sets errno.
int Open(const std::string& path, int flags) {
  return open(path.c_str(), flags | O_CLOEXEC);
}
int MakeFileIn(const std::string& directory) {
  const std::string path = directory + "/intruder";
  const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  return fd < 0 || unlink(path.c_str()) != 0 ? -1 : fd;
}
int OpenRecord(const Car& car, int flags) {
  return shm_open(car.environment.at("METADATA_SHM").c_str(), flags, 0);
}
int AskForACopy(const Car& car) {
  const std::string id = std::to_string(getpid());
  const RawPeer peer = RawPeer::To("MetadataMgr");
  if (!peer.Connected()) return -1;
  (void)peer.Send(HelloPacket("Peer" + id));
  (void)peer.Send(Packet(kCopy, FromHex(CopyRequest(car.Path("copy-for-" + id + ".db")))));
  const bool copied = peer.Receive() == Packet(kCopied, "\x01");
  errno = EACCES;
  return copied ? 0 : -1;
}

const struct {
  const char* what;
  int (*tries)(const Car& car);
} kAttempts[] = {
    {"ask for a copy", AskForACopy},
    {"take the endpoint's lock", [](const Car&) { return Open(IpcDir::File("MetadataMgr.lock"), O_RDWR); }},
    {"make an endpoint", [](const Car&) { return MakeFileIn(IpcDir::File("")); }},
    {"remove the endpoint", [](const Car&) { return unlink(IpcDir::File("MetadataMgr").c_str()); }},
    {"replace the endpoints' directory",
     [](const Car& car) { return rename(car.IpcDirectory().c_str(), car.Path("ipc").c_str()); }},
    {"read the shared record", [](const Car& car) { return OpenRecord(car, O_RDONLY); }},
    {"write the shared record", [](const Car& car) { return OpenRecord(car, O_RDWR); }},
    {"remove the shared record",
     [](const Car& car) { return shm_unlink(car.environment.at("METADATA_SHM").c_str()); }},
    {"list the recordings", [](const Car& car) { return Open(car.Path(kRecordings), O_DIRECTORY); }},
    {"make a file beside them", [](const Car& car) { return MakeFileIn(car.Path(kRecordings)); }},
    {"read a recording", [](const Car& car) { return Open(car.Path(kRecording), O_RDONLY); }},
    {"write a recording", [](const Car& car) { return Open(car.Path(kRecording), O_WRONLY); }},
    {"read its log", [](const Car& car) { return Open(car.Path(kRecording + "-wal"), O_RDONLY); }},
    {"write its log", [](const Car& car) { return Open(car.Path(kRecording + "-wal"), O_WRONLY); }},
    {"write its index", [](const Car& car) { return Open(car.Path(kRecording + "-shm"), O_WRONLY); }},
    {"read a copy", [](const Car& car) { return Open(car.Path("copy.db"), O_RDONLY); }},
    {"write a copy", [](const Car& car) { return Open(car.Path("copy.db"), O_WRONLY); }},
    {"end the process", [](const Car& car) { return kill(car.program->Id(), SIGTERM); }},
};

constexpr uid_t kAnother = 65534;

// The attempts of the user that were not refused.
Lines AllowedTo(uid_t user, gid_t group, const Car& car) {
  int pipe[2];
  EXPECT_EQ(pipe2(pipe, O_CLOEXEC), 0);
  Child child([&] {
    if (setgroups(0, nullptr) != 0 || setresgid(group, group, group) != 0 || setresuid(user, user, user) != 0)
      return 1;
    for (const auto& attempt : kAttempts) {
      const bool fails = attempt.tries(car) < 0;
      if (fails && (errno == EACCES || errno == EPERM)) continue;
      const std::string line = attempt.what + std::string(fails ? std::strerror(errno) : "") + "\n";
      if (write(pipe[1], line.data(), line.size()) < 0) return 1;
    }
    return 0;
  });
  EXPECT_EQ(child.Wait(), 0);
  close(pipe[1]);
  char text[8192];
  const ssize_t size = read(pipe[0], text, sizeof text);
  close(pipe[0]);
  return LogText(std::string(text, static_cast<std::size_t>(std::max<ssize_t>(size, 0))));
}

TEST(OtherUser, CanDoNothingAndAMemberOfTheGroupCanReadAndAsk) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user, so root";
  Car car;
  // The parent directories are open, so only the modes of the process's own files refuse other users.
  chmod(car.Path("").c_str(), 0755);
  chmod(fs::path(car.IpcDirectory()).parent_path().c_str(), 0755);
  chmod(car.IpcDirectory().c_str(), 02750);
  car.Run();
  EXPECT_EQ(car.stateMgr.Ask(kCopy, CopyRequest(car.Path("copy.db")), kCopied), "01");
  EXPECT_EQ(AllowedTo(kAnother, kAnother, car), Lines{});
  EXPECT_EQ(AllowedTo(kAnother, getegid(), car),
            (Lines{"read the shared record", "list the recordings", "make a file beside them",
                   "read a recording", "read its log", "read a copy"}));
  chmod(car.IpcDirectory().c_str(), 0755);
  chmod(car.Path(kRecordings).c_str(), 0755);
  EXPECT_EQ(AllowedTo(kAnother, kAnother, car), Lines{"list the recordings"});
  Lines all;
  for (const auto& attempt : kAttempts) all.emplace_back(attempt.what);
  EXPECT_EQ(AllowedTo(geteuid(), getegid(), car), all);
  EXPECT_EQ(car.End(), 0) << "ended in order, by its own user";
}

// ---- Requests

// The kinds and contents of all files in a directory.
std::string Everything(const std::string& directory) {
  Lines all;
  for (const auto& entry : fs::recursive_directory_iterator(directory)) {
    const std::string path = entry.path();
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0);
    std::ostringstream text;
    text << path << ' ' << status.st_mode << ' ' << status.st_ino << ' ' << status.st_nlink << ' ';
    if (S_ISLNK(status.st_mode)) text << fs::read_symlink(path);
    const bool changes = path.ends_with("-shm") || path.ends_with(".err");  // marks of readers, and the log
    if (S_ISREG(status.st_mode) && !changes)
      text << status.st_mtime << ' ' << std::hash<std::string>()(TextOfFile(path));
    all.push_back(text.str());
  }
  std::sort(all.begin(), all.end());
  return Joined(all);
}

TEST(Request, ForACopyCostsNobodyAFile) {
  Car car;
  car.Run();
  car.stateMgr.Send(kBookmark, "00000001");
  const auto copied = [&](const std::string& destination) {
    return car.stateMgr.Ask(kCopy, CopyRequest(destination), kCopied);
  };
  const auto path = [&](const std::string& name) { return car.Path(name); };
  EXPECT_EQ(copied(path("done.db")), "01");
  const std::string victim = "somebody's only copy";
  for (const char* name : {"file", "empty.db", "logged.db-wal", "journaled.db-journal"}) {
    car.Write(name, name == std::string("empty.db") ? "" : victim);
  }
  fs::create_hard_link(path("file"), path("hard"));
  fs::create_hard_link(path(kRecording), path("hard recording"));
  fs::create_symlink("file", path("link"));
  fs::create_symlink("nowhere", path("dangling"));
  fs::create_symlink("itself", path("itself"));
  fs::create_directory_symlink(path(kRecordings), path("directory"));
  ASSERT_EQ(mkfifo(path("pipe").c_str(), 0666), 0);
  const auto before = Everything(path(""));
  const auto endpoints = Everything(car.IpcDirectory());

  for (const char* name : {"done.db", "file", "empty.db", "logged.db", "journaled.db", "hard",
                           "hard recording", "link", "dangling", "itself", "directory", "pipe", "disk"}) {
    EXPECT_EQ(copied(path(name)), "00") << name;
  }
  for (const std::string& destination :
       {path(kRecording), path(kRecording + "-wal"), path(kRecordings + "metadata.000002.db"),
        path("directory/metadata.000002.db"), path("disk/../directory/metadata.000001.db"),
        "/dev/shm" + car.environment["METADATA_SHM"], IpcDir::File("MetadataMgr"),
        IpcDir::File("MetadataMgr.lock"), std::string("/dev/null"), std::string("/proc/self/mem")}) {
    EXPECT_EQ(copied(destination), "00") << destination;
  }
  EXPECT_EQ(Everything(path("")), before);
  EXPECT_EQ(Everything(car.IpcDirectory()), endpoints);
  EXPECT_EQ(car.SharedRecord()[0], 1);
  EXPECT_EQ(copied(path("free.db")), "01");
  EXPECT_EQ(car.Quit(), 0);
  EXPECT_EQ(car.Events(), Lines{"bookmark set event 1"});
}

}  // namespace
