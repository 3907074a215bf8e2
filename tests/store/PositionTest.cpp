#include "StoreFixture.h"
#include "items/GpsStatusItem.h"

namespace {

// A reading near Berlin; the tables of cases change what they are about.
GpsStatusItem Position() {
  GpsStatusItem p;
  p.latitudeDegrees = 52;
  p.latitudeMinutes = 31;
  p.latitudeMinuteFraction = 120;
  p.latitudeHemisphere = GpsStatusItem::kNorthOrEast;
  p.longitudeDegrees = 13;
  p.longitudeMinutes = 22;
  p.longitudeMinuteFraction = 6000;
  p.longitudeHemisphere = GpsStatusItem::kNorthOrEast;
  p.utcDate = 20240501;
  p.utcTimeOfDayMs = 43'200'000;
  p.speedDeciKmh = 1234;
  p.speedDeciKnots = 666;
  p.courseDeciDegrees = 905;
  p.satellitesInView = 11;
  p.quality = 1;
  p.fixDimensions = 3;
  p.altitudeDeciMetres = 345;
  p.satellitesUsed = 7;
  p.signalDecibels = -32;
  p.valid = 1;
  return p;
}

TEST_F(StoreTest, APositionIsStoredWhole) {
  Open();
  Store().ReportGps(Position(), 7, true);
  Close();
  EXPECT_EQ(Rows("SELECT sender_tick,event,latitude_e4min,longitude_e4min,altitude_dm,speed_deci_kmh,"
                 "speed_deci_knots,course_deci_deg,quality,fix_dimensions,satellites_used,satellites_in_view,"
                 "signal_db,utc_date,utc_time_ms,valid FROM gps"),
            "7|1|31510120|8026000|345|1234|666|905|1|3|7|11|-32|20240501|43200000|1\n");
}

TEST_F(StoreTest, APositionIsShownForPeople) {
  using Change = void (*)(GpsStatusItem&);
  const Change kChanges[] = {
      [](auto&) {},
      [](auto& p) { p.latitudeHemisphere = p.longitudeHemisphere = 0; },
      [](auto& p) { p.altitudeDeciMetres = GpsStatusItem::kNoAltitude; },
      [](auto& p) { p.altitudeDeciMetres = -4; },
      [](auto& p) { p.quality = 2; },
      [](auto& p) { p.quality = 0xFFFFFFFF; },
      [](auto& p) { p = GpsStatusItem(); },
  };
  Open();
  for (const Change change : kChanges) {
    GpsStatusItem position = Position();
    change(position);
    Store().ReportGps(position, 7, false);
  }
  Close();
  EXPECT_EQ(Rows("SELECT text FROM timeline WHERE source='gps' AND event='initial'"),
            "52.516867 13.376667 34.5 m, 123.4 km/h, course 90.5, fix, 7 satellites\n"
            "-52.516867 -13.376667 34.5 m, 123.4 km/h, course 90.5, fix, 7 satellites\n"
            "52.516867 13.376667, 123.4 km/h, course 90.5, fix, 7 satellites\n"
            "52.516867 13.376667 -0.4 m, 123.4 km/h, course 90.5, fix, 7 satellites\n"
            "52.516867 13.376667 34.5 m, 123.4 km/h, course 90.5, differential, 7 satellites\n"
            "52.516867 13.376667 34.5 m, 123.4 km/h, course 90.5, quality 4294967295, 7 satellites\n"
            "0.000000 0.000000 0.0 m, 0.0 km/h, course 0.0, no fix, 0 satellites\n");
}

}  // namespace
