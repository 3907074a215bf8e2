#pragma once

#include <string>

namespace bench {

// The directory in which a bench works, DIR, and the environment of its processes:
//   DIR/mnt  in place of /mnt/hd in the car  METADATA_ROOT
//   DIR/ipc  the endpoints                   LINX_IPC_DIR
//   DIR/log  the log of each process         LOG_TARGET=stderr
//   DIR/sent lists of what was sent          BENCH_SENT, of this run only
// and a shared record of its own (METADATA_SHM). Variables that are set already are used; the bench then
// neither creates nor removes their files.
//
// Where the path of DIR/ipc is too long for sockets, it is a link to a directory under /tmp; one
// that a killed bench left behind is used again.
class Surroundings {
 public:
  explicit Surroundings(const std::string& directory);
  // Removes the shared record, and the directory under /tmp if it created it.
  ~Surroundings();
  Surroundings(const Surroundings&) = delete;
  Surroundings& operator=(const Surroundings&) = delete;

  // Creates directories and sets the variables. Returns false and sets `error` when it fails.
  bool Prepare(std::string& error);

  // Empties DIR/sent.
  void BeginSentLists() const;

  // Sets LINX_IPC_DIR to where a bench that runs in this directory has its endpoints.
  void UseEndpoints() const;

  const std::string& Directory() const { return directory_; }
  std::string LogFile(const std::string& process) const { return directory_ + "/log/" + process + ".log"; }

  // The variables and values that a process started by hand needs, as a shell takes them.
  static std::string Settings();

 private:
  bool PrepareEndpoints(std::string& error);

  std::string directory_;  // absolute
  std::string endpointLink_;
  std::string temporary_;
  std::string sharedRecord_;
};

}  // namespace bench
