#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "MetadataMgr.h"
#include "RecordingStore.h"
#include "StreamingLvsStateItem.h"
#include "items/ConfigurationItems.h"
#include "items/GpsStatusItem.h"
#include "items/MicStatusResponse.h"
#include "items/RadarItem.h"
#include "items/TempStatus.h"
#include "items/VideoMgrCameraItem.h"
#include "items/VideoMgrStreamQualityItem.h"
#include "log/LogLine.h"
#include "support/LogCapture.h"
#include "support/LogText.h"

// 32-bit big-endian words, as bytes.
template <typename... Numbers>
std::string Words(Numbers... numbers) {
  std::string bytes;
  for (const unsigned int number : {static_cast<unsigned int>(numbers)...}) {
    unsigned char word[4];
    PutU32(word, number);
    bytes.append(word, word + 4);
  }
  return bytes;
}

inline std::string Encoded(const Item& item) {
  std::string bytes(item.Size(), '\0');
  (void)item.Encode(reinterpret_cast<unsigned char*>(bytes.data()));
  return bytes;
}

// A manager whose handlers are called directly.
class EventsTest : public testing::Test {
 protected:
  EventsTest() {
    gStoreTick = 77;
    LogClient::Instance().Level(255);
  }

  // Delivers a message; afterwards StoreCalls() and Log() tell what came of it.
  void Deliver(LinxIpc::Handler handler, std::string payload) {
    StoreCalls().clear();
    const LogCapture capture;
    (void)ipc_.CurrentMessage().Allocate(1, static_cast<unsigned int>(payload.size()), payload.data());
    handler(&ipc_, &manager_);
    log_ = LogText(capture.Text());
    for (std::string& line : log_) {
      const std::size_t source = line.find("MetadataMgr: ");
      if (source != std::string::npos) line.erase(source, std::string("MetadataMgr: ").size());
    }
  }

  // The lines of the last delivery as "MASK TEXT".
  const std::vector<std::string>& Log() const { return log_; }

  LinxIpc ipc_{"Test"};
  MetadataMgr manager_;

 private:
  std::vector<std::string> log_;
};
