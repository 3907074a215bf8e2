#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>

#include "StoreFixture.h"
#include "support/Child.h"

namespace {

// Another process that runs SQL on a recording and then keeps its connection until it is killed.
class OtherProcess {
 public:
  OtherProcess(const std::string& file, const std::string& sql)
      : child_([&, ready = MakePipe()] {
          Connection connection(file);
          const bool done = connection.Rows(sql).find("locked") == std::string::npos;
          if (write(ready, done ? "1" : "0", 1) != 1) return 1;
          for (;;) pause();
        }) {
    close(ends_[1]);
    char answer = '0';
    EXPECT_EQ(read(ends_[0], &answer, 1), 1);
    EXPECT_EQ(answer, '1');
  }
  ~OtherProcess() { close(ends_[0]); }
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;

  void Kill() {
    child_.Signal(SIGKILL);
    (void)child_.Wait();
  }

 private:
  int MakePipe() {
    if (pipe(ends_.data()) != 0) std::abort();
    return ends_[1];
  }

  std::array<int, 2> ends_{};
  Child child_;
};

TEST_F(StoreTest, AnotherProcessWithTheWriteLockCostsNothingWithinTheBound) {
  Open();
  OtherProcess other(File(1), "BEGIN IMMEDIATE");
  LogLines lines;
  for (short i = 1; i <= 120; ++i) {  // a minute
    Temperature(i);
    if (i % 20 == 0) Store().ReportBookmark(clock_.tick);
    After(500);
  }
  EXPECT_EQ(Temperatures(), "");
  const std::string said = lines.Take();
  EXPECT_NE(said.find(" fails: database is locked"), std::string::npos) << said;
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << "once: " << said;

  LogLines more;
  other.Kill();
  After(500);
  After(500);
  const std::string working = more.Take();
  EXPECT_NE(working.find(" works again"), std::string::npos) << working;
  EXPECT_EQ(std::count(working.begin(), working.end(), '\n'), 1) << "once: " << working;
  EXPECT_EQ(Rows("SELECT count(*), count(DISTINCT temperature), max(temperature) FROM temperature"),
            "120|120|120\n");
  EXPECT_EQ(Rows("SELECT count(*) FROM bookmark"), "6\n");
  EXPECT_EQ(Rows("SELECT count(*) FROM loss"), "0\n");
}

TEST_F(StoreTest, AReaderInAnotherProcessThatIsKilledLetsGo) {
  Open();
  OtherProcess reader(File(1), "BEGIN; SELECT count(*) FROM string");
  Temperature(1);
  After(500);
  reader.Kill();
  Store().ReportShutdownData();
  Close();
  EXPECT_FALSE(std::filesystem::exists(File(1) + "-wal"));
  EXPECT_EQ(Temperatures(), "1\n");
}

}  // namespace
