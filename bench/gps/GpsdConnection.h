#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "Words.h"

// A connection to a gpsd that asks it to report in JSON, and connects again when it is gone. Nothing
// blocks.
class GpsdConnection {
 public:
  enum class Input { kNothing, kLine, kGone };

  // "PORT ADDRESS ADDRESS...", in numbers; they are tried in turn.
  explicit GpsdConnection(const std::string& peer);
  ~GpsdConnection();
  GpsdConnection(const GpsdConnection&) = delete;
  GpsdConnection& operator=(const GpsdConnection&) = delete;

  // The next line, without its end. kGone: the connection that stood does so no more.
  Input Read(std::string& line);

 private:
  using Clock = std::chrono::steady_clock;

  void Connect();
  bool FinishConnect();
  bool TakeLine(std::string& line);
  Input Fill();
  Input Lose();

  Words peer_;  // port, addresses
  std::size_t attempts_ = 0;
  Clock::time_point nextAttempt_;
  int fd_ = -1;
  bool connected_ = false;
  bool skipping_ = false;  // the rest of a line that is too long
  std::string received_;
};

// "HOST:PORT" or "[HOST]:PORT" as the constructor takes it. Asks the system for the host's addresses,
// which may take its time. False and why not.
bool ResolveGpsd(const std::string& text, std::string& peer, std::string& error);
