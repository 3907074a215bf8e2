// Reads the output of `metadata export` with other programs.
#include "DriveFixture.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class ExportTest : public DriveTest {
 protected:
  // Records two stretches of road with a tunnel, then a bookmark six seconds after the second stretch.
  void SetUp() override {
    DriveTest::SetUp();
    Open();
    TunnelDrive();
    Store().ReportGpsState(false, true);
    After(5000);
    Store().ReportBookmark(clock_.tick);
  }

  Ran Export(const std::string& format, std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"export", "--format", format, File(1)});
    return Metadata(options);
  }
  // Exports into a file. Returns its path.
  std::string ExportTo(const std::string& name, std::vector<std::string> options = {}) const {
    options.insert(options.end(), {"-o", dir_.Path(name)});
    const Ran ran = Export(name.substr(name.find('.') + 1), options);
    EXPECT_EQ(ran.status, 0) << ran.said;
    EXPECT_EQ(ran.out, "");
    return dir_.Path(name);
  }
};

std::string ByJq(const std::string& program, const std::string& path) {
  const Ran ran = RunProgram({"jq", "-c", program, path});
  return ran.said + ran.out;
}

std::string ByXpath(const std::string& expression, const std::string& path) {
  return RunProgram({"xmllint", "--xpath", expression, path}).out;
}

std::string Validated(const std::string& path) {
  return RunProgram({"xmllint", "--noout", "--schema", GPX_SCHEMA, path}).said;
}

TEST_F(ExportTest, GpxHasSegmentsAndWaypoints) {
  if (!IsInstalled("xmllint") || !IsInstalled("gpsbabel")) GTEST_SKIP() << "xmllint or gpsbabel is missing";
  Close();
  const std::string gpx = dir_.Path("drive.gpx");
  const Ran ran = Export("gpx", {"-o", gpx});
  EXPECT_EQ(ran.status, 0);
  EXPECT_EQ(ran.said, "metadata: bookmark 1 has no position, so it is no waypoint\n");
  EXPECT_EQ(Validated(gpx), gpx + " validates\n");
  EXPECT_EQ(
      ByXpath("concat(count(//*[local-name()='trk']), ' ', count(//*[local-name()='trkseg']), ' ', "
              "count(//*[local-name()='trkseg'][1]/*), ' ', count(//*[local-name()='trkseg'][2]/*), ' ', "
              "string(//*[local-name()='speed']), ' ', string(//*[local-name()='cmt']))",
              gpx),
      "1 2 10 6 13.89 position of 6.0 s before\n");
  EXPECT_EQ(
      RunProgram({"gpsbabel", "-w", "-i", "gpx", "-f", gpx, "-o", "unicsv,utc=0", "-F", "-"}).out,
      "No,Latitude,Longitude,Name,Altitude,Description,Date,Time\r\n"
      "1,42.601500,-71.050750,\"bookmark 2\",12.3,\"bookmark 2\",2024/05/01,12:00:11\r\n"
      "2,42.602333,-71.051167,\"bookmark 3\",12.3,\"bookmark 3\",2024/05/01,12:00:36\r\n"
      "3,42.602500,-71.051250,\"bookmark 4\",12.3,\"position of 6.0 s before\",2024/05/01,12:00:42\r\n");
}

TEST_F(ExportTest, GeoJsonHasLinesAndPoints) {
  if (!IsInstalled("jq")) GTEST_SKIP() << "jq is not installed";
  Close();
  const std::string json = ExportTo("drive.geojson");
  EXPECT_EQ(ByJq(".type, (.features[] | [.type, .geometry.type, (.geometry.coordinates | length?), "
                 ".properties.kind, .properties.name, .properties.position_age_ms])",
                 json),
            "\"FeatureCollection\"\n"
            "[\"Feature\",null,0,\"bookmark\",\"bookmark 1\",null]\n"
            "[\"Feature\",\"Point\",2,\"bookmark\",\"bookmark 2\",1000]\n"
            "[\"Feature\",\"LineString\",10,\"track\",null,null]\n"
            "[\"Feature\",\"Point\",2,\"bookmark\",\"bookmark 3\",1000]\n"
            "[\"Feature\",\"Point\",2,\"bookmark\",\"bookmark 4\",6000]\n"
            "[\"Feature\",\"LineString\",6,\"track\",null,null]\n");
  EXPECT_EQ(
      ByJq(".features[2] | .geometry.coordinates[9], (.properties | .run, (.coordinateProperties | .[] | "
           "[length, .[9]]))",
           json),
      "[-71.05075,42.6015]\n1\n[10,\"2024-05-01T12:00:10.000Z\"]\n[10,50]\n[10,0]\n[10,12.3]\n");
}

