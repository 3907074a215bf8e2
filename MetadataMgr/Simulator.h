#pragma once

#include <array>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <optional>

#include "items/GpsStatusItem.h"

// The source of chance: the C library, or a replacement in tests.
struct RandomSource {
  std::time_t (*now)(std::time_t*) = std::time;
  void (*seed)(unsigned int) = std::srand;
  int (*next)() = std::rand;

  // A number from 0 to `limit` - 1. The generator is seeded with the current second each time, so
  // draws within one second repeat: the simulation changes about once a second, however often
  // the main loop turns.
  int Draw(int limit) const;
};

// A number that runs up and down for ever: it turns when a step has taken it above its top or
// below 1.
struct Ramp {
  std::int32_t value;
  std::int32_t step;
  std::int32_t top;
  bool rising = true;

  void Move();
};

// The vehicle that simulator mode invents. Each step draws one number and changes the state by it;
// it writes its changes of the shared record at once. `record` is the record's first byte,
// or null.
struct Simulator {
  void StepInputs();
  void StepGps(unsigned char* record);
  void StepMicrophones();
  // True when the bookmark button was pressed.
  bool DrawBookmark() const;
  void StepRadar(unsigned char* record);

  RandomSource random;
  std::array<bool, 6> inputs{};  // lights, brakes, siren, aux, doorOpen, ignition
  std::array<bool, 4> microphonesActive{};
  std::optional<GpsStatusItem> position;  // from the first step on
  bool gpsFix = false;
  Ramp speed{100, 5, 300};
  bool radarActive = false;
  std::array<Ramp, 4> radarSpeeds{{{0, 1, 150}, {0, 1, 150}, {0, 1, 150}, {0, 1, 150}}};
};

// The one of this process.
extern Simulator gSimulator;
