// The page of a report: it needs no other files, and it holds the expected data.
#include "DriveFixture.h"

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

class ReportTest : public DriveTest {
 protected:
  void SetUp() override {
    if (!IsInstalled("jq")) GTEST_SKIP() << "jq is not installed";
    DriveTest::SetUp();
  }

  // Makes the page of all recordings.
  void Make(std::vector<std::string> options = {}) {
    options.insert(options.begin(), {"report", "-o", Page(), dir_.Path("")});
    const Ran ran = Metadata(options);
    EXPECT_EQ(ran.status, 0) << ran.said;
    page_ = dir_.Read("drive.html");
    constexpr std::string_view kBegin = "id=\"data\">";
    const std::size_t begin = page_.find(kBegin) + kBegin.size();
    dir_.Write("data.json", page_.substr(begin, page_.find("</script>", begin) - begin));
  }
  std::string Page() const { return dir_.Path("drive.html"); }
  // Runs a jq query on the data of the page.
  std::string Data(const std::string& query) const {
    const Ran ran = RunProgram({"jq", "-c", query, dir_.Path("data.json")});
    return ran.status == 0 ? ran.out : ran.said;
  }
  std::string page_;
};

// The recording has texts that look like markup.
TEST_F(ReportTest, NeedsNothingButItselfWhateverItShows) {
  Open();
  TunnelDrive();
  Store().ReportStringData(e_Tag_Filler, "</script><script>document.title='!'</script><!--");
  Store().ReportStringData(e_Tag_Filler, "\"\\\x01\xE2\x80\xA8'");
  Store().ReportStringData(e_Tag_Filler, (std::string(299, 'x') + "\xC3\xA9").c_str());
  Close();
  Rows("UPDATE string SET text=CAST(x'41FF3C62' AS TEXT) WHERE seq=(SELECT min(seq)+1 FROM string)");
  Make();
  std::string code = page_.substr(0, page_.find("id=\"data\">"));
  code += page_.substr(page_.find("</script>", code.size()));
  const std::string kNamespace = "http://www.w3.org/2000/svg";
  code.erase(code.find(kNamespace), kNamespace.size());
  EXPECT_THAT(code, Not(ContainsRegex("https?:|src=|@import|url\\([^#]|<link|fetch|XMLHttp|innerHTML")));
  EXPECT_THAT(code, HasSubstr("default-src 'none'"));
  EXPECT_THAT(page_, MatchesRegex("<!DOCTYPE html>\n<html lang=\"en\">.*</script>\n</body>\n</html>\n"));
  EXPECT_EQ(Data(".[].events[]|select(.source==\"filler\").text"),
            "\"</script><script>document.title='!'</script><!--\"\n"
            "\"A\xEF\xBF\xBD<b\"\n"
            "\"" +
                std::string(299, 'x') + "\xE2\x80\xA6\"\n");
}

TEST_F(ReportTest, HoldsTheDrive) {
  Open();
  TunnelDrive();
  Store().ReportShutdownData();
  Close();
  Make();
  EXPECT_EQ(Data(".[]|.run,.ended,.beginMs,.endMs,.records,.utcMs"),
            "1\n\"clean end\"\n0\n37000\n" + Rows("SELECT count(*) FROM timeline") +
                std::to_string(kNoonUtcMs) + "\n");
  EXPECT_EQ(Data(".[].events|map(select(.number))|map([.t,.number,.place.lat,.place.kmh])"),
            "[[100,1,null,null],[11000,2,25560900,50],[36000,3,25561400,50]]\n");
  EXPECT_EQ(Data("[.[].track[]|[.t[0],.t[-1],.lat[0],.lon[0],(.t|length)]]"),
            "[[1000,10000,25560000,-42630000,10],[31000,36000,25561000,-42630500,6]]\n");
  EXPECT_EQ(Data(".[].track|map(.lat)|add|map(tostring)|join(\",\")"),
            "\"" + Rows("SELECT group_concat(latitude_e4min) FROM gps").substr(0, 16 * 9 - 1) + "\"\n");
  EXPECT_EQ(Data("[.[].groups[].lanes[]|select(.times>0)|[.name,.t,.share,.times,.onMs]]"),
            "[[\"recording\",[1000,37000],[100,0],1,36000],[\"brakes\",[36000],[100],1,1000],"
            "[\"gps\",[1000,11000,31000],[100,0,100],2,16000]]\n");
  EXPECT_EQ(Data("[.[].charts[]|[.name,.unit,(.lines[]|.t|index(null))]]"),
            "[[\"Speed\",\"km/h\",10],[\"Altitude\",\"m\",10],[\"Satellites\",\"in use\",10]]\n")
      << "the line is broken where the fix was lost";
  EXPECT_EQ(Data("[.[].gaps[]|[.source,.usualMs,.count,.totalMs,.gaps]]"),
            "[[\"gps\",1000,1,21000,[[10000,21000]]]]\n");
}

