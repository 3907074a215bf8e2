#pragma once

#include <deque>
#include <map>
#include <string>

#include "support/LogText.h"

// Another implementation of LinxIpc and IpcMessage, linked in place of the platform's: what arrives is
// scripted, what the process asks of the endpoint is written down, and allocating and sending can be
// made to fail.
struct Arrival {
  int result;
  unsigned int type;
  std::string payload;  // hex
  std::string sender = "StateMgr";
};

struct Script {
  int initResult = 0;
  std::deque<Arrival> arrivals;
  unsigned int cannotAllocate = 0;  // messages of this type
  unsigned int cannotSend = 0;
  bool acceptsSubscriptions = false;  // with items that are zero in every byte

  // In order: "send StateMgr 13232 00000013", "register 1872", "deregister shutdown", ...
  Lines happened = {};
};

// The one script that every endpoint of the program follows. A receive beyond its end is an error.
extern Script script;
constexpr int kScriptEnded = 71;
