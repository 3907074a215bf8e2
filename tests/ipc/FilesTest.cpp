#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <memory>

#include "support/IpcTest.h"
#include "support/NoDescriptors.h"

namespace {

mode_t ModeOf(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

class FilesTest : public testing::Test {
 protected:
  IpcDir directory_;
  LogCapture log_;
};

TEST_F(FilesTest, MakesTheDirectoryAndTheSocketWithTheirModesAndLeavesWhatIsThere) {
  const mode_t before = umask(077);  // must have no effect
  directory_.Use(directory_.Beside("made"));
  LinxIpc me("Me");
  EXPECT_EQ(me.Init(), 0);
  umask(before);
  EXPECT_EQ(ModeOf(directory_.Beside("made")), 02750U);
  EXPECT_EQ(ModeOf(IpcDir::File("Me")), 0660U);
  ASSERT_EQ(chmod(directory_.Beside("made").c_str(), 0700), 0);
  EXPECT_EQ(LinxIpc("You").Init(), 0);
  EXPECT_EQ(ModeOf(directory_.Beside("made")), 0700U);
}

// If other users could create endpoints, any user could be a server.
TEST_F(FilesTest, ADirectoryThatOthersMayWriteIsRefused) {
  for (const mode_t mode : {0770U, 0757U, 01777U, 02770U}) {
    ASSERT_EQ(chmod(IpcDir::File("").c_str(), mode), 0);
    EXPECT_EQ(LinxIpc("Me").Init(), EPERM) << std::oct << mode;
    EXPECT_EQ(LinxIpc("Me").InitToAsk(), EPERM) << std::oct << mode;
  }
  EXPECT_EQ(log_.Lines(": group or others may write it"), 8);
}

// A user who can open the lock file can hold the lock.
TEST_F(FilesTest, ALockFileIsTheDirectorysOwnersAlone) {
  const mode_t before = umask(0);
  {
    LinxIpc me("Me");
    ASSERT_EQ(me.Init(), 0);
  }
  umask(before);
  EXPECT_EQ(ModeOf(IpcDir::File("Me.lock")), 0600U);
  ASSERT_EQ(chmod(IpcDir::File("Me.lock").c_str(), 0666), 0);
  EXPECT_EQ(LinxIpc("Me").Init(), 0);
  EXPECT_EQ(ModeOf(IpcDir::File("Me.lock")), 0600U) << "also one that stands";
  if (geteuid() != 0) return;
  constexpr uid_t kOwner = 4242;
  ASSERT_EQ(chown(IpcDir::File("").c_str(), kOwner, static_cast<gid_t>(-1)), 0);
  EXPECT_EQ(LinxIpc("Root").Init(), 0);
  struct stat status {};
  ASSERT_EQ(stat(IpcDir::File("Root.lock").c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, kOwner);
}

TEST_F(FilesTest, FailuresAreNamedAndLogged) {
  auto holder = std::make_unique<LinxIpc>("Held");
  ASSERT_EQ(holder->Init(), 0);
  const std::string home = IpcDir::File("");
  const struct {
    const char* what;
    std::string directory;
    std::string name;
    int expected;
  } kCases[] = {
      {"no name", home, "", EINVAL},
      {"name too long", home, std::string(33, 'n'), EINVAL},
      {"path in the name", home, "../Me", EINVAL},
      {"NUL", home, std::string("M\0e", 3), EINVAL},
      {"held", home, "Held", EADDRINUSE},
      {"path too long", home + std::string(100, 'd'), "Me", ENAMETOOLONG},
      {"directory in a file", home + "Held.lock/d", "Me", ENOTDIR},
      {"directory in nothing", home + "no/such", "Me", ENOENT},
  };
  int lines = 0;
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.what);
    directory_.Use(c.directory);
    LinxIpc ipc(c.name);
    EXPECT_EQ(ipc.Init(), c.expected);
    EXPECT_EQ(log_.Lines("Cannot open endpoint"), ++lines);
    EXPECT_EQ(Next(ipc, 0).result, EINVAL);
    EXPECT_EQ(Tell(ipc, "Held", 1), EINVAL);
  }
  directory_.Use(home);
  EXPECT_EQ(Next(*holder, 0).result, ETIMEDOUT) << "the holder is unharmed";
  EXPECT_TRUE(RawPeer::To("Held").Connected());
  holder.reset();
  EXPECT_FALSE(std::filesystem::exists(IpcDir::File("Held")));
  EXPECT_EQ(LinxIpc("Held").Init(), 0);
}

// Closes connections for which there is no descriptor, without a busy loop. Existing connections continue,
// and new ones succeed once there is room.
TEST_F(FilesTest, OutOfDescriptors) {
  LinxIpc me("Me");
  ASSERT_EQ(me.Init(), 0);
  const RawPeer early = RawPeer::To("Me", "Early");
  ASSERT_EQ(early.Send(Packet(1, "before")), 0);
  ASSERT_EQ(Next(me).payload, "before");
  std::vector<RawPeer> waiting(10);
  for (RawPeer& peer : waiting) peer = RawPeer::To("Me", "Late");

  {
    const NoDescriptors none;
    ASSERT_EQ(early.Send(Packet(1, "during")), 0);
    EXPECT_EQ(Next(me).payload, "during");
    EXPECT_EQ(Next(me, 300).result, ETIMEDOUT);
    for (const RawPeer& peer : waiting)
      EXPECT_TRUE(peer.Closed()) << "left waiting, it would wake us for ever";
  }
  const RawPeer late = RawPeer::To("Me", "Good");
  ASSERT_EQ(late.Send(Packet(1, "afterwards")), 0);
  EXPECT_EQ(Next(me).payload, "afterwards");
}

}  // namespace
