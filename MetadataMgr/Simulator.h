#pragma once

#include <array>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <optional>

#include "items/GpsStatusItem.h"

// The source of random numbers: the C library, or a replacement in tests.
struct RandomSource {
  std::time_t (*now)(std::time_t*) = std::time;
  void (*seed)(unsigned int) = std::srand;
  int (*next)() = std::rand;

  // Returns a number from 0 to `limit` - 1. Seeds the generator with the current second before each draw, so
  // all draws with the same limit within one second are equal.
  int Draw(int limit) const;
};

// A number that goes up and down: it reverses after a step above `top` or below 1.
struct Ramp {
  std::int32_t value;
  std::int32_t step;
  std::int32_t top;
  bool rising = true;

  void Move();
};

// The simulated vehicle. Each step draws one number and changes the state accordingly. StepGps and StepRadar
// also write the status into the shared record; `record` is its first byte, or null.
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
  std::optional<GpsStatusItem> position;  // set by the first step
  bool gpsFix = false;
  Ramp speed{100, 5, 300};
  bool radarActive = false;
  std::array<Ramp, 4> radarSpeeds{{{0, 1, 150}, {0, 1, 150}, {0, 1, 150}, {0, 1, 150}}};
};

extern Simulator gSimulator;
