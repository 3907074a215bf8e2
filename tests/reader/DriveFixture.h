#pragma once

#include "ReaderFixture.h"
#include "items/GpsStatusItem.h"

// Makes recordings with positions.
class DriveTest : public ReaderTest {
 protected:
  // Reports a position relative to 42 36' N 71 3' W, in ten-thousandths of a minute.
  void Position(unsigned int north, unsigned int west, std::uint16_t deciKmh = 500) {
    GpsStatusItem fix;
    fix.latitudeDegrees = 42;
    fix.latitudeMinutes = static_cast<std::uint16_t>(36 + north / 10'000);
    fix.latitudeMinuteFraction = north % 10'000;
    fix.latitudeHemisphere = GpsStatusItem::kNorthOrEast;
    fix.longitudeDegrees = 71;
    fix.longitudeMinutes = static_cast<std::uint16_t>(3 + west / 10'000);
    fix.longitudeMinuteFraction = west % 10'000;
    fix.speedDeciKmh = deciKmh;
    fix.quality = 1;
    fix.fixDimensions = 3;
    fix.altitudeDeciMetres = 123;
    fix.satellitesUsed = 9;
    Store().ReportGps(fix, clock_.tick, true);
  }

  // Records two stretches of road with a tunnel between them. A bookmark is on each stretch, and one before
  // any position.
  void TunnelDrive() {
    After(100);
    Store().ReportBookmark(clock_.tick);
    After(900);
    Store().ReportGpsState(true, true);
    Store().ReportStateData(e_Tag_RecordingStarted, true, clock_.tick);
    for (unsigned int i = 0; i < 10; ++i) Second(i);
    Store().ReportBookmark(clock_.tick);
    Store().ReportGpsState(false, true);
    After(20'000);
    Store().ReportGpsState(true, true);
    for (unsigned int i = 10; i < 15; ++i) Second(i);
    Brakes(true);
    Store().ReportBookmark(clock_.tick);
    Second(15);
    Store().ReportStateData(e_Tag_RecordingStopped, true, clock_.tick);
  }

 private:
  void Second(unsigned int number) {
    Position(100 * number, 50 * number);
    After(1000);
  }
};