TEST_F(ExportTest, LinesAreCutAtTheAntimeridianAndInLongStretches) {
  if (!IsInstalled("jq") || !IsInstalled("xmllint")) GTEST_SKIP() << "jq or xmllint is missing";
  Close();
  Rows(
      "UPDATE gps SET longitude_e4min=iif(tick<13000,108000000,-107999900), altitude_dm=134217727, "
      "latitude_e4min=-latitude_e4min");
  constexpr const char* kLengths =
      "[.features[].geometry | select(.type==\"LineString\").coordinates | length]";
  const std::string gpx = ExportTo("east.gpx");
  EXPECT_EQ(Validated(gpx), gpx + " validates\n");
  EXPECT_EQ(ByXpath("concat(//*[local-name()='trkpt'][2]/@lat, ' ', //*[local-name()='trkpt'][2]/@lon)", gpx),
            "-42.6001667 -180.0000000\n");
  const std::string east = ExportTo("east.geojson");
  EXPECT_EQ(ByJq(kLengths, east), "[2,8,6]\n");
  EXPECT_EQ(ByJq("[.features[].properties.coordinateProperties.altitude_m?[0]] | unique", east), "[null]\n");

  Open();
  for (unsigned int i = 0; i < 10'005; ++i) {
    Position(i, i);
    After(i % 100 == 0 ? 1000 : 0);
  }
  Close();
  std::filesystem::rename(File(2), File(1));
  const std::string line = ExportTo("long.geojson");
  EXPECT_EQ(ByJq(kLengths, line), "[10000,6]\n");
  EXPECT_EQ(ByJq(".features[0].geometry.coordinates[-1]==.features[1].geometry.coordinates[0]", line),
            "true\n");
}

TEST_F(ExportTest, SubtitlesTellEachSecond) {
  After(100);
  Store().ReportRadarState(1, true, true);
  const unsigned int start = clock_.tick;
  Store().ReportStateData(e_Tag_RecordingStarted, true, start);
  Store().ReportRadar(1, 54, 120, 131, e_RADAR_DIRECTION{0}, true, start, e_Tag_None);
  After(1500);
  Store().ReportRadarState(1, false, true);
  Store().ReportStateData(e_Tag_SirenOn, true, clock_.tick);
  After(1000);
  Store().ReportBookmark(clock_.tick - 300);
  After(100);
  Store().ReportShutdownData();
  Close();
  const Ran first = Export("srt");
  EXPECT_EQ(first.status, 0) << first.said;
  EXPECT_THAT(first.out, StartsWith("1\n00:00:00,000 --> 00:00:01,000\n2024-05-01T12:00:01.000Z\n"
                                    "GPS 50.0 km/h  42.600000 -71.050000\nrecording\n\n"
                                    "2\n00:00:01,000 --> 00:00:02,000\n"));
  EXPECT_THAT(first.out, HasSubstr("\n11\n00:00:10,000 --> 00:00:11,000\n2024-05-01T12:00:11.000Z\n"
                                   "GPS 50.0 km/h  42.601500 -71.050750\nrecording\nbookmark 2\n\n12\n"));
  const std::string srt = ExportTo("second.srt", {"--video-start", "record-start:2"});
  EXPECT_EQ(dir_.Read("second.srt"),
            "1\n00:00:00,000 --> 00:00:01,000\n2024-05-01T12:00:42.100Z\nno fix\nradar 1 target 54, fastest "
            "120, locked 131 km/h\n"
            "brakes, recording\n\n"
            "2\n00:00:01,000 --> 00:00:02,000\n2024-05-01T12:00:43.100Z\nno fix\nradar 1 target 54, fastest "
            "120, locked 131 km/h\n"
            "brakes, recording\n\n"
            "3\n00:00:02,000 --> 00:00:03,000\n2024-05-01T12:00:44.100Z\nno fix\nbrakes, recording, siren\n"
            "bookmark 5\n\n");
  if (IsInstalled("ffmpeg")) {
    EXPECT_THAT(RunProgram({"ffmpeg", "-v", "error", "-i", srt, "-f", "webvtt", "-"}).out,
                HasSubstr("\n00:02.000 --> 00:03.000\n2024-05-01T12:00:44.100Z\nno fix\n"
                          "brakes, recording, siren\nbookmark 5\n"));
  }
  for (const char* same : {"2024-05-01T12:00:42.1Z", "52100", "bookmark:4+100ms"})
    EXPECT_EQ(Export("srt", {"--video-start", same}).out, dir_.Read("second.srt")) << same;
  EXPECT_THAT(Export("srt", {"--from", "21000", "--to", "22000"}).out,
              StartsWith("1\n00:00:10,000 --> 00:00:11,000\n"));
}

