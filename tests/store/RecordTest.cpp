#include <arpa/inet.h>

#include "Items.h"
#include "Row.h"
#include "StoreFixture.h"
#include "items/ConfigurationItems.h"

namespace {

// Values that do not fit the table do not compile.
template <typename... Values>
constexpr bool kIsSpeed = std::is_constructible_v<store::Row<store::kSpeedTable>, Values...>;
static_assert(kIsSpeed<int, unsigned short, e_Tag>);
static_assert(!kIsSpeed<int, int>, "a value is missing");
static_assert(!kIsSpeed<int, int, int, int>, "a value too many");
static_assert(!kIsSpeed<int, int, std::string>, "a text for a number");
static_assert(!std::is_constructible_v<store::Row<store::kSerialTable>, int>, "a number for a text");

// Its date is too old to set the clock.
GpsStatusItem Position() {
  return With<GpsStatusItem>(52, 31, 120, 1, 13, 22, 6000, 1, 20230501, 1234, 666, 905, 11, 1, 3, 345, 7, -32,
                             43'200'000, 1, 0);
}

struct Case {
  void (*report)(DataStore& s);
  const char* table;
  const char* row;   // sender_tick, event and the other columns of the table
  const char* line;  // source, event and text in the timeline
};

const Case kReports[] = {
    {[](auto& s) { s.ReportStateData(e_Tag_RecordingStopped, true, 7); }, "state", "7|1|70|0",
     "recording|event|stopped"},
    {[](auto& s) { s.ReportStateData(e_Tag_DoorOpen, false, 0xFFFFFFFF); }, "state", "4294967295|0|62|1",
     "doorOpen|initial|open"},
    {[](auto& s) { s.ReportStateData(e_Tag{0xFFFFFFFF}, true, 0); }, "state", "0|1|4294967294|0",
     "signal 4294967294|event|off"},
    {[](auto& s) { s.ReportStringData(e_Tag_Filler, "it's"); }, "string", "NULL|1|32|it's",
     "filler|event|it's"},
    {[](auto& s) { s.ReportStringData(e_Tag{33}, nullptr); }, "string", "NULL|1|33|", "text 33|event|"},
    {[](auto& s) { s.ReportBookmark(123); }, "bookmark", "123|1", "bookmark|event|set"},
    {[](auto& s) { s.ReportGpsState(true, false); }, "gps_state", "NULL|0|1", "gps|initial|fix"},
    {[](auto& s) { s.ReportGps(Position(), 7, true); }, "gps",
     "7|1|31510120|8026000|345|1234|666|905|1|3|7|11|-32|20230501|43200000|1",
     "gps|event|52.516867 13.376667 34.5 m, 123.4 km/h, course 90.5, fix, 7 satellites"},
    {[](auto& s) { s.ReportSpeed(1, 65535, true, 9, e_Tag_None); }, "speed", "9|1|1|65535|0",
     "speed gps|event|65535"},
    {[](auto& s) { s.ReportSpeed(255, 0, false, 9, e_Tag{5}); }, "speed", "9|0|255|0|5",
     "speed 255|initial|0"},
    {[](auto& s) { s.ReportValidSpeed(2, false); }, "speed_valid", "NULL|1|2|0",
     "speed radar|event|not valid"},
    {[](auto& s) { s.ReportRadarState(1, false, true); }, "radar_state", "NULL|1|1|0",
     "radar 1|event|no reading"},
    {[](auto& s) { s.ReportRadar(1, 10, 20, 65535, e_RADAR_DIRECTION{0}, true, 4, e_Tag_None); }, "radar",
     "4|1|1|10|20|65535|0|0", "radar 1|event|10 20 65535"},
    {[](auto& s) { s.ReportRadar(2, 1, 2, 3, e_RADAR_DIRECTION{2}, true, 4, e_Tag{6}); }, "radar",
     "4|1|2|1|2|3|2|6", "radar 2|event|1 2 3 direction 2"},
    {[](auto& s) { s.ReportMicPresent(e_MicrophonePosition{3}, true, true, 4); }, "mic_present", "4|1|3|1",
     "microphone 3|event|present"},
    {[](auto& s) { s.ReportMicState(e_MicrophonePosition{0xFFFFFFFF}, false, true, 4); }, "mic_active",
     "4|1|4294967295|0", "microphone 4294967295|event|not active"},
    {[](auto& s) { s.ReportTemp(e_TempSensors{1}, -40, true, 4); }, "temperature", "4|1|1|-40",
     "temperature 1|event|-40"},
    {[](auto& s) { s.ReportCameraState(e_CameraPort{3}, e_CameraState{2}, true, 4); }, "camera", "4|1|3|2",
     "camera 3|event|state 2"},
    {[](auto& s) { s.ReportVideoStreamState(e_VideoStream{0}, e_StreamState{7}, false, 4); }, "video_stream",
     "4|0|0|7", "stream 0|initial|state 7"},
    {[](auto& s) {
       s.ReportLvsState(e_VideoStream{5}, 2, true, true, inet_addr("192.168.1.20"), 554, true, 4);
     },
     "live_stream", "4|1|5|2|1|1|3232235796|554",
     "live stream 5|event|on camera 2 high quality to 192.168.1.20:554"},
    {[](auto& s) { s.ReportLvsState(e_VideoStream{0}, 255, false, false, 0xFFFFFFFF, 0, true, 4); },
     "live_stream", "4|1|0|255|0|0|4294967295|0", "live stream 0|event|off camera 255"},
    {[](auto& s) {
       unsigned char mac[6] = {0x00, 0x1B, 0xC5, 0x0A, 0xFF, 0x09};
       s.ReportMac(mac, false);
     },
     "mac", "NULL|0|00:1b:c5:0a:ff:09", "device|initial|hardware address 00:1b:c5:0a:ff:09"},
    {[](auto& s) { s.ReportSystemSerialNum(std::string("\u00e4\u20ac\U0001F697\0 42", 13)); }, "serial",
     "NULL|0|\u00e4\u20ac\U0001F697", "device|initial|serial number \u00e4\u20ac\U0001F697"},
    {[](auto& s) { s.ReportVersion(e_COMPONENT_Build, "\xC3(\xE0\x80\x80\xED\xA0\x80\xF4\x90\xE2\x82"); },
     "version", "NULL|0|2|?(??????????", "device|initial|version of component 2: ?(??????????"},
    {[](auto& s) { s.ReportVehicleInfo(With<VehicleInfo>("it's", "B-KV 42"), true); }, "vehicle",
     "NULL|1|it's|B-KV 42", "vehicle|event|unit it's, plate B-KV 42"},
    {[](auto& s) { s.ReportSystemInfo(With<SystemInfo>("recorder", "2.7.1"), false); }, "system_info",
     "NULL|0|recorder|2.7.1", "system info|initial|recorder, software 2.7.1"},
    {[](auto& s) { s.ReportDepartmentInfo(With<DepartmentInfo>("Police", "North"), true); }, "department",
     "NULL|1|Police|North", "department|event|Police, North"},
    {[](auto& s) { s.ReportOfficerInfo(With<Officer>("Jo Miller", "007"), true); }, "officer",
     "NULL|1|Jo Miller|007", "officer|event|Jo Miller, badge 007"},
    {[](auto& s) {
       s.ReportVideoRecordingSettings(With<VideoRecordingSettings>(30, 60, 1280, 720, 25, 4000), true);
     },
     "recording_settings", "NULL|1|30|60|1280|720|25|4000",
     "recording settings|event|30 s before, 60 s after, 1280x720 25 frames/s 4000 kbit/s"},
    {[](auto& s) { s.ReportTemp(e_TempSensors{1}, -40, true, 4); }, "temperature", "4|1|1|-40",
     "temperature 1|event|-40"},  // the value is unchanged, but recorded again
    {[](auto& s) { s.ReportShutdownData(); }, "run_end", "NULL|1", "run|event|clean end"},
};

TEST_F(StoreTest, EachReportIsARowOfItsTableALineOfTheTimelineAndPartOfTheFullState) {
  Open();
  Store().ReportMac(nullptr, false);  // ignored
  for (const Case& c : kReports) c.report(Store());
  Store().WriteFullState(true);
  int seq = 1;  // the record of the clock
  for (const Case& c : kReports) {
    const std::string number = std::to_string(++seq);
    const std::string where = " WHERE seq=" + number;
    EXPECT_EQ(Rows("SELECT * FROM " + std::string(c.table) + where), number + "|10000|" + c.row + "\n");
    EXPECT_EQ(Rows("SELECT source,event,text FROM timeline" + where), std::string(c.line) + "\n");
  }
  const std::string restated = "SELECT source,text FROM timeline WHERE event='restated'";
  const std::string noStates = " IN ('clock','bookmark','run')";
  EXPECT_EQ(Rows("SELECT source,text FROM timeline WHERE NOT source" + noStates + " EXCEPT " + restated), "");
  EXPECT_EQ(Rows(restated + " AND source" + noStates), "");
}

TEST_F(StoreTest, APositionIsShownForPeople) {
  using Change = void (*)(GpsStatusItem&);
  const Change kChanges[] = {
      [](auto& p) { p.latitudeHemisphere = p.longitudeHemisphere = 0; },
      [](auto& p) { p.altitudeDeciMetres = -4, p.quality = 2; },
      [](auto& p) { p.altitudeDeciMetres = GpsStatusItem::kNoAltitude, p.quality = 0xFFFFFFFF; },
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
            "-52.516867 -13.376667 34.5 m, 123.4 km/h, course 90.5, fix, 7 satellites\n"
            "52.516867 13.376667 -0.4 m, 123.4 km/h, course 90.5, differential, 7 satellites\n"
            "52.516867 13.376667, 123.4 km/h, course 90.5, quality 4294967295, 7 satellites\n"
            "0.000000 0.000000 0.0 m, 0.0 km/h, course 0.0, no fix, 0 satellites\n");
}

TEST_F(StoreTest, ATextIsCutAtItsBound) {
  Open();
  Store().ReportVersion(e_COMPONENT_Build, std::string(5000, 'v').c_str());
  Store().ReportVersion(e_COMPONENT_Build, (std::string(1022, 'v') + "\u20ac").c_str());
  Close();
  EXPECT_EQ(Rows("SELECT length(version), replace(version,'v','') FROM version"), "1024|\n1022|\n");
}

TEST_F(StoreTest, TheConfigurationNamesSoftwareAndSettingsInForce) {
  Open();
  Store().ReportConfiguration(false);
  Close();
  EXPECT_EQ(Rows("SELECT name,value FROM configuration WHERE name IN ('user_version','journal_mode',"
                 "'synchronous','page_size','max_file_bytes','commit_after_ms') ORDER BY name"),
            "commit_after_ms|500\njournal_mode|wal\nmax_file_bytes|268435456\npage_size|1024\n"
            "synchronous|2\nuser_version|2\n");
  EXPECT_EQ(Rows("SELECT count(*) FROM configuration WHERE name='software' AND value<>''"), "1\n");
}

TEST_F(StoreTest, TheFullStateIsTheLastValueOfEverySource) {
  Open();
  Brakes(true);
  Brakes(false);
  Store().ReportStateData(e_Tag_LightsOn, false, 5);
  Store().ReportTemp(e_TempSensors{2}, 7, true, 5);
  Store().ReportTemp(e_TempSensors{1}, 8, true, 5);
  Store().ReportSystemSerialNum("first");
  Store().ReportSystemSerialNum("the second");
  for (unsigned int mic = 0; mic < 1000; ++mic) {  // invented by a peer; the store keeps only some
    Store().ReportMicState(e_MicrophonePosition{mic}, true, true, 0);
  }
  Store().WriteFullState(true);
  EXPECT_EQ(Rows("SELECT source,text FROM timeline WHERE event='restated' AND source NOT LIKE 'mic%' "
                 "ORDER BY source"),
            "brakes|off\ndevice|serial number the second\nlights|on\ntemperature 1|8\ntemperature 2|7\n");
  EXPECT_EQ(Rows("SELECT event,count(*) FROM mic_active GROUP BY event"), "1|1000\n2|64\n");
  Brakes(true);
  Store().WriteFullState(false);
  EXPECT_EQ(Rows("SELECT text FROM timeline WHERE event='restated' AND source='brakes'"), "off\non\n");
}

TEST_F(StoreTest, NothingIsTakenUnlessOpen) {
  DataStoreNormal store(dir_.Path("metadata"), options_);
  EXPECT_EQ(store.GetCurrentSystemTick(), 0xFFFFFFFFU);
  store.ReportBookmark(1);
  store.WriteFullState(true);
  store.ReportConfiguration(true);
  store.ReportShutdownData();
  store.Close();
  store.TimerTick(5);
  store.TimerTick(0xFFFFFFFF);
  EXPECT_EQ(store.GetCurrentSystemTick(), 5U);
  ASSERT_TRUE(store.Open());
  EXPECT_TRUE(store.Open());
  store.Close();
  store.ReportGpsState(true, true);
  ASSERT_TRUE(store.Open());
  store.Close();
  for (const char* name : {"metadata.000001.db", "metadata.000002.db"}) {
    EXPECT_EQ(Connection(dir_.Path(name)).Rows("SELECT source FROM timeline"), "clock\n") << name;
  }
}

}  // namespace
