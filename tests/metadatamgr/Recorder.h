#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Program.h"
#include "support/IpcDir.h"
#include "support/LogText.h"
#include "support/TempDir.h"

constexpr unsigned int kTrouble = 1 | 2 | 16;

// The sources of log lines.
const std::string kManager = "MetadataMgr: ";
const std::string kInitializer = "Common/Misc/ProcessInitializer: ";

// Adds the source to a line: "64 PreInit" becomes "64 MetadataMgr: PreInit".
inline std::string By(const std::string& source, std::string line) {
  return line.insert(line.find(' ') + 1, source);
}

// A MetadataMgr with its own endpoints, disk, shared record and log.
class Recorder {
  IpcDir ipcDirectory_;
  TempDir directory_;

 public:
  Recorder();
  ~Recorder();
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  void Start(const Arguments& arguments = {}, int out = -1);
  // Waits for the end. Returns the exit status, or 128 plus the number of the signal.
  int End() { return program->End(); }

  // The lines logged so far with these masks.
  Lines Log(unsigned int masks = 255) const;

  // Records of the latest recording, oldest first, each as "SOURCE TEXT KIND SENDER-TICK".
  Lines Records(const std::string& where = "1") const;
  // The events since the subscription.
  Lines Events() const {
    return Records(
        "event='event' AND source NOT IN ('clock','run') AND "
        "seq>(SELECT max(seq) FROM timeline WHERE event='restated')");
  }

  std::string IpcDirectory() const { return ipcDirectory_.Beside("ipc"); }
  const TempDir& Directory() const { return directory_; }
  std::string Path(const std::string& name) const { return directory_.Path(name); }
  void Write(const std::string& name, const std::string& content) const { directory_.Write(name, content); }

  // The fields of the shared record.
  std::string SharedRecord() const;

  Environment environment;
  std::unique_ptr<Program> program;
};
