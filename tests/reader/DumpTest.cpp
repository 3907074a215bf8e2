#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>

#include "ReaderFixture.h"
#include "support/Eventually.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

std::size_t Lines(const std::string& text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

TEST_F(ReaderTest, TextSaysWhatTheTimelineViewSays) {
  Open();
  Drive();
  clock_.utcMs += 5000;  // the wall clock jumps
  After(1000);
  Brakes(true);
  Store().WriteFullState(true);
  Store().ReportShutdownData();
  Close();
  const Ran ran = Dump({});
  EXPECT_EQ(ran.status, 0);
  EXPECT_THAT(ran.said, IsEmpty());
  EXPECT_EQ(ran.out,
            Rows("SELECT utc||'  '||substr(source||'                ',1,16)||'  '||"
                 "replace(replace(text,char(10),'?'),char(27),'?')||"
                 "iif(source LIKE 'speed %',' km/h',iif(source LIKE 'temperature %',' \u00B0C',''))||"
                 "iif(event='event','',' ('||event||')') FROM timeline"));
}

TEST_F(ReaderTest, DumpHasTheRecordsOfItsRange) {
  // 1 clock, 2 record start, 3 brakes, 4 speed, 5 camera, 6 text, 7 bookmark, 8 temperature, 9 brakes,
  // 10 record stop, 11 bookmark; ticks 10000, 10100, 11100, 12100.
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"--from", "11100", "--to", "11100"}, "7 8 9 "},
      {{"--from", "2024-05-01T12:00:01.1Z", "--to", "2024-05-01 12:00:02"}, "8 9 "},
      {{"--from", "2024-05-01T14:00:01.1+02:00", "--to", "2024-05-01 07:00:02-0500"}, "8 9 "},
      {{"--to", "2024-05-01T12:00:00.080"}, "1 4 "},  // UTC by the sender tick
      {{"--from", "record-start", "--to", "bookmark"}, "2 3 4 5 6 7 "},
      {{"--from", "bookmark:2-1s"}, "7 8 9 10 11 "},
      {{"--source", "brakes"}, "3 9 "},
      {{"--source", "bookmark,inputs,camera-2,speed-gps"}, "3 4 5 7 9 11 "},
      {{"--source", "camera,temperature-1"}, "5 "},
      {{"--source", "events", "--from", "record-stop"}, "10 11 "},
  };
  Open();
  Drive();
  Close();
  for (auto [options, expected] : cases) {
    options.insert(options.end(), {"--format", "jsonl"});
    const Ran ran = Dump(options);
    EXPECT_EQ(ran.status, 0) << ran.said;
    std::string seqs;
    for (std::size_t at = 0; (at = ran.out.find("\"seq\":", at)) != std::string::npos; at += 6)
      seqs += ran.out.substr(at + 6, ran.out.find(',', at) - at - 6) + " ";
    EXPECT_EQ(seqs, expected) << testing::PrintToString(options);
  }
}

TEST_F(ReaderTest, OtherProgramsReadCsvAndJsonLines) {
  if (!IsInstalled("sqlite3") || !IsInstalled("jq")) GTEST_SKIP() << "sqlite3 or jq is not installed";
  Open();
  Drive();
  Close();
  const std::string csv = dir_.Write("all.csv", Dump({"--format", "csv"}).out);
  constexpr const char* kSame =
      "SELECT count(*) FROM c JOIN r.timeline AS t USING (seq, utc, tick, event, source) "
      "WHERE c.utc_from=t.utc_from AND coalesce(t.sender_tick,'')=c.sender_tick";
  const Ran shell = RunProgram(
      {"sqlite3", ":memory:", ".mode csv", ".import " + csv + " c", ".mode list",
       "ATTACH '" + File(1) + "' AS r",
       "SELECT seq, utc, tick, sender_tick, event, source, text, speed FROM c WHERE seq IN (4,6)", kSame});
  EXPECT_EQ(shell.out,
            "4|2024-05-01T12:00:00.080Z|10100|10080|event|speed gps||50\n"
            "6|2024-05-01T12:00:00.100Z|10100||event|filler|a \"quoted\", cut\nline \xC3\xA9\x1B[2J|\n"
            "11\n")
      << shell.said;
  const std::string lines = dir_.Write("all.jsonl", Dump({"--format", "jsonl"}).out);
  EXPECT_EQ(RunProgram(
                {"jq", "-c", "select(.seq>5 and .seq<10) | [.seq,.source,.text,.temperature,.active]", lines})
                .out,
            "[6,\"filler\",\"a \\\"quoted\\\", cut\\nline \xC3\xA9\\u001b[2J\",null,null]\n"
            "[7,\"bookmark\",null,null,null]\n"
            "[8,\"temperature 0\",null,-40,null]\n"
            "[9,\"brakes\",null,null,0]\n");
}

