#pragma once

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <string>

#include "Misc/ProcessInitializer.h"
#include "ScriptedEndpoint.h"

constexpr int kAnyNumber = EIO;  // an error of no meaning

// What a process hands to the frame: writes down what it is asked.
struct Managed {
  bool ready = true;
  bool subscribes = true;

  bool PreInit(LinxIpc& /*ipc*/) {
    script.happened.emplace_back("PreInit");
    return ready;
  }
  bool SubscribeToServers(LinxIpc& /*ipc*/, bool flag) {
    script.happened.emplace_back(flag ? "SubscribeToServers true" : "SubscribeToServers false");
    return subscribes;
  }
  void Shutdown(LinxIpc& /*ipc*/) { script.happened.emplace_back("Shutdown"); }
  void ProcessDied(LinxIpc& /*ipc*/, e_Process process) {
    script.happened.push_back("ProcessDied " + std::to_string(process));
  }
  void ProcessRestarted(LinxIpc& /*ipc*/, e_Process process) {
    script.happened.push_back("ProcessRestarted " + std::to_string(process));
  }
};

// A process's start over the scripted endpoint.
class Frame : public testing::Test {
 protected:
  Frame() {
    script = {};
    gStateMgrName = "StateMgr";
  }
  ~Frame() override { unsetenv("RUN_WITHOUT_STATEMGR"); }

  void WithoutStateMgr() { setenv("RUN_WITHOUT_STATEMGR", "", 1); }

  bool Init(unsigned int logLevel = 255) {
    testing::internal::CaptureStderr();
    const bool ready = initializer_.Init("Frame", logLevel);
    log_ = LogText(testing::internal::GetCapturedStderr());
    return ready;
  }

  // The lines written during Init, without the name they all have.
  Lines Log() const {
    const std::string name = "Common/Misc/ProcessInitializer: ";
    Lines lines = log_;
    for (std::string& line : lines) {
      const std::size_t at = line.find(name);
      EXPECT_NE(at, std::string::npos) << line;
      if (at != std::string::npos) line.erase(at, name.size());
    }
    return lines;
  }

  // What happened, as far as it begins with `what`.
  static Lines Happened(const std::string& what) {
    Lines found;
    for (const std::string& line : script.happened) {
      if (line.starts_with(what)) found.push_back(line);
    }
    return found;
  }

  Managed managed_;
  ProcessInitializer<Managed> initializer_{managed_, e_Process_MetadataMgr};

 private:
  Lines log_;
};
