// Plays a drive of the bench to the real MetadataMgr, and reads it with the reader while it is recorded and
// afterwards.
#include <filesystem>
#include <regex>

#include "ReaderFixture.h"
#include "bench/BenchRun.h"
#include "bench/SentRows.h"
#include "support/Eventually.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::MatchesRegex;

// Removes the UTC times: those of the first records become more precise once GPS has given the time.
std::string WithoutUtc(const std::string& csv) {
  return std::regex_replace(csv, std::regex("(\\n[0-9]+,[0-9]+),[^,]*"), "$1");
}

class DriveTest : public testing::Test {
 protected:
  Ran Reader(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(),
                     {"env", "LINX_IPC_DIR=" + bench_.Path("ipc"), "METADATA_ROOT=" + bench_.Path("mnt"),
                      "METADATA_SHM=metadata-bench-" + std::to_string(bench_.Id()), METADATA_PROGRAM});
    return RunProgram(arguments);
  }

  TempDir directory_;
  BenchRun bench_;
};

TEST_F(DriveTest, CanBeWatchedAndReadBack) {
  bench_.Drive(BenchRun::DriveWithoutItsEnd());
  std::filesystem::create_directories(bench_.Path("mnt/metadata"));
  const Child follower([&] {
    return ExecInto({METADATA_PROGRAM, "follow", bench_.Path("mnt/metadata"), "--format", "csv"},
                    directory_.Path("followed"), directory_.Path("follower"));
  });
  ASSERT_TRUE(Eventually([&] { return !directory_.Read("followed").empty(); }));  // the line of column names
  bench_.Start({"--speed", "10"});
  AwaitAllSent(bench_, bench_.Recording());

  // While it is recorded.
  const Ran info = Reader({"info"});
  EXPECT_THAT(info.out,
              AllOf(HasSubstr(", being recorded\n"), HasSubstr("vehicle            unit-12, KV 1234\n"),
                    HasSubstr("  temperature 0      every ")));
  EXPECT_THAT(Reader({"live"}).out,
              AllOf(HasSubstr("record        kept by MetadataMgr\n"), HasSubstr("place         42\xC2\xB0")));
  EXPECT_EQ(Reader({"ask", "ping"}).out, "MetadataMgr is there\n");
  EXPECT_THAT(Reader({"ask", "tick"}).out, MatchesRegex("[1-9][0-9]*\n"));
  EXPECT_EQ(Reader({"ask", "loglevel", "0x87"}).out, "135\n");
  EXPECT_EQ(Reader({"ask", "loglevel"}).out, "135\n");
  EXPECT_EQ(Reader({"check"}).status, 0);

  const Ran quit = Reader({"ask", "quit"});
  EXPECT_EQ(quit.status, 0) << quit.said;
  EXPECT_THAT(Reader({"info"}).out, HasSubstr(", clean end\n"));
  const Ran ping = Reader({"ask", "ping"});
  EXPECT_EQ(ping.status, 1);
  EXPECT_EQ(ping.said, "metadata: MetadataMgr is not there\n");
  EXPECT_EQ(bench_.Finish(), 1) << "the bench did not ask for that";
  ExpectAllSent(bench_, bench_.Recording());
  const std::string all = WithoutUtc(Reader({"dump", "--format", "csv"}).out);
  const auto followed = [&] { return WithoutUtc(directory_.Read("followed")); };
  EXPECT_TRUE(Eventually([&] { return followed().size() >= all.size(); })) << directory_.Read("follower");
  EXPECT_EQ(followed(), all) << "everything, since there was nothing when it began";
  EXPECT_THAT(Reader({"check"}).out, MatchesRegex("Good: 1 run, 1 file, [0-9]+ records\n"));
  EXPECT_THAT(Reader({"state", "--at", "crash"}).out, AllOf(HasSubstr("crash                detected\n"),
                                                            HasSubstr("recording            started\n")));
}

}  // namespace
