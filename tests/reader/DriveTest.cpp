// A drive of the bench through the real MetadataMgr, and what people see of it with the reader: while it
// is recorded and afterwards, read back by foreign programs and compared with what the bench sent.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <regex>
#include <sstream>

#include "ReaderFixture.h"
#include "bench/BenchRun.h"
#include "bench/SentRows.h"
#include "support/Eventually.h"
#include "support/LogText.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

// Without the times of day: those of the first records are better known once GPS has told the time.
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

  // A recording's tables again, made by SQLite's shell of a dump; `value` gives the SQL for a field of a
  // line.
  template <typename Value>
  std::string Rebuild(const std::string& import, const Value& value) {
    std::string script = import;
    Connection recording(bench_.Recording());
    for (const std::string& table :
         LinesOf(recording.Rows("SELECT name FROM sqlite_master WHERE type='table' AND name NOT IN "
                                "('tag_name','progress','run','seal')"))) {
      script += "CREATE TABLE " + table + "(seq INTEGER, tick INTEGER, sender_tick INTEGER, event INTEGER";
      std::string values = value("seq") + ", " + value("tick") + ", nullif(" + value("sender_tick") +
                           ",''), CASE " + value("event") +
                           " WHEN 'initial' THEN 0 WHEN 'event' THEN 1 ELSE 2 END";
      for (const std::string& column : LinesOf(recording.Rows(
               "SELECT name||' '||type FROM pragma_table_info('" + table + "') WHERE cid>3"))) {
        const std::string name = column.substr(0, column.find(' '));
        script.append(", ").append(column);
        values.append(", ").append(value(name == "source" ? table + "_source" : name));
      }
      script.append(");\nINSERT INTO ").append(table).append(" SELECT ").append(values);
      script.append(" FROM lines WHERE ").append(value("table")).append("='").append(table).append("';\n");
    }
    std::string path = directory_.Path("rebuilt.db");
    std::filesystem::remove(path);
    const Ran ran = RunProgram({"sqlite3", path, ".read " + directory_.Write("script.sql", script)});
    EXPECT_EQ(ran.said, "");
    return path;
  }
  std::string RebuildFromCsv(const std::string& csv) {
    return Rebuild(".mode csv\n.import " + directory_.Write("drive.csv", csv) + " lines\n",
                   [](const std::string& name) { return '"' + name + '"'; });
  }
  std::string RebuildFromJson(const std::string& lines) {
    return Rebuild("CREATE TABLE lines(line);\n.mode ascii\n.separator \"\\037\" \"\\n\"\n.import " +
                       directory_.Write("drive.jsonl", lines) + " lines\n",
                   [](const std::string& name) { return "(line->>'" + name + "')"; });
  }

  std::string Export(const std::string& format) const {
    std::string path = directory_.Path("drive." + format);
    const Ran ran = Reader({"export", "--format", format, "-o", path});
    EXPECT_EQ(ran.status, 0) << ran.said;
    return path;
  }
  void TracksAreWhatIsRecorded() const;
  void SubtitlesAreWhatIsRecorded() const;

  std::size_t Readings() const { return Count(TextOfFile(bench_.Path("sent/GpsHal.log")), "\n"); }

  TempDir directory_;
  BenchRun bench_;
};

constexpr const char* kPositions = " FROM gps WHERE event<2 AND quality>0 ORDER BY seq";

void DriveTest::TracksAreWhatIsRecorded() const {
  Connection recording(bench_.Recording());
  const std::string gpx = Export("gpx");
  const auto asCsv = [&](const std::string& what, const std::string& sql) {
    const std::string csv = directory_.Path("gpx.csv");
    EXPECT_EQ(
        RunProgram({"gpsbabel", what, "-i", "gpx", "-f", gpx, "-o", "unicsv,utc=0,prec=9", "-F", csv}).said,
        "");
    return RunProgram({"sqlite3", ":memory:", ".mode csv", ".import " + csv + " t", ".mode list", sql}).out;
  };
  const std::string places =
      recording.Rows(std::string("SELECT latitude_e4min, longitude_e4min") + kPositions);
  EXPECT_GT(Count(places, "\n"), 50U);
  EXPECT_EQ(asCsv("-t",
                  "SELECT CAST(round(Latitude*600000) AS INTEGER), CAST(round(Longitude*600000) AS INTEGER) "
                  "FROM t"),
            places);
  EXPECT_EQ(asCsv("-w", "SELECT count(*) FROM t"),
            recording.Rows("SELECT count(*) FROM bookmark WHERE event=1"));
  EXPECT_EQ(
      RunProgram(
          {"jq", "-r",
           R"jq(.features[] | select(.properties.kind=="track") | .properties.coordinateProperties as $p |
                  (.geometry | if .type=="Point" then [.coordinates] else .coordinates end) as $c |
                  range($c | length) | "\($c[.][1]*600000 | round)|\($c[.][0]*600000 | round)|\(
                  $p.altitude_m[.]*10 | round)|\($p.speed_kmh[.]*10 | round)")jq",
           Export("geojson")})
          .out,
      recording.Rows(std::string("SELECT latitude_e4min, longitude_e4min, altitude_dm, speed_deci_kmh") +
                     kPositions));
}

