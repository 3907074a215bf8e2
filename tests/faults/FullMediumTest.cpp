#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "Recordings.h"
#include "support/Child.h"
#include "support/LogCapture.h"
#include "support/Sealed.h"

namespace {

constexpr int kSkipped = 77;

bool WriteLine(const char* path, const std::string& line) {
  std::ofstream file(path);
  file << line << std::flush;
  return file.good();
}

// Mounts a small file system on the directory, visible to this process only. Needs no privileges where user
// namespaces are available.
bool MountSmall(const std::string& directory, const char* size) {
  const auto self = std::to_string(geteuid());
  const auto group = std::to_string(getegid());
  if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
  (void)WriteLine("/proc/self/setgroups", "deny");
  return WriteLine("/proc/self/uid_map", "0 " + self + " 1") &&
         WriteLine("/proc/self/gid_map", "0 " + group + " 1") &&
         mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("small", directory.c_str(), "tmpfs", 0, size) == 0;
}

// Fills the medium while the store records, keeps it full until records are lost, then frees it.
void FillAndFree(const TempDir& dir) {
  const LogCapture log;
  const Sealed sealed;
  StoreOptions options;
  options.keyFile = sealed.KeyFile();
  options.maxPendingBytes = 16'384;
  Usage usage(dir.Path("metadata"), options);
  ASSERT_TRUE(usage.Open());
  usage.Bookmark();
  {
    std::ofstream filler(dir.Path("filler"));
    while (filler << std::string(4096, 'x') << std::flush) {
    }
  }
  for (int i = 0; i < 20; ++i) {
    usage.Temperature();
    for (int text = 0; text < 5; ++text) usage.Text(1000);
    usage.Bookmark();
    usage.Turn(500);
  }
  EXPECT_EQ(log.Lines(" fails: "), 1) << log.Text();
  EXPECT_EQ(log.Lines(" works again"), 0);
  std::filesystem::remove(dir.Path("filler"));
  usage.Turn(500);
  EXPECT_EQ(log.Lines(" works again"), 1) << log.Text();
  usage.Temperature();
  usage.Close();
  EXPECT_EQ(sealed.Unproven(dir.Path("")), "");
  const Recordings recordings(dir);
  EXPECT_EQ(recordings.Holes(), 0);
  EXPECT_GT(recordings.Lost("string"), 0);
  EXPECT_EQ(recordings.Lost("bookmark"), 0) << "the last to go";
  for (const char* table : {"temperature", "string", "bookmark"})
    EXPECT_EQ(recordings.Missing(usage, table), recordings.Lost(table)) << table;
}

TEST(FullMediumTest, IsReportedSurvivedAndWhatItCostIsCounted) {
  const TempDir dir;
  Child child([&] {
    if (!MountSmall(dir.Path(""), "size=1m")) return kSkipped;
    FillAndFree(dir);
    return testing::Test::HasFailure() ? 1 : 0;
  });
  const int status = child.Wait();
  if (status == kSkipped) GTEST_SKIP() << "no file system of its own for an unprivileged process here";
  EXPECT_EQ(status, 0);
}

}  // namespace
