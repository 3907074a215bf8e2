// The installed files, and their verification by the tools of the service manager.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "Installation.h"
#include "support/Program.h"

namespace {

constexpr const char* kUnit = "/usr/lib/systemd/system/metadatamgr.service";
constexpr const char* kUsers = "/usr/lib/sysusers.d/metadatamgr.conf";
constexpr const char* kDirectories = "/usr/lib/tmpfiles.d/metadatamgr.conf";

class InstallTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(installation_.Problem(), ""); }

  // Runs a command, with "@" for the scratch root. It must succeed without output.
  void ExpectSilence(std::string command) {
    for (std::size_t at = 0; (at = command.find('@')) != std::string::npos;) {
      command.replace(at, 1, installation_.Path(""));
    }
    const Ran ran = RunProgram({"sh", "-c", command});
    EXPECT_EQ(ran.status, 0) << command;
    EXPECT_EQ(ran.out + ran.said, "") << command;
  }

  const Installation installation_;
};

TEST_F(InstallTest, HoldsTheServiceAndNothingElse) {
  const std::set<std::string> files = installation_.Files();
  for (const char* file : {"/usr/sbin/MetadataMgr", "/usr/share/man/man8/MetadataMgr.8", "/usr/bin/metadata",
                           "/usr/share/man/man1/metadata.1",
                           "/usr/share/bash-completion/completions/metadata", kUnit, kUsers, kDirectories}) {
    EXPECT_TRUE(files.contains(file)) << file;
  }
  for (const std::string& file : files) {
    for (const char* never : {"bench", "Stub", "include"}) {
      EXPECT_EQ(file.find(never), std::string::npos) << "never ships: " << file;
    }
    struct stat status {};
    ASSERT_EQ(stat(installation_.Path(file).c_str(), &status), 0);
    const bool program = file.find("bin/") != std::string::npos;
    EXPECT_EQ(status.st_mode & 07777, program ? 0755U : 0644U) << file;
  }
}

// Copies the targets and the programs that the unit calls from this machine.
TEST_F(InstallTest, HasAUnitThatTheServiceManagerTakes) {
  if (!IsInstalled("systemd-analyze")) GTEST_SKIP() << "systemd-analyze is not installed";
  ExpectSilence("mkdir -p @/usr/bin && cp /usr/bin/install /usr/bin/tail @/usr/bin/");
  ExpectSilence(
      "cp /usr/lib/systemd/system/*.target /usr/lib/systemd/system/*.slice @/usr/lib/systemd/system/");
  ExpectSilence("systemd-analyze verify --man=no --root=@ metadatamgr.service");
  const Ran security = RunProgram({"systemd-analyze", "security", "--no-pager", "--offline=true",
                                   "--threshold=10", installation_.Path(kUnit)});
  EXPECT_EQ(security.status, 0) << security.out;
}

TEST_F(InstallTest, MakesItsUserAndTheDirectoryOfTheEndpoints) {
  if (!IsInstalled("systemd-sysusers") || getuid() != 0) GTEST_SKIP() << "needs systemd-sysusers, and root";
  ExpectSilence("mkdir -p @/etc @/run");
  ASSERT_EQ(RunProgram({"systemd-sysusers", "--root=" + installation_.Path("")}).status, 0);
  ExpectSilence("mkdir -p @/dev/shm");
  ExpectSilence("systemd-tmpfiles --create --root=@ --prefix=/run/linx --prefix=/dev/shm");
  const std::string user = installation_.Unit("User");
  const std::string peers = installation_.Unit("SupplementaryGroups");
  const std::string users = "\n" + installation_.Read("/etc/passwd");
  const std::string groups = "\n" + installation_.Read("/etc/group");
  EXPECT_NE(users.find("\n" + user + ":"), std::string::npos) << users;
  for (const std::string& group : {installation_.Unit("Group"), peers})
    EXPECT_NE(groups.find("\n" + group + ":"), std::string::npos) << groups;
  EXPECT_NE(groups.find(":" + user + "\n"), std::string::npos) << "a member of " << peers;
  struct stat status {};
  ASSERT_EQ(stat(installation_.Path("/run/linx").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode, S_IFDIR | 02750U);
  EXPECT_NE(status.st_uid, 0U);
  EXPECT_NE(status.st_gid, 0U);
  const uid_t owner = status.st_uid;
  ASSERT_EQ(stat(installation_.Path("/dev/shm/metadata").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode, S_IFREG | 0640U);
  EXPECT_EQ(status.st_uid, owner);
}

}  // namespace
