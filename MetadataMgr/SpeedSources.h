#pragma once

// Source numbers in the reports of speeds and radar readings.
constexpr unsigned char kSourceGps = 1;
constexpr unsigned char kSourceRadar = 2;
constexpr unsigned char kRadarNumber = 1;
