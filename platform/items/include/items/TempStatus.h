#pragma once

#include "items/RecordItem.h"

// The four temperatures in degrees Celsius, in the order of the encoding: sensors 3, 2, 1, 0.
class TempStatus : public RecordItem<TempStatus> {
 public:
  std::int16_t sensor3Celsius = 0;
  std::int16_t sensor2Celsius = 0;
  std::int16_t sensor1Celsius = 0;
  std::int16_t sensor0Celsius = 0;
  std::uint32_t tick = 0;

  static constexpr auto Fields() {
    return std::make_tuple(&TempStatus::sensor3Celsius, &TempStatus::sensor2Celsius,
                           &TempStatus::sensor1Celsius, &TempStatus::sensor0Celsius, &TempStatus::tick);
  }
};
