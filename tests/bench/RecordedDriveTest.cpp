// A recording becomes a drive, and the drive the same recording again, except for ticks.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BenchRun.h"
#include "support/Connection.h"

namespace {

using testing::HasSubstr;

const std::string kDrive =
    "before gps fix 10.5 -20.25 0 0 3\n"
    "before config officer Jo_Miller 4711\n"
    "before temp 1 -7\n"
    "0 input lights on siren on\n0.1 record start\n0.2 gps fix -33.9999 151.2 50 90.5 -14.5\n0.3 gps none\n"
    "0.4 radar 54 120 131 128\n0.5 radar none\n0.6 mic 1 present active\n0.7 mic message 2 present idle\n"
    "0.8 camera entries 1 2 0 0 0 2 0 0 0\n0.9 camera 2 1\n1 stream 0 1\n1.1 quality 2 1920x1080 25 6000\n"
    "1.2 live 3 on 2 192.168.1.20 8560 hq\n1.3 live 3 off 2 192.168.1.20 8560\n1.4 temp 3 -40\n1.5 temp 3 "
    "-40\n"
    "1.6 crash on\n1.7 covert on\n1.8 config vehicle unit-12 KV_1234\n1.9 config recording 60 30 640x480 15 "
    "900\n"
    "2 config system recorder 2.1\n2.1 config department Police Night\n2.2 record stop\n2.3 input door on\n"
    "2.5 bookmark\n3 quit\n";

// One query per table; the second column orders the rows.
constexpr const char* kTables[] = {
    "SELECT signal, active FROM state",
    "SELECT valid FROM gps_state",
    "SELECT latitude_e4min, longitude_e4min, altitude_dm, speed_deci_kmh, course_deci_deg FROM gps",
    "SELECT source, speed FROM speed",
    "SELECT source, valid FROM speed_valid",
    "SELECT valid FROM radar_state",
    "SELECT speed1, speed2, speed3 FROM radar",
    "SELECT mic, present FROM mic_present",
    "SELECT mic, active FROM mic_active",
    "SELECT sensor, temperature FROM temperature",
    "SELECT camera, state FROM camera",
    "SELECT stream, state FROM video_stream",
    "SELECT stream, width, height, frames_per_second, bit_rate_kbps FROM stream_quality",
    "SELECT stream, camera, high_quality, enabled, address, port FROM live_stream",
    "SELECT unit_id, license_plate FROM vehicle",
    "SELECT device_name, software_version FROM system_info",
    "SELECT name, division FROM department",
    "SELECT name, badge_number FROM officer",
    "SELECT pre_event_s, post_event_s, width, height FROM recording_settings",
    "SELECT count(*) FROM bookmark",
};

std::string RowsOf(const BenchRun& bench, const std::string& query) {
  return Connection(bench.Recording()).Rows(query + " WHERE event<2 ORDER BY seq");
}

TEST(RecordedDrive, MakesTheSameRowsAgain) {
  BenchRun first;
  first.Drive(kDrive);
  ASSERT_EQ(first.Run(), 0) << first.Output();
  const std::string path = first.Path("again.drive");
  const Ran written = RunVehicleBench({"drive", first.Path("mnt/metadata"), "-o", path});
  ASSERT_EQ(written.status, 0) << written.said;
  BenchRun second;
  second.Drive(TextOfFile(path));
  ASSERT_EQ(second.Run(), 0) << second.Output();
  for (const char* table : kTables) {
    const std::string rows = RowsOf(first, table);
    EXPECT_NE(rows, "") << table;
    EXPECT_EQ(RowsOf(second, table), rows) << table;
  }
}

TEST(RecordedDrive, IsRefusedWithAWord) {
  const TempDir directory;
  const std::string text = directory.Write("text.db", std::string(5000, 'x'));
  const Ran damaged = RunVehicleBench({"drive", text});
  EXPECT_EQ(damaged.status, 1);
  EXPECT_THAT(damaged.said, HasSubstr(text));
  EXPECT_THAT(damaged.said, HasSubstr("no events to make a drive of\n"));
  EXPECT_EQ(damaged.out, "");
}

}  // namespace
