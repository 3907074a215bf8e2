// Recordings and copies on a file system like FAT: no files without names, no owners, perhaps no rename that
// refuses to replace. This program's own calls stand for such a file system.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>

#include "CopyFixture.h"
#include "support/LogCapture.h"

namespace {

bool isFat = false;
bool canRename = true;
int partials = 0;  // files with a temporary name that were given their own

}  // namespace

extern "C" {

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): those of the C library are reserved
int openat(int directory, const char* path, int flags, ...) {
  if (isFat && (flags & O_TMPFILE) == O_TMPFILE) {
    errno = EOPNOTSUPP;
    return -1;
  }
  va_list more;
  va_start(more, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0;
  va_end(more);
  return static_cast<int>(syscall(SYS_openat, directory, path, flags | O_LARGEFILE, mode));
}

int renameat2(int from, const char* old, int to, const char* name, unsigned int flags) noexcept {
  if (canRename) ++partials;
  errno = EINVAL;
  return canRename ? static_cast<int>(syscall(SYS_renameat2, from, old, to, name, flags)) : -1;
}

int fchown(int fd, uid_t owner, gid_t group) noexcept {
  errno = EPERM;
  return isFat ? -1 : static_cast<int>(syscall(SYS_fchown, fd, owner, group));
}

int fstatfs(int /*fd*/, struct statfs* status) noexcept {
  status->f_type = isFat ? 0x4D44 : 0xEF53;  // FAT, ext4
  return 0;
}

// NOLINTEND(readability-inconsistent-declaration-parameter-name)

}  // extern "C"

namespace {

class FatTest : public CopyTest {
 protected:
  FatTest() { isFat = true; }
  ~FatTest() override {
    isFat = false;
    canRename = true;
  }
};

TEST_F(FatTest, RecordingsAndCopiesGetTheirNamesWhenTheyAreComplete) {
  for (const bool can : {true, false}) {
    canRename = can;
    partials = 0;
    dir_.Write("rest.000001.db-new", "a power cut left it");
    Open(can ? "metadata" : "rest");
    Temperature(1);
    EXPECT_EQ(Exists(1), can) << "a number whose temporary name is taken is passed over";
    EXPECT_TRUE(MetadataReader().ReadToNewFile(dir_.Path(can ? "metadata" : "rest"), dir_.Path("copy.db"), 0,
                                               kToEnd, nullptr));
    EXPECT_EQ(InCopy("SELECT temperature FROM temperature; PRAGMA application_id; PRAGMA integrity_check"),
              "1\n1296909378\nok\n");
    EXPECT_EQ(partials, can ? 2 : 0);
    Close();
    std::filesystem::remove(dir_.Path("copy.db"));
  }
  EXPECT_EQ(Names(), (std::set<std::string>{"metadata.000001.db", "rest.000001.db-new", "rest.000002.db"}));
}

TEST_F(FatTest, OnlyTheRestOfACopyIsReplacedAndTheMountIsSaidToDecideWhoReads) {
  Open();
  std::string begun(100, '\0');
  begun.replace(68, 4, "MMDP");
  std::string whole = begun;
  whole.replace(68, 4, "MMDB");
  const struct {
    std::string rest;
    bool made;
  } kCases[] = {{"", true}, {begun, true}, {"somebody's only copy", false}, {whole, false}};
  ASSERT_EQ(chmod(dir_.Path("").c_str(), 0777), 0);  // FAT tells its mount's mode
  for (const auto& c : kCases) {
    dir_.Write("copy.db.partial", c.rest);
    const LogCapture log;
    EXPECT_EQ(Copy(), c.made) << c.rest;
    EXPECT_EQ(log.Lines("The medium keeps no owners, its mount decides who can read "), c.made ? 1 : 0)
        << log.Text();
    EXPECT_EQ(log.Lines("Copy failed (File exists)"), c.made ? 0 : 1) << log.Text();
    EXPECT_EQ(dir_.Read("copy.db.partial"), c.made ? "" : c.rest);
    std::filesystem::remove(dir_.Path("copy.db"));
  }
  std::filesystem::remove(dir_.Path("copy.db.partial"));
  ASSERT_TRUE(Copy());
  EXPECT_FALSE(Copy()) << "it is there already";
  isFat = false;
  EXPECT_FALSE(Copy(kFromBeginning, kToEnd, "other.db")) << "elsewhere others must not be able to write";
}

}  // namespace
