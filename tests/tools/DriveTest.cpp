// A drive of the bench through the real MetadataMgr, and what people see of it with the reader: while it
// is recorded and afterwards, read back by SQLite's shell and compared with what the bench sent.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <regex>
#include <sstream>

#include "ReaderFixture.h"
#include "bench/BenchRun.h"
#include "bench/SentRows.h"
#include "support/Eventually.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

// The default drive, up to the quit.
std::string DriveWithoutItsEnd() {
  std::ostringstream text;
  text << std::ifstream(DEFAULT_DRIVE).rdbuf();
  std::string drive = text.str();
  return drive.substr(0, drive.rfind('\n', drive.find(" quit")) + 1);
}

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++count;
  return count;
}

// Without the times of day: those of the first records are better known once GPS has told the time.
std::string WithoutUtc(const std::string& csv) {
  return std::regex_replace(csv, std::regex("(\\n[0-9]+,[0-9]+),[^,]*"), "$1");
}

bool AllIsRecorded(const std::vector<Compared>& compared) {
  return std::all_of(compared.begin(), compared.end(),
                     [](const Compared& c) { return c.sent == c.recorded; });
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

class DriveTest : public testing::Test {
 protected:
  std::string Recording() const { return bench_.Path("mnt/metadata/metadata.000001.db"); }

  std::vector<std::string> InTheCar(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(),
                     {"env", "LINX_IPC_DIR=" + bench_.Path("ipc"), "METADATA_ROOT=" + bench_.Path("mnt"),
                      "METADATA_SHM=metadata-bench-" + std::to_string(bench_.Id()), METADATA_PROGRAM});
    return arguments;
  }
  Ran Reader(const std::vector<std::string>& arguments) const { return RunProgram(InTheCar(arguments)); }

  // A recording's tables again, made by SQLite's shell of a dump; `value` is SQL for a field of a line.
  std::string Rebuild(const std::string& import, const std::string& (*value)(std::string& name)) {
    std::string script = import;
    Connection recording(Recording());
    std::istringstream tables(recording.Rows(
        "SELECT name FROM sqlite_master WHERE type='table' AND name NOT IN ('tag_name','progress')"));
    for (std::string table; std::getline(tables, table);) {
      script += "CREATE TABLE " + table + "(seq INTEGER, tick INTEGER, sender_tick INTEGER, event INTEGER";
      std::string values;
      std::istringstream columns(
          recording.Rows("SELECT name, type FROM pragma_table_info('" + table + "') WHERE cid>3"));
      for (std::string column; std::getline(columns, column);) {
        const std::string name = column.substr(0, column.find('|'));
        std::string field = name == "source" ? table + "_" + name : name;
        script += ", " + name + " " + column.substr(name.size() + 1);
        values += ", " + value(field);
      }
      const auto of = [value](std::string name) { return value(name); };
      script += ");\nINSERT INTO " + table + " SELECT " + of("seq") + ", " + of("tick") + ", nullif(" +
                of("sender_tick") + ",''), CASE " + of("event") +
                " WHEN 'initial' THEN 0 WHEN 'event' THEN 1 ELSE 2 END" + values + " FROM lines WHERE " +
                of("table") + "='" + table + "';\n";
    }
    const std::string path = directory_.Path("rebuilt.db");
    std::filesystem::remove(path);
    const Ran ran = RunProgram({"sqlite3", path, ".read " + directory_.Write("script.sql", script)});
    EXPECT_EQ(ran.said, "");
    return path;
  }

  std::string RebuildFromCsv(const std::string& csv) {
    return Rebuild(".mode csv\n.import " + directory_.Write("drive.csv", csv) + " lines\n",
                   [](std::string& name) -> const std::string& { return name = '"' + name + '"'; });
  }
  std::string RebuildFromJson(const std::string& lines) {
    return Rebuild("CREATE TABLE lines(line);\n.mode ascii\n.separator \"\\037\" \"\\n\"\n.import " +
                       directory_.Write("drive.jsonl", lines) + " lines\n",
                   [](std::string& name) -> const std::string& { return name = "(line->>'" + name + "')"; });
  }

  std::string Export(const std::string& format, std::vector<std::string> options = {}) const {
    const std::string path = directory_.Path("drive." + format);
    options.insert(options.begin(), {"export", "--format", format, "-o", path});
    const Ran ran = Reader(options);
    EXPECT_EQ(ran.status, 0) << ran.said;
    return path;
  }
  // What a server had when it was asked first is not in the list of what was sent.
  void AddInitial(const std::string& sql, std::vector<std::string>& rows) const {
    for (const std::string& row : Lines(Connection(Recording()).Rows(sql))) rows.push_back(row);
  }
  // Latitude, longitude (ten-thousandths of a minute), altitude (0.1 m), speed (0.1 km/h) of all positions.
  // Sorted.
  std::vector<std::string> SentPositions() const {
    std::vector<std::string> positions =
        SentValues(bench_.Path("sent"), "gps",
                   "SELECT id, 0, (f->>0*600000 + f->>1*10000 + f->>2) * iif(f->>3+0=1,1,-1), "
                   "(f->>4*600000 + f->>5*10000 + f->>6) * iif(f->>7+0=1,1,-1), f->>15, f->>9 "
                   "FROM event WHERE f->>13+0 NOT IN (0,7)");
    EXPECT_GT(positions.size(), 50U);
    AddInitial(
        "SELECT latitude_e4min||' '||longitude_e4min||' '||altitude_dm||' '||speed_deci_kmh FROM gps "
        "WHERE event=0 AND quality>0",
        positions);
    std::sort(positions.begin(), positions.end());
    return positions;
  }
  // Asks SQLite's shell of a CSV file.
  std::vector<std::string> FromCsv(const std::string& path, const std::string& sql) const {
    const Ran ran = RunProgram(
        {"sqlite3", ":memory:", ".mode csv", ".import " + path + " t", ".mode list", ".separator ' '", sql});
    EXPECT_EQ(ran.said, "");
    return Lines(ran.out);
  }

  void GpxIsWhatWasSent() const;
  void GeoJsonIsWhatWasSent() const;
  void SubtitlesAreWhatWasSent() const;

  TempDir directory_;
  BenchRun bench_;
};

