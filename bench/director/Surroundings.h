#pragma once

#include <string>

namespace bench {

// The working directory of a bench, DIR, and the environment of its processes:
//   DIR/mnt  in place of /mnt/hd in the car  METADATA_ROOT
//   DIR/ipc  the endpoints                   LINX_IPC_DIR
//   DIR/log  the log of each process         LOG_TARGET=stderr
//   DIR/sent the messages that were sent     BENCH_SENT, of this run only
// and a shared record of its own (METADATA_SHM). A variable that is already set stays; the bench then neither
// creates nor removes its files.
//
// Where the path of DIR/ipc is too long for sockets, DIR/ipc is a link to a directory under /tmp. The link of
// a killed bench is used again.
class Surroundings {
 public:
  explicit Surroundings(const std::string& directory);
  // Removes the shared record, and the directory under /tmp when this object created it.
  ~Surroundings();
  Surroundings(const Surroundings&) = delete;
  Surroundings& operator=(const Surroundings&) = delete;

  // Creates the directories and sets the variables. On failure returns false and sets `error`.
  bool Prepare(std::string& error);

  // Empties DIR/sent.
  void BeginSentLists() const;

  // Sets LINX_IPC_DIR to the endpoints of the bench that runs in this directory.
  void UseEndpoints() const;

  const std::string& Directory() const { return directory_; }
  std::string LogFile(const std::string& process) const { return directory_ + "/log/" + process + ".log"; }

  // The variables for a process that the user starts, in shell syntax.
  static std::string Settings();

 private:
  bool PrepareEndpoints(std::string& error);

  std::string directory_;  // absolute
  std::string endpointLink_;
  std::string temporary_;
  std::string sharedRecord_;
};

}  // namespace bench