// The receiver becomes silent without reporting the loss of its fix.
TEST_F(ExportTest, AValueThatIsTooOldIsNotShown) {
  Close();
  clock_.utcMs += 60'000;
  Open();
  Store().ReportStateData(e_Tag_RecordingStarted, true, clock_.tick);
  for (unsigned int i = 0; i < 10; ++i) {
    Position(100 * i, 0);
    After(1000);
  }
  After(7000);
  Brakes(true);
  const unsigned int silent = clock_.tick;
  Position(2000, 0);
  After(1000);
  Brakes(false);
  Store().ReportShutdownData();
  Close();
  std::filesystem::rename(File(2), File(1));
  const Ran srt = Export("srt");
  EXPECT_THAT(srt.out, testing::ContainsRegex("00:00:14,000 --> [^\n]*\n[^\n]*\nGPS 50.0 km/h  42.60"));
  EXPECT_THAT(srt.out, testing::ContainsRegex("00:00:15,000 --> [^\n]*\n[^\n]*\nGPS no data for 6 s\n"));
  const Ran gpx = Export("gpx");
  EXPECT_THAT(gpx.out, testing::ContainsRegex("</trkpt>\n</trkseg>\n<trkseg>\n<trkpt lat=\"42.6033333\""));
  const Ran state = Metadata({"state", "--at", std::to_string(silent - 1), File(1)});
  EXPECT_THAT(state.out, HasSubstr("no data for 8.0 s, the last was: 42.601500"));
}

TEST_F(ExportTest, NoPlaceAndWildTimesGiveFilesInTheEnd) {
  Close();
  dir_.Write("placeless.db", dir_.Read("metadata.000001.db"));
  Rows(
      "UPDATE bookmark SET tick=9223372036854775807 WHERE seq=(SELECT max(seq) FROM bookmark); "
      "UPDATE gps SET tick=-9223372036854775807 WHERE seq=(SELECT min(seq) FROM gps); "
      "UPDATE clock SET utc_ms=-9223372036854775807");
  for (const char* format : {"gpx", "geojson", "csv", "jsonl"}) EXPECT_EQ(Export(format).status, 0) << format;
  EXPECT_THAT(Export("srt").out, HasSubstr("\n99:59:58,000 --> 99:59:59,000\n"));
  EXPECT_EQ(Metadata({"state", File(1), "--at", "9223372036854775807"}).status, 2);

  std::filesystem::rename(dir_.Path("placeless.db"), File(1));
  Rows("DELETE FROM gps; DELETE FROM gps_state; DELETE FROM bookmark");
  EXPECT_EQ(Export("geojson").out, "{\"type\":\"FeatureCollection\",\"features\":[\n\n]}\n");
  const std::string gpx = ExportTo("none.gpx");
  if (!IsInstalled("xmllint")) GTEST_SKIP() << "xmllint is not installed";
  EXPECT_EQ(Validated(gpx), gpx + " validates\n");
}

TEST_F(ExportTest, WrongUseIsSaidAndNoRecordingIsWrittenOver) {
  After(500);
  const std::string before = dir_.Read("metadata.000001.db");
  struct Case {
    std::vector<std::string> arguments;
    int status;
    const char* said;
  };
  const Case cases[] = {
      {{"export", "--format", "kml"}, 2, "--format: kml not in {gpx,geojson,csv,jsonl,srt}"},
      {{"export"}, 2, "--format is required"},
      {{"export", "--format", "gpx", "--source", "gps"}, 2, "--source is for --format csv and jsonl"},
      {{"export", "--format", "gpx", "--video-start", "1"}, 2, "--video-start is for --format srt"},
      {{"export", "--format", "srt", "--video-start", "crash"}, 1, "no crash is recorded: there are 0"},
      {{"export", "--format", "gpx", "-o", File(1)}, 1, "is a database, which is not written over"},
      {{"export", "--format", "gpx", "-o", File(1) + "-wal"}, 1, "is a database, which is not written over"},
      {{"report", "-o", File(1)}, 1, "is a database, which is not written over"},
      {{"export", "--format", "gpx", "-o", dir_.Path("none/x")}, 1, "none/x: No such file or directory"},
      {{"export", "--format", "csv", "-o", "/dev/full"}, 1, "/dev/full: No space left on device"},
  };
  for (auto [arguments, status, said] : cases) {
    arguments.push_back(File(1));
    const Ran ran = Metadata(arguments);
    EXPECT_EQ(ran.status, status) << said;
    EXPECT_THAT(ran.said, HasSubstr(said));
  }
  EXPECT_EQ(dir_.Read("metadata.000001.db"), before);
}

}  // namespace
