#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "store/StoreFixture.h"
#include "support/Child.h"
#include "support/Program.h"

inline Ran Metadata(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), METADATA_PROGRAM);
  return RunProgram(arguments);
}

// A store, and the reader that reads its recordings.
class ReaderTest : public StoreTest {
 protected:
  ReaderTest() { alters_ = true; }

  // Records a drive of two seconds that begins 100 ms after the run.
  void Drive() {
    After(100);
    Store().ReportStateData(e_Tag_RecordingStarted, true, clock_.tick);
    Brakes(true);
    Store().ReportSpeed(1, 50, true, clock_.tick - 20, e_Tag_None);
    Store().ReportCameraState(e_CameraPort{2}, e_CameraState{1}, false, 0xFFFFFFFF);
    Store().ReportStringData(e_Tag_Filler, "a \"quoted\", cut\nline \xC3\xA9\x1B[2J");
    After(1000);
    Store().ReportBookmark(clock_.tick - 300);
    Temperature(-40);
    Brakes(false);
    After(1000);
    Store().ReportStateData(e_Tag_RecordingStopped, true, clock_.tick);
    Store().ReportBookmark(clock_.tick);
  }

  Ran Dump(std::vector<std::string> options, int file = 1) const {
    options.insert(options.begin(), {"dump", File(file)});
    return Metadata(options);
  }
};
