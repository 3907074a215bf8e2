#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <iterator>

#include "OwnRecord.h"
#include "support/Child.h"

namespace {

const std::string kZeros(MetadataSharedMem::kSize, '\0');

class Attach : public OwnRecord {
 protected:
  // The record that a new view attaches to.
  static std::string Attached() {
    MetadataSharedMem view;
    const unsigned char* items = view.MetadataItems(false);
    return items ? std::string(items, items + MetadataSharedMem::kSize) : "null";
  }

  // Runs `scenario` in its own process. Failed expectations there fail the test.
  template <typename Scenario>
  static void InChild(const Scenario& scenario) {
    Child child([&scenario] {
      scenario();
      return HasFailure() ? 1 : 0;
    });
    EXPECT_EQ(child.Wait(), 0) << "see the failures above";
  }

  static std::ptrdiff_t OpenFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
  }
};

TEST_F(Attach, CreatesARecordOfZerosWithItsPermissionsWhateverTheUmask) {
  for (const mode_t mask : {0000U, 0022U, 0777U}) {
    const mode_t former = umask(mask);
    EXPECT_EQ(Attached(), kZeros);
    umask(former);
    EXPECT_EQ(Look().permissions, 0640U) << "umask " << mask;
    EXPECT_EQ(Look().content, kZeros);
    shm_unlink(name_.c_str());
    setenv("METADATA_SHM", name_.c_str() + 1, 1);  // the leading slash is optional
  }
}

TEST_F(Attach, OnlyWhenAskedToAndThenTheRecordOutlivesTheView) {
  {
    MetadataSharedMem view;
    EXPECT_EQ(view.MetadataItems(true), nullptr);
    EXPECT_FALSE(Exists());
    unsigned char* items = view.MetadataItems(false);
    ASSERT_NE(items, nullptr);
    EXPECT_EQ(view.MetadataItems(true), items);
    EXPECT_EQ(view.MetadataItems(false), items);
    std::fill_n(items, MetadataSharedMem::kSize, static_cast<unsigned char>('x'));
  }
  EXPECT_EQ(Attached(), std::string(MetadataSharedMem::kSize, 'x'));
}

TEST_F(Attach, RecordThatIsThereKeepsItsContentAndPermissions) {
  struct Case {
    std::size_t size;
    mode_t permissions;
  };
  for (const auto& [size, permissions] : {Case{0, 0640}, {10, 0600}, {91, 0640}, {92, 0600}, {5000, 0640}}) {
    const std::string content(size, 'x');
    ASSERT_NO_FATAL_FAILURE(Leave(content, permissions));
    const std::string expected = content + (size < kZeros.size() ? kZeros.substr(size) : "");
    EXPECT_EQ(Attached(), expected.substr(0, MetadataSharedMem::kSize));
    EXPECT_EQ(Look().content, expected);
    EXPECT_EQ(Look().permissions, permissions);
    shm_unlink(name_.c_str());
  }
}

TEST_F(Attach, NameThatNamesNoRecordGivesNull) {
  const std::string directory = "/dev/shm" + name_ + "-directory";
  const std::string pipe = name_ + "-pipe";
  ASSERT_TRUE(std::filesystem::create_directory(directory));
  ASSERT_EQ(mkfifo(("/dev/shm" + pipe).c_str(), 0600), 0);
  const std::string link = name_ + "-link";
  std::filesystem::create_symlink("/dev/zero", "/dev/shm" + link);
  const std::ptrdiff_t before = OpenFiles();
  for (const std::string& name : {name_ + "-directory", pipe, link, std::string("/"), std::string("/."),
                                  name_ + "/below", "/" + std::string(300, 'n'), std::string(10000, '/')}) {
    setenv("METADATA_SHM", name.c_str(), 1);
    EXPECT_EQ(Attached(), "null") << name.substr(0, 60);
  }
  EXPECT_EQ(OpenFiles(), before);
  std::filesystem::remove(directory);
  shm_unlink(pipe.c_str());
  shm_unlink(link.c_str());
}

// Other users could alter or truncate such a record.
TEST_F(Attach, RecordThatOthersCouldWriteIsReplacedOrGivesNull) {
  if (geteuid() != 0) GTEST_SKIP() << "needs a second user, so root";
  struct Case {
    uid_t user;
    mode_t permissions;
  };
  for (const auto& [user, permissions] : {Case{65534, 0640}, {65534, 0666}, {0, 0660}, {0, 0642}}) {
    ASSERT_NO_FATAL_FAILURE(Leave(std::string(200, 'x')));
    const std::string file = "/dev/shm" + name_;
    ASSERT_EQ(chown(file.c_str(), user, user) + chmod(file.c_str(), permissions), 0);
    InChild([] {  // a third user
      ASSERT_EQ(setresuid(65533, 65533, 65533), 0);
      EXPECT_EQ(Attached(), "null");
    });
    EXPECT_EQ(Attached(), kZeros);
    EXPECT_EQ(Look().permissions, 0640U);
    shm_unlink(name_.c_str());
  }
}

TEST_F(Attach, RecordThatCannotGrowGivesNull) {
  ASSERT_NO_FATAL_FAILURE(Leave("short"));
  InChild([] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{50, 50};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    EXPECT_EQ(Attached(), "null");
  });
  EXPECT_EQ(Look().content, "short");
}

}  // namespace