// The distance uses all fixes and no jumps. Report and `info` show the same gaps.
TEST_F(ReportTest, DistanceAndGapsAreThoseOfInfo) {
  Open();
  for (unsigned int i = 0; i < 10; ++i) {  // 18.53 m each second
    Position(100 * i, 0);
    After(1000);
  }
  Position(10'000, 0);
  After(7013);
  Position(10'100, 0);
  After(500);
  Store().ReportShutdownData();
  Close();
  Make();
  EXPECT_EQ(Data(".[].driven|[(.metres*10|round),.leaps,(.leapMetres|round)]"), "[1668,1,1686]\n");
  EXPECT_EQ(Data("[.[].gaps[]|[.source,.count,.gaps]]"), "[[\"gps\",1,[[10000,7013]]]]\n");
  EXPECT_THAT(Metadata({"info", File(1)}).out,
              AllOf(HasSubstr("driven             0.2 km, by GPS; leaps left out: 1, 1.7 km together\n"),
                    HasSubstr("1 gaps, the longest:\n                       7.013 s from "
                              "2024-05-01T12:00:10.000Z\n")));
}

TEST_F(ReportTest, HoldsEachKindOfSource) {
  Open();
  After(1000);
  Store().ReportMicPresent(e_MicrophonePosition{1}, true, true, clock_.tick);
  Store().ReportCameraState(e_CameraPort{2}, e_CameraState{1}, true, clock_.tick);
  Store().ReportVideoStreamState(e_VideoStream{0}, e_StreamState{3}, true, clock_.tick);
  Store().ReportRadarState(1, true, true);
  Store().ReportStateData(e_Tag_CrashDetected, true, clock_.tick);
  for (unsigned short i = 0; i < 10; ++i) {
    Temperature(static_cast<short>(-i));
    Store().ReportSpeed(2, static_cast<unsigned short>(50 + i), true, clock_.tick, e_Tag_None);
    Store().ReportSpeed(1, 99, true, clock_.tick, e_Tag_None);
    Store().ReportRadar(1, i, 120, 130, e_RADAR_DIRECTION{0}, true, clock_.tick, e_Tag_None);
    After(500);
  }
  Store().ReportMicState(e_MicrophonePosition{1}, true, true, clock_.tick);
  Store().ReportCameraState(e_CameraPort{2}, e_CameraState{0}, true, clock_.tick);
  Store().ReportRadarState(1, false, true);
  After(4000);
  Store().ReportBookmark(clock_.tick);
  Close();
  Make();
  EXPECT_EQ(Data("[.[].charts[].lines[]|[.name,.max[0],.max[9]]]"),
            "[[\"radar\",50,59],[\"target\",0,9],[\"fastest\",120,120],[\"locked\",130,130],"
            "[\"temperature 0\",0,-9]]\n");
  EXPECT_EQ(Data("[.[].groups[].lanes[]|select(.t|length>0)|[.name,.t,.state,.states,.onMs]]"),
            "[[\"crash\",[1000],[0],[[\"detected\",2]],9000],"
            "[\"microphone 1\",[1000,6000],[0,1],[[\"present\",1],[\"active\",2]],4000],"
            "[\"camera 2\",[1000,6000],[0,1],[[\"state 1\",2],[\"state 0\",0]],5000],"
            "[\"stream 0\",[1000],[0],[[\"state 3\",2]],9000],"
            "[\"radar 1\",[1000,6000],[0,1],[[\"reading\",2],[\"no reading\",0]],5000]]\n");
  EXPECT_EQ(Data("[.[].gaps[]|[.source,.gaps]]"),
            "[[\"radar 1\",[[5500,4500]]],[\"temperature 0\",[[5500,4500]]]]\n");
}

TEST_F(ReportTest, TellsOfLostRecords) {
  Open();
  for (short i = 0; i < 20; ++i) {
    Temperature(i);
    After(1000);
  }
  Close();
  Rows("DELETE FROM temperature WHERE temperature BETWEEN 5 AND 9");
  Rows("INSERT INTO loss SELECT max(seq)+1, tick, NULL, 1, 'temperature', 15000, 18000, 4 FROM temperature");
  Make();
  EXPECT_EQ(Data(".[]|.lost,.missing,.losses,.holes"),
            "4\n5\n[[\"temperature\",4,5000,8000]]\n[[5,4000,10000]]\n");
  Make({"--source", "loss"});
  EXPECT_EQ(Data(".[]|.lost,.missing,.isWhole"), "4\n0\nfalse\n") << "what was not asked for is not missing";
}

TEST_F(ReportTest, HoldsEveryRun) {
  EXPECT_THAT(Metadata({"report", dir_.Path("")}).out, HasSubstr("id=\"data\">\n[]\n</script>"));
  Open();
  Close();
  Open();
  TunnelDrive();
  Close();
  Open();
  After(500);
  Store().ReportBookmark(clock_.tick);
  Close();
  Make();
  EXPECT_EQ(Data("[.[]|[.run,.ended,(.track|length),([.events[]|.number|numbers])]]"),
            "[[1,\"cut off\",0,[]],[2,\"cut off\",2,[1,2,3]],[3,\"cut off\",0,[4]]]\n");
  Make({"--from", "bookmark:4", "--to", "bookmark:4"});
  EXPECT_EQ(Data("[.[]|[.run,.isWhole,([.events[].number])]]"), "[[3,false,[4]]]\n");
}

TEST_F(ReportTest, RefersToVideosAndNamesThoseThatItCannot) {
  Open();
  TunnelDrive();
  Close();
  Make();
  EXPECT_THAT(page_, Not(HasSubstr("; media-src")));
  EXPECT_EQ(Data(".[]|has(\"videos\")"), "false\n");
  dir_.Write("a=b.mp4", "");
  Make({"--video", dir_.Path("a=b.mp4") + "=-0.25", "--video", dir_.Path("a=b.mp4"), "--from", "bookmark:2"});
  EXPECT_THAT(page_, HasSubstr("; media-src"));
  EXPECT_EQ(Data(".[].videos"), R"([{"file":"a=b.mp4","startMs":750},{"file":"a=b.mp4","startMs":1000}])"
                                "\n");
  const std::vector<std::pair<std::string, std::string>> bad{
      {"absent.mp4", "absent.mp4: there is no such file"},
      {dir_.Path("a=b.mp4") + "=soon", "=soon: the offset is not a number of seconds"},
      {dir_.Path("a=b.mp4") + "=1e99", "=1e99: the offset is not a number of seconds"},
  };
  for (const auto& [video, said] : bad) {
    const Ran ran = Metadata({"report", "-o", dir_.Path("bad.html"), "--video", video, dir_.Path("")});
    EXPECT_EQ(ran.status, 1);
    EXPECT_THAT(ran.said, HasSubstr(said));
    EXPECT_FALSE(std::filesystem::exists(dir_.Path("bad.html")));
  }
  Open();
  Close();
  EXPECT_THAT(Metadata({"report", "--video", dir_.Path("a=b.mp4"), dir_.Path("")}).said,
              HasSubstr("--video goes with one run; these files hold 2"));
}

}  // namespace