void DriveTest::GpxIsWhatWasSent() const {
  if (!IsInstalled("gpsbabel")) GTEST_SKIP() << "gpsbabel is not installed";
  const std::string gpx = Export("gpx");
  const auto convert = [&](const std::string& kind, const std::string& to) {
    EXPECT_EQ(
        RunProgram({"gpsbabel", kind, "-i", "gpx", "-f", gpx, "-o", "unicsv,utc=0,prec=9", "-F", to}).said,
        "");
    return to;
  };
  std::vector<std::string> sent = SentPositions();
  for (std::string& position : sent) position.erase(position.rfind(' '));  // it does not tell the speed
  std::sort(sent.begin(), sent.end());
  std::vector<std::string> read =
      FromCsv(convert("-t", directory_.Path("track.csv")),
              "SELECT CAST(round(Latitude*600000) AS INTEGER), CAST(round(Longitude*600000) AS INTEGER), "
              "CAST(round(Altitude*10) AS INTEGER) FROM t");
  std::sort(read.begin(), read.end());
  EXPECT_EQ(read, sent);
  EXPECT_EQ(FromCsv(convert("-w", directory_.Path("waypoints.csv")), "SELECT Name FROM t").size(),
            SentValues(bench_.Path("sent"), "bookmark", "SELECT id, 0, 1 FROM event").size());
}

void DriveTest::GeoJsonIsWhatWasSent() const {
  if (!IsInstalled("jq")) GTEST_SKIP() << "jq is not installed";
  std::vector<std::string> read = Lines(
      RunProgram(
          {"jq", "-r",
           R"jq(.features[] | select(.properties.kind=="track") | .properties.coordinateProperties as $p |
                  (.geometry | if .type=="Point" then [.coordinates] else .coordinates end) as $c |
                  range($c | length) | "\($c[.][1]*600000 | round) \($c[.][0]*600000 | round) \(
                  $p.altitude_m[.]*10 | round) \($p.speed_kmh[.]*10 | round)")jq",
           Export("geojson")})
          .out);
  std::sort(read.begin(), read.end());
  EXPECT_EQ(read, SentPositions());
}

