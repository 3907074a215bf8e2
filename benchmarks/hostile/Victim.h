#pragma once

#include <memory>
#include <string>

#include "ipc/LinxIpc.h"
#include "support/Child.h"
#include "support/IpcDir.h"

// The endpoint name of the process.
inline const std::string kProcess = "MetadataMgr";

// Peak memory since the start of the process, and open descriptors.
struct Taken {
  long residentPeakKb = 0;
  int descriptors = 0;
};

// The real MetadataMgr in its main loop. This program plays the state manager and the external manager; the
// other servers are switched off. A failed step ends this program.
class Victim {
 public:
  Victim();
  ~Victim();
  Victim(const Victim&) = delete;
  Victim& operator=(const Victim&) = delete;

  Taken Usage() const;
  // Requests a shutdown; true when the process exits with status 0.
  bool Quit();
  // The number of recorded changes of this camera; call it after Quit.
  long CameraRecords(unsigned int camera) const;
  long LogBytes() const;

 private:
  void LeadToFullRun();

  const IpcDir directory_;
  const std::string sharedName_;
  std::unique_ptr<Child> process_;
  std::unique_ptr<LinxIpc> stateMgr_;
  std::unique_ptr<LinxIpc> externalMgr_;
};

// Prints an error and exits unless `holds`.
void Need(bool holds, const char* what);
