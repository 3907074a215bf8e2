#pragma once

// Numbers under which speeds and radar readings are reported.
constexpr unsigned char kSourceGps = 1;
constexpr unsigned char kSourceRadar = 2;
constexpr unsigned char kRadarNumber = 1;