TEST_F(ReaderTest, AReaderOfManyRecordsShowsProgressAndHoldsTheWriterNotUp) {
  constexpr int kRecords = 40'000;
  Open();
  for (int i = 0; i < kRecords; ++i) {
    Temperature(static_cast<short>(i % 100));
    if (i % 1000 == 999) After(500);
  }
  const std::string records = Rows("SELECT count(*) FROM record");
  const std::string shown = " % of " + records.substr(0, records.size() - 1) + " records";
  // Progress appears only on a terminal, and only after a second.
  const std::string command = METADATA_PROGRAM " dump " + File(1) + " | (sleep 1.2; cat >/dev/null)";
  EXPECT_THAT(RunProgram({"sh", "-c", command}).said, IsEmpty());
  if (IsInstalled("script")) {
    EXPECT_THAT(RunProgram({"script", "-qec", command, "/dev/null"}).out, HasSubstr(shown));
  }

  const std::string fifo = dir_.Path("fifo");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const int fd = open(fifo.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
  Child reader([&] { return ExecInto({METADATA_PROGRAM, "dump", File(1)}, fifo, dir_.Path("said")); });
  const auto waiting = [fd] {
    int bytes = 0;
    return ioctl(fd, FIONREAD, &bytes) == 0 && bytes == fcntl(fd, F_GETPIPE_SZ);
  };
  ASSERT_TRUE(Eventually(waiting)) << "as long as nobody reads";
  Brakes(true);
  After(500);
  EXPECT_EQ(Rows("PRAGMA wal_checkpoint(TRUNCATE)"), "0|0|0\n") << "nobody holds the WAL";
  std::size_t lines = 0;
  const auto take = [&] {
    std::array<char, 65536> piece{};
    const ssize_t size = read(fd, piece.data(), piece.size());
    lines +=
        static_cast<std::size_t>(std::count(piece.begin(), piece.begin() + std::max<ssize_t>(size, 0), '\n'));
    return lines == std::stoul(records) + 1;
  };
  EXPECT_TRUE(Eventually(take)) << lines << ": with the one that came meanwhile";
  EXPECT_EQ(reader.Wait(), 0);
  (void)close(fd);
}

TEST_F(ReaderTest, ARecordingWithAWalIsReadThroughACopyAndNotChanged) {
  Open();
  Drive();
  After(500);
  CopyFilesTo("crashed/metadata");
  Close();
  const std::string crashed = "crashed/metadata.000001.db";
  const std::string file = dir_.Read(crashed);
  const std::string wal = dir_.Read(crashed + "-wal");
  const Ran ran = Metadata({"dump", dir_.Path("crashed")});
  EXPECT_EQ(ran.status, 0) << ran.said;
  EXPECT_EQ(Lines(ran.out), 11U);
  EXPECT_EQ(dir_.Read(crashed), file);
  EXPECT_EQ(dir_.Read(crashed + "-wal"), wal);
  EXPECT_FALSE(std::filesystem::exists(dir_.Path(crashed + "-shm")));
}

TEST_F(ReaderTest, FilesOfARunAreJoinedAndRunsAreCounted) {
  options_.maxFileBytes = 131'072;
  Open();
  for (short i = 0; !Exists(2); ++i) {
    Temperature(i);
    if (i % 20 == 0) After(500);
  }
  Close();
  Open();
  Brakes(true);
  Close();
  ASSERT_TRUE(Exists(3));
  const Ran ran = Metadata({"dump", dir_.Path(""), "--format", "csv", "--source", "clock,brakes"});
  EXPECT_THAT(ran.out, MatchesRegex("run,seq,.*\n1,1,.*\n1,[1-9][0-9]+,.*\n2,1,.*\n2,2,.*,brakes,.*\n"));
  EXPECT_THAT(ran.said, IsEmpty());
}

TEST_F(ReaderTest, WrongUsageAndWhatIsNotThereAreSaid) {
  Open();
  Close();
  const std::string text = dir_.Write("text.db", std::string(2000, 'x'));
  struct Case {
    std::vector<std::string> arguments;
    int status;
    const char* said;
  };
  const Case cases[] = {
      {{}, 2, "A subcommand is required"},
      {{"dump", "--from", "noon"}, 2, "'noon' is no time: a tick, a time"},
      {{"dump", "--to", "bookmark:0"}, 2, "'bookmark:0' is no time"},
      {{"dump", "--from", "2024-02-30"}, 2, "'2024-02-30' is no time"},
      {{"dump", "--from", "crash+nans"}, 2, "'crash+nans' is no time"},
      {{"dump", "--source", "gps,brake"}, 2, "'brake' is no source; "},
      {{"dump", "--from", "1714564800000"}, 2, "counts from 1970, write 2024-05-01T12:00:00.000Z"},
      {{"dump", File(1), "--from", "1714564800"}, 1, "counts from 1970, write 2024-05-01T12:00:00.000Z"},
      {{"dump", File(1), "--from", "10100", "--to", "10000"}, 1, "--from 10100 is after --to 10000"},
      {{"dump", File(1), "--from", "2024-05-02", "--to", "2024-05-01"}, 1, "is after --to 2024-05-01"},
      {{"frobnicate"}, 2, "'frobnicate' is not a command; commands are info, gaps, dump, "},
      {{"ask", "nothing"}, 2, "'nothing' is not a command; commands are tick, ping, "},
      {{"dump", "--format", "xml"}, 2, "--format: xml not in {"},
      {{"dump", dir_.Path("none")}, 1, "none: no such file"},
      {{"dump", text}, 1, "text.db: file is not a database"},
      {{"dump", File(1), "--from", "crash:2-1s"}, 1, "no crash:2-1s is recorded: there are 0"},
  };
  for (const Case& c : cases) {
    const Ran ran = Metadata(c.arguments);
    EXPECT_EQ(ran.status, c.status) << c.said;
    EXPECT_THAT(ran.said, HasSubstr(c.said));
  }
}

}  // namespace
