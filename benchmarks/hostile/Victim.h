#pragma once

#include <memory>
#include <string>

#include "ipc/LinxIpc.h"
#include "support/Child.h"
#include "support/IpcDir.h"

// The endpoint of the process.
inline const std::string kProcess = "MetadataMgr";

// The memory and descriptors that the process has used since its start.
struct Taken {
  long residentPeakKb = 0;
  int descriptors = 0;
};

// The real MetadataMgr in its main loop. This program is the state manager and the external manager to
// it; the other servers are switched off. A step that fails ends this program.
class Victim {
 public:
  Victim();
  ~Victim();
  Victim(const Victim&) = delete;
  Victim& operator=(const Victim&) = delete;

  Taken Usage() const;
  // Lets it quit: true when it ends as it should.
  bool Quit();
  // How many records of this camera it has recorded; after the end.
  long CameraRecords(unsigned int camera) const;
  // Bytes of its log.
  long LogBytes() const;

 private:
  void LeadToFullRun();

  const IpcDir directory_;
  const std::string sharedName_;
  std::unique_ptr<Child> process_;
  std::unique_ptr<LinxIpc> stateMgr_;
  std::unique_ptr<LinxIpc> externalMgr_;
};

// Ends this program with a complaint unless `holds`.
void Need(bool holds, const char* what);