void DriveTest::SubtitlesAreWhatWasSent() const {
  if (!IsInstalled("ffprobe")) GTEST_SKIP() << "ffprobe is not installed";
  const std::string srt = Export("srt");
  const Ran probe = RunProgram({"ffprobe", "-v", "error", "-show_entries", "packet=pts_time,duration_time",
                                "-of", "csv=print_section=0", srt});
  EXPECT_EQ(probe.said, "");
  EXPECT_GE(Lines(probe.out).size(), 2U);
  for (const std::string& cue : Lines(probe.out)) EXPECT_THAT(cue, MatchesRegex("[0-9]+.000000,1.000000"));

  const std::string text = RunProgram({"ffmpeg", "-v", "error", "-i", srt, "-f", "webvtt", "-"}).out;
  const std::vector<std::string> positions = SentPositions();
  std::vector<std::string> radar =
      SentValues(bench_.Path("sent"), "radar", "SELECT id, 0, f->>2, f->>3, f->>4 FROM event");
  AddInitial("SELECT speed1||' '||speed2||' '||speed3 FROM radar WHERE event=0", radar);
  std::size_t shown = 0;
  for (const std::string& line : Lines(text)) {
    double kmh = 0;
    double latitude = 0;
    double longitude = 0;
    if (std::sscanf(line.c_str(), "GPS %lf km/h %lf %lf", &kmh, &latitude, &longitude) == 3) {
      std::ostringstream position;
      position << std::lround(latitude * 600'000) << ' ' << std::lround(longitude * 600'000);
      const bool sent = std::any_of(positions.begin(), positions.end(), [&](const std::string& p) {
        return p.starts_with(position.str() + " ") &&
               p.ends_with(" " + std::to_string(std::lround(kmh * 10)));
      });
      EXPECT_TRUE(sent) << line;
      ++shown;
    } else if (line.starts_with("radar 1 ")) {
      const std::string reading = line.substr(8, line.find("  ") - 8);
      EXPECT_NE(std::find(radar.begin(), radar.end(), reading), radar.end()) << line;
      ++shown;
    }
  }
  EXPECT_GE(shown, 2U) << text;
  EXPECT_EQ(Count(text, "\nbookmark "),
            SentValues(bench_.Path("sent"), "bookmark", "SELECT id, 0, 1 FROM event").size());
}

TEST_F(DriveTest, CanBeWatchedAndReadBack) {
  if (!IsInstalled("sqlite3")) GTEST_SKIP() << "sqlite3 is not installed";
  bench_.Drive(DriveWithoutItsEnd());
  std::filesystem::create_directories(bench_.Path("mnt/metadata"));
  const Child follower([&] {
    return ExecInto({METADATA_PROGRAM, "follow", bench_.Path("mnt/metadata"), "--format", "csv"},
                    directory_.Path("followed"), directory_.Path("follower"));
  });
  ASSERT_TRUE(Eventually([&] { return !directory_.Read("followed").empty(); }));  // the names of the columns
  bench_.Start({"--speed", "10"});
  ASSERT_TRUE(Eventually([&] { return Count(bench_.Output(), "bookmark notice received") == 2; },
                         std::chrono::seconds(60)))
      << bench_.Output();
  ASSERT_TRUE(
      Eventually([&] { return AllIsRecorded(CompareSentWithRecorded(bench_.Path("sent"), Recording())); }));

  // While it is recorded.
  for (const Compared& c : CompareSentWithRecorded(bench_.Path("sent"),
                                                   RebuildFromCsv(Reader({"export", "--format", "csv"}).out)))
    EXPECT_EQ(c.sent, c.recorded) << c.what;
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

  EXPECT_EQ(bench_.Send({"quit"}), 0);
  ASSERT_EQ(bench_.Finish(), 0) << bench_.Output();
  const Ran dump = Reader({"dump", "--format", "jsonl"});
  EXPECT_THAT(dump.said, IsEmpty());
  for (const Compared& c : CompareSentWithRecorded(bench_.Path("sent"), RebuildFromJson(dump.out)))
    EXPECT_EQ(c.sent, c.recorded) << c.what;
  GpxIsWhatWasSent();
  GeoJsonIsWhatWasSent();
  SubtitlesAreWhatWasSent();
  const std::string all = WithoutUtc(Reader({"dump", "--format", "csv"}).out);
  const auto followed = [&] { return WithoutUtc(directory_.Read("followed")); };
  EXPECT_TRUE(Eventually([&] { return followed().size() >= all.size(); })) << directory_.Read("follower");
  EXPECT_EQ(followed(), all) << "everything, since there was nothing when it began";
  EXPECT_THAT(Reader({"check"}).out, MatchesRegex("Good: 1 run, 1 file, [0-9]+ records\n"));
  EXPECT_THAT(Reader({"state", "--at", "crash"}).out, AllOf(HasSubstr("crash                detected\n"),
                                                            HasSubstr("recording            started\n")));
}

TEST_F(DriveTest, QuitLetsTheProcessEndInOrder) {
  bench_.Drive("0 ping\n1000 ping\n");
  bench_.Start();
  ASSERT_TRUE(bench_.Said("ping: answered")) << bench_.Output();
  const Ran quit = Reader({"ask", "quit"});
  EXPECT_EQ(quit.status, 0) << quit.said;
  EXPECT_THAT(Reader({"info"}).out, HasSubstr(", clean end\n"));
  const Ran ping = Reader({"ask", "ping"});
  EXPECT_EQ(ping.status, 1);
  EXPECT_EQ(ping.said, "metadata: MetadataMgr is not there\n");
  EXPECT_EQ(bench_.Finish(), 1) << "the bench did not ask for that";
}

}  // namespace