void DriveTest::SubtitlesAreWhatIsRecorded() const {
  Connection recording(bench_.Recording());
  const std::string positions =
      "\n" +
      recording.Rows(std::string("SELECT latitude_e4min, longitude_e4min, speed_deci_kmh") + kPositions);
  const std::string radar = "\n" + recording.Rows(
                                       "SELECT 'target '||speed1||', fastest '||speed2||', locked "
                                       "'||speed3||' km/h' FROM radar WHERE event<2");
  const std::string text =
      RunProgram({"ffmpeg", "-v", "error", "-i", Export("srt"), "-f", "webvtt", "-"}).out;
  int shown = 0;
  for (const std::string& line : LinesOf(text)) {
    double kmh = 0;
    double latitude = 0;
    double longitude = 0;
    if (std::sscanf(line.c_str(), "GPS %lf km/h %lf %lf", &kmh, &latitude, &longitude) == 3) {
      std::ostringstream position;
      position << '\n'
               << std::lround(latitude * 600'000) << '|' << std::lround(longitude * 600'000) << '|'
               << std::lround(kmh * 10) << '\n';
      EXPECT_THAT(positions, HasSubstr(position.str()));
      ++shown;
    } else if (line.starts_with("radar 1 ")) {
      EXPECT_THAT(radar, HasSubstr("\n" + line.substr(8, line.find("  ") - 8) + "\n"));
      ++shown;
    }
  }
  EXPECT_GE(shown, 2) << text;
  EXPECT_EQ(std::to_string(Count(text, "\nbookmark ")) + "\n",
            recording.Rows("SELECT count(*) FROM bookmark WHERE event=1"));
}

TEST_F(DriveTest, CanBeWatchedAndReadBack) {
  for (const char* program : {"sqlite3", "gpsbabel", "jq", "ffmpeg"}) {
    if (!IsInstalled(program)) GTEST_SKIP() << program << " is not installed";
  }
  bench_.Drive(BenchRun::DriveWithoutItsEnd());
  std::filesystem::create_directories(bench_.Path("mnt/metadata"));
  const Child follower([&] {
    return ExecInto({METADATA_PROGRAM, "follow", bench_.Path("mnt/metadata"), "--format", "csv"},
                    directory_.Path("followed"), directory_.Path("follower"));
  });
  ASSERT_TRUE(Eventually([&] { return !directory_.Read("followed").empty(); }));  // the names of the columns
  bench_.Start({"--speed", "10"});
  AwaitAllSent(bench_, bench_.Recording());

  // While it is recorded.
  ExpectAllSent(bench_, RebuildFromCsv(Reader({"export", "--format", "csv"}).out));
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
  const Ran lines = Reader({"export", "--format", "jsonl"});
  EXPECT_THAT(lines.said, IsEmpty());
  ExpectAllSent(bench_, RebuildFromJson(lines.out));
  ExpectAllSent(bench_, bench_.Recording());
  TracksAreWhatIsRecorded();
  SubtitlesAreWhatIsRecorded();
  const std::string all = WithoutUtc(Reader({"dump", "--format", "csv"}).out);
  const auto followed = [&] { return WithoutUtc(directory_.Read("followed")); };
  EXPECT_TRUE(Eventually([&] { return followed().size() >= all.size(); })) << directory_.Read("follower");
  EXPECT_EQ(followed(), all) << "everything, since there was nothing when it began";
  EXPECT_THAT(Reader({"check"}).out, MatchesRegex("Good: 1 run, 1 file, [0-9]+ records\n"));
  EXPECT_THAT(Reader({"state", "--at", "crash"}).out, AllOf(HasSubstr("crash                detected\n"),
                                                            HasSubstr("recording            started\n")));
}

// Events follow each other by hundredths of a second, GPS readings to the end; the copy takes most of one.
TEST_F(DriveTest, HoldsEveryEventBesideACopyThatHasThoseBefore) {
  if (*METADATAMGR != '\0') GTEST_SKIP() << "under emulation the drive is over before the recording is long";
  const std::string kEndOfReadings = "18.8  gps rate 0\n";
  std::string drive = BenchRun::DriveWithoutItsEnd();
  bench_.Drive(drive.erase(drive.rfind(kEndOfReadings), kEndOfReadings.size()));
  bench_.Start({"--speed", "2"});
  ASSERT_TRUE(bench_.Said("record start: sent")) << bench_.Output();
  // First values, which no event is compared with, make it long.
  ASSERT_EQ(Connection(bench_.Recording())
                .Rows("PRAGMA busy_timeout=20000; "
                      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<1000000) "
                      "INSERT INTO temperature SELECT -i, 1, NULL, 0, 0, i%100 FROM n"),
            "20000\n");
  ASSERT_TRUE(bench_.Said("direct record start evening-2")) << bench_.Output();
  const std::size_t sentBefore = Readings();
  const std::string copy = bench_.Path("copy.db");
  const Ran ran = Reader({"ask", "copy", copy});
  ASSERT_EQ(ran.status, 0) << ran.said;
  EXPECT_GT(Readings(), sentBefore) << "while the copy was made";
  for (const Compared& compared : CompareSentWithRecorded(bench_, copy)) {
    EXPECT_LE(compared.recorded.size(), compared.sent.size());
    EXPECT_TRUE(std::equal(compared.recorded.begin(), compared.recorded.end(), compared.sent.begin()))
        << compared.what;
  }
  EXPECT_EQ(bench_.Send({"gps", "rate", "0"}), 0) << bench_.SendOutput();
  AwaitAllSent(bench_, bench_.Recording());
  EXPECT_EQ(bench_.Send({"quit"}), 0) << bench_.SendOutput();
  // 1 where the copy takes so long that the bench misses an answer.
  EXPECT_THAT(bench_.Finish(), testing::AnyOf(0, 1)) << bench_.Output();
}

}  // namespace
