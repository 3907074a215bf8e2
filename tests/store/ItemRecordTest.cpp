#include "StoreFixture.h"
#include "items/ConfigurationItems.h"
#include "items/GpsStatusItem.h"
#include "items/VideoMgrStreamQualityItem.h"

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

struct PositionCase {
  const char* name;
  void (*change)(GpsStatusItem& position);
  const char* text;
};
std::ostream& operator<<(std::ostream& out, const PositionCase& c) {
  return out << c.name;
}

class PositionTest : public StoreTest, public testing::WithParamInterface<PositionCase> {};

TEST_P(PositionTest, IsShownForPeople) {
  Open();
  GpsStatusItem position = Position();
  GetParam().change(position);
  Store().ReportGps(position, 7, false);
  Close();
  EXPECT_EQ(Rows("SELECT event,text FROM timeline WHERE source='gps'"),
            std::string("initial|") + GetParam().text + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    Positions, PositionTest,
    testing::Values(
        PositionCase{"NorthEast", [](auto&) {},
                     "52.516867 13.376667 34.5 m, 123.4 km/h, course 90.5, fix, 7 satellites"},
        PositionCase{"SouthWest", [](auto& p) { p.latitudeHemisphere = p.longitudeHemisphere = 0; },
                     "-52.516867 -13.376667 34.5 m, 123.4 km/h, course 90.5, fix, 7 satellites"},
        PositionCase{"AltitudeNotKnown", [](auto& p) { p.altitudeDeciMetres = GpsStatusItem::kNoAltitude; },
                     "52.516867 13.376667, 123.4 km/h, course 90.5, fix, 7 satellites"},
        PositionCase{"BelowTheSea", [](auto& p) { p.altitudeDeciMetres = -4; },
                     "52.516867 13.376667 -0.4 m, 123.4 km/h, course 90.5, fix, 7 satellites"},
        PositionCase{"Differential", [](auto& p) { p.quality = 2; },
                     "52.516867 13.376667 34.5 m, 123.4 km/h, course 90.5, differential, 7 satellites"},
        PositionCase{"OtherQuality", [](auto& p) { p.quality = 0xFFFFFFFF; },
                     "52.516867 13.376667 34.5 m, 123.4 km/h, course 90.5, quality 4294967295, 7 satellites"},
        PositionCase{"Nothing", [](auto& p) { p = GpsStatusItem(); },
                     "0.000000 0.000000 0.0 m, 0.0 km/h, course 0.0, no fix, 0 satellites"}),
    [](const auto& param) { return std::string(param.param.name); });

TEST_F(StoreTest, EachStreamsQualityIsARecordStampedWithTheItemsTick) {
  Open();
  VideoMgrStreamQualityItem item;
  item.tick = 77;
  item.streams[0] = {1920, 1080, 30, 6000};
  item.streams[3] = {320, 240, 5, 65535};
  Store().ReportStreamQualityItem(item, false);
  item.streams[3].framesPerSecond = 10;
  Store().ReportStreamQualityItem(item, true);
  Close();
  EXPECT_EQ(Rows("SELECT sender_tick,event,stream,width,height,frames_per_second,bit_rate_kbps "
                 "FROM stream_quality WHERE event=0"),
            "77|0|0|1920|1080|30|6000\n77|0|1|0|0|0|0\n77|0|2|0|0|0|0\n77|0|3|320|240|5|65535\n");
  EXPECT_EQ(Rows("SELECT source,text FROM timeline WHERE event='event' AND source='stream 3'"),
            "stream 3|320x240 10 frames/s 65535 kbit/s\n");
}

// The configuration records, with two values each.
void ReportConfigurationRecords(DataStore& store, const char* text, std::uint16_t number) {
  VehicleInfo vehicle;
  vehicle.unitId = text;
  vehicle.licensePlate = "B-KV 42";
  store.ReportVehicleInfo(vehicle, true);
  SystemInfo system;
  system.deviceName = text;
  system.softwareVersion = "2.7.1";
  store.ReportSystemInfo(system, true);
  DepartmentInfo department;
  department.name = text;
  department.division = "North";
  store.ReportDepartmentInfo(department, true);
  Officer officer;
  officer.name = text;
  officer.badgeNumber = "007";
  store.ReportOfficerInfo(officer, true);
  VideoRecordingSettings settings;
  settings.preEventSeconds = number;
  settings.postEventSeconds = 60;
  settings.widthPixels = 1280;
  settings.heightPixels = 720;
  settings.framesPerSecond = 25;
  settings.bitRateKbps = 4000;
  store.ReportVideoRecordingSettings(settings, true);
}

TEST_F(StoreTest, ConfigurationRecordsAreStoredWhole) {
  Open();
  ReportConfigurationRecords(Store(), "it's", 30);
  Close();
  const char* const header = "SELECT ifnull(sender_tick,'none'),event,";
  EXPECT_EQ(Rows(std::string(header) + "unit_id,license_plate FROM vehicle"), "none|1|it's|B-KV 42\n");
  EXPECT_EQ(Rows(std::string(header) + "device_name,software_version FROM system_info"),
            "none|1|it's|2.7.1\n");
  EXPECT_EQ(Rows(std::string(header) + "name,division FROM department"), "none|1|it's|North\n");
  EXPECT_EQ(Rows(std::string(header) + "name,badge_number FROM officer"), "none|1|it's|007\n");
  EXPECT_EQ(
      Rows(std::string(header) + "pre_event_s,post_event_s,width,height,frames_per_second,bit_rate_kbps "
                                 "FROM recording_settings"),
      "none|1|30|60|1280|720|25|4000\n");
}

TEST_F(StoreTest, TheFullStateHasTheLastOfEachItem) {
  Open();
  ReportConfigurationRecords(Store(), "first", 1);
  ReportConfigurationRecords(Store(), "the second", 2);
  GpsStatusItem position = Position();
  Store().ReportGps(position, 7, true);
  position.speedDeciKmh = 0;
  Store().ReportGps(position, 8, true);
  VideoMgrStreamQualityItem quality;
  quality.streams[1].bitRateKbps = 5;
  Store().ReportStreamQualityItem(quality, true);
  Store().WriteFullState(true);
  EXPECT_EQ(Rows("SELECT source,text FROM timeline WHERE event='restated' ORDER BY seq"),
            "gps|52.516867 13.376667 34.5 m, 0.0 km/h, course 90.5, fix, 7 satellites\n"
            "stream 0|0x0 0 frames/s 0 kbit/s\nstream 1|0x0 0 frames/s 5 kbit/s\n"
            "stream 2|0x0 0 frames/s 0 kbit/s\nstream 3|0x0 0 frames/s 0 kbit/s\n"
            "vehicle|unit the second, plate B-KV 42\nsystem info|the second, software 2.7.1\n"
            "department|the second, North\nofficer|the second, badge 007\n"
            "recording settings|2 s before, 60 s after, 1280x720 25 frames/s 4000 kbit/s\n");
}

}  // namespace
