#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "Words.h"

namespace bench {

// A connection to a gpsd: requests reports in JSON, and reconnects when the connection is lost. Never blocks.
class GpsdConnection {
 public:
  enum class Input { kNothing, kLine, kGone };

  // `peer` is "PORT ADDRESS ADDRESS...", all numeric. The addresses are tried in turn.
  explicit GpsdConnection(const std::string& peer);
  ~GpsdConnection();
  GpsdConnection(const GpsdConnection&) = delete;
  GpsdConnection& operator=(const GpsdConnection&) = delete;

  // Reads the next line, without its end. kGone: the connection is lost.
  Input Read(std::string& line);

  // The address of the last attempt, as "ADDRESS:PORT".
  std::string Address() const;
  // Failed attempts since the last connection.
  std::size_t Failures() const { return failures_; }

 private:
  using Clock = std::chrono::steady_clock;

  void Connect();
  bool FinishConnect();
  bool TakeLine(std::string& line);
  Input Fill();
  Input Lose();

  Words peer_;  // port, addresses
  std::size_t attempts_ = 0;
  std::size_t failures_ = 0;
  Clock::time_point nextAttempt_;
  int fd_ = -1;
  bool connected_ = false;
  bool skipping_ = false;  // drops the rest of a line that is too long
  std::string received_;
};

// Turns "HOST:PORT" or "[HOST]:PORT" into a `peer` for the constructor. Looks up the host's addresses, which
// may block. On failure returns false and sets `error`.
bool ResolveGpsd(const std::string& text, std::string& peer, std::string& error);

}  // namespace bench
