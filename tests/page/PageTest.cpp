// Tests the page of a report in a browser. checks.py opens it in Chromium, moves the pointer, presses keys,
// and compares the page with the recording.
#include "DriveFixture.h"

namespace {

class PageTest : public DriveTest {
 protected:
  void SetUp() override {
    for (const char* program : {"chromium", "python3"}) {
      if (!IsInstalled(program)) GTEST_SKIP() << program << " is not installed";
    }
    DriveTest::SetUp();
  }

  // Makes the page of all recordings and runs a check of checks.py. Returns the failures; empty: none.
  std::string Check(const std::string& name, const std::vector<std::string>& options = {}) {
    std::vector<std::string> arguments{"report", "-o", dir_.Path("drive.html"), dir_.Path("")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Ran made = Metadata(arguments);
    EXPECT_EQ(made.status, 0) << made.said;
    arguments = {"/usr/bin/python3", "-B", PAGE_CHECKS, name, dir_.Path("drive.html"), File(1)};
    Child checks([&] { return ExecInto(arguments, dir_.Path("out"), dir_.Path("said")); });
    const int status = checks.Wait(std::chrono::seconds(110));
    return status == 0 ? "" : dir_.Read("out") + dir_.Read("said") + "status " + std::to_string(status);
  }

  // Records seconds of a drive with turns and stops. The speed differs each second.
  void Seconds(unsigned int count) {
    for (unsigned int i = 0; i < count; ++i, ++second_) {
      const unsigned int way = second_ / 40 * 20 + std::min(second_ % 40, 20U);  // stops half of the time
      Position(100 * way, 70 * (way % 60), static_cast<std::uint16_t>(500 + 37 * (second_ % 11)));
      After(1000);
    }
  }

  // Records a drive with records of each kind. Some texts look like markup or are too wide.
  void Patrol() {
    Store().ReportGpsState(true, true);
    Store().ReportStateData(e_Tag_RecordingStarted, true, clock_.tick);
    Seconds(50);
    Store().ReportBookmark(clock_.tick);
    Store().ReportMicPresent(e_MicrophonePosition{1}, true, true, clock_.tick);
    Store().ReportCameraState(e_CameraPort{2}, e_CameraState{1}, true, clock_.tick);
    Store().ReportStateData(e_Tag_CrashDetected, true, clock_.tick);
    Store().ReportStringData(e_Tag_Filler, "</script><script>document.title='!'</script>");
    Store().ReportStringData(e_Tag_Filler, std::string(290, 'x').c_str());
    for (int i = 0; i < 20; ++i) {
      Temperature(20 + i);
      Brakes(i % 2 == 0);
      Seconds(2);
    }
    Store().ReportGpsState(false, true);
    After(20'000);
    Store().ReportGpsState(true, true);
    Seconds(50);
    Store().ReportBookmark(clock_.tick);
    Store().ReportStateData(e_Tag_RecordingStopped, true, clock_.tick);
  }

  // Makes a video of 20 seconds. Returns its path.
  std::string Video(const std::string& name) const {
    const Ran ran =
        RunProgram({"ffmpeg", "-v", "error", "-f", "lavfi", "-i", "testsrc=size=160x120:rate=10:duration=20",
                    "-c:v", "libvpx", "-g", "5", dir_.Path(name)});
    EXPECT_EQ(ran.status, 0) << ran.said;
    return dir_.Path(name);
  }

 private:
  unsigned int second_ = 0;
};

TEST_F(PageTest, IsReadableOnEveryScreen) {
  Open();
  Patrol();
  Close();
  EXPECT_EQ(Check("screens"), "");
}

TEST_F(PageTest, TellsWhatWasRecordedUnderThePointer) {
  Open();
  Patrol();
  Close();
  EXPECT_EQ(Check("pointer"), "");
}

TEST_F(PageTest, IsUsableByKeyboard) {
  Open();
  Patrol();
  Close();
  EXPECT_EQ(Check("keyboard"), "");
}

TEST_F(PageTest, ShowsTheRunThatIsChosen) {
  for (int run = 0; run < 80; ++run) {
    Open();
    Seconds(5);
    Store().ReportBookmark(clock_.tick);
    Close();
  }
  EXPECT_EQ(Check("runs"), "");
}

TEST_F(PageTest, DrawsStepsForWhatIsRecordedOnChange) {
  Open();
  Patrol();
  Close();
  EXPECT_EQ(Check("steps"), "");
}

TEST_F(PageTest, SaysWhereItIsThinned) {
  Open();
  Seconds(6000);
  Close();
  EXPECT_EQ(Check("thinned"), "");
}

TEST_F(PageTest, KeepsVideosAndCursorTogether) {
  if (!IsInstalled("ffmpeg")) GTEST_SKIP() << "ffmpeg is not installed";
  Open();
  After(2000);
  Patrol();
  Close();
  const std::string front = Video("front #1=2.webm");
  const std::string rear = Video("rear.webm");
  EXPECT_EQ(Check("video", {"--video", front, "--video", rear + "=-1.5"}), "");
}

}  // namespace
