#include <arpa/inet.h>

#include "StoreFixture.h"
#include "items/ConfigurationItems.h"
#include "items/VideoMgrStreamQualityItem.h"

namespace {

struct RecordCase {
  const char* name;
  void (*report)(DataStore& store);
  const char* table;
  const char* row;   // sender_tick, event and the table's own columns
  const char* line;  // source, event and text in the timeline
};

const RecordCase kCases[] = {
    {"RecordingStarted", [](DataStore& s) { s.ReportStateData(e_Tag_RecordingStarted, true, 7); }, "state",
     "7|1|70|1", "recording|event|started"},
    {"RecordingStopped", [](DataStore& s) { s.ReportStateData(e_Tag_RecordingStopped, true, 0); }, "state",
     "0|1|70|0", "recording|event|stopped"},
    {"DoorOpenAtFirst", [](DataStore& s) { s.ReportStateData(e_Tag_DoorOpen, false, 0xFFFFFFFF); }, "state",
     "4294967295|0|62|1", "doorOpen|initial|open"},
    {"CrashDetected", [](DataStore& s) { s.ReportStateData(e_Tag_CrashDetected, true, 1); }, "state",
     "1|1|66|1", "crash|event|detected"},
    {"SystemStarted", [](DataStore& s) { s.ReportStateData(e_Tag_Started, true, 0); }, "state", "0|1|64|1",
     "system|event|started"},
    {"TagWithoutName", [](DataStore& s) { s.ReportStateData(e_Tag{0xFFFFFFFF}, true, 1); }, "state",
     "1|1|4294967294|0", "signal 4294967294|event|off"},
    {"Text", [](DataStore& s) { s.ReportStringData(e_Tag_Filler, "it's"); }, "string", "NULL|1|32|it's",
     "filler|event|it's"},
    {"TextThatIsNull", [](DataStore& s) { s.ReportStringData(e_Tag{33}, nullptr); }, "string", "NULL|1|33|",
     "text 33|event|"},
    {"Bookmark", [](DataStore& s) { s.ReportBookmark(123); }, "bookmark", "123|1", "bookmark|event|set"},
    {"GpsFix", [](DataStore& s) { s.ReportGpsState(true, false); }, "gps_state", "NULL|0|1",
     "gps|initial|fix"},
    {"GpsSpeed", [](DataStore& s) { s.ReportSpeed(1, 65535, true, 9, e_Tag_None); }, "speed", "9|1|1|65535|0",
     "speed gps|event|65535"},
    {"SpeedOfAnyone", [](DataStore& s) { s.ReportSpeed(255, 0, false, 9, e_Tag{5}); }, "speed", "9|0|255|0|5",
     "speed 255|initial|0"},
    {"RadarSpeedNotValid", [](DataStore& s) { s.ReportValidSpeed(2, false); }, "speed_valid", "NULL|1|2|0",
     "speed radar|event|not valid"},
    {"RadarState", [](DataStore& s) { s.ReportRadarState(1, false, true); }, "radar_state", "NULL|1|1|0",
     "radar 1|event|no reading"},
    {"Radar",
     [](DataStore& s) { s.ReportRadar(1, 10, 20, 65535, e_RADAR_DIRECTION_Unknown, true, 4, e_Tag_None); },
     "radar", "4|1|1|10|20|65535|0|0", "radar 1|event|10 20 65535"},
    {"RadarWithDirection",
     [](DataStore& s) { s.ReportRadar(1, 1, 2, 3, e_RADAR_DIRECTION{2}, true, 4, e_Tag{6}); }, "radar",
     "4|1|1|1|2|3|2|6", "radar 1|event|1 2 3 direction 2"},
    {"MicPresent", [](DataStore& s) { s.ReportMicPresent(e_MicrophonePosition{3}, true, true, 4); },
     "mic_present", "4|1|3|1", "microphone 3|event|present"},
    {"MicOutOfRange",
     [](DataStore& s) { s.ReportMicState(e_MicrophonePosition{0xFFFFFFFF}, false, true, 4); }, "mic_active",
     "4|1|4294967295|0", "microphone 4294967295|event|not active"},
    {"Temperature", [](DataStore& s) { s.ReportTemp(e_TempSensors{1}, -40, true, 4); }, "temperature",
     "4|1|1|-40", "temperature 1|event|-40"},
    {"Camera", [](DataStore& s) { s.ReportCameraState(e_CameraPort{3}, e_CameraState{2}, true, 4); },
     "camera", "4|1|3|2", "camera 3|event|state 2"},
    {"Stream", [](DataStore& s) { s.ReportVideoStreamState(e_VideoStream{0}, e_StreamState{7}, false, 4); },
     "video_stream", "4|0|0|7", "stream 0|initial|state 7"},
    {"LiveStream",
     [](DataStore& s) {
       s.ReportLvsState(e_VideoStream{5}, 2, true, true, inet_addr("192.168.1.20"), 554, true, 4);
     },
     "live_stream", "4|1|5|2|1|1|3232235796|554",
     "live stream 5|event|on camera 2 high quality to 192.168.1.20:554"},
    {"LiveStreamWithoutAddress",
     [](DataStore& s) { s.ReportLvsState(e_VideoStream{0}, 255, false, false, 0xFFFFFFFF, 0, true, 4); },
     "live_stream", "4|1|0|255|0|0|4294967295|0", "live stream 0|event|off camera 255"},
    {"Mac",
     [](DataStore& s) {
       unsigned char mac[6] = {0x00, 0x1B, 0xC5, 0x0A, 0xFF, 0x09};
       s.ReportMac(mac, false);
     },
     "mac", "NULL|0|00:1b:c5:0a:ff:09", "device|initial|hardware address 00:1b:c5:0a:ff:09"},
    {"Serial", [](DataStore& s) { s.ReportSystemSerialNum("KV-0042"); }, "serial", "NULL|0|KV-0042",
     "device|initial|serial number KV-0042"},
    {"NoSerial", [](DataStore& s) { s.ReportSystemSerialNum(""); }, "serial", "NULL|0|",
     "device|initial|serial number "},
    {"SerialWithNul", [](DataStore& s) { s.ReportSystemSerialNum(std::string("KV\0 42", 6)); }, "serial",
     "NULL|0|KV", "device|initial|serial number KV"},
    {"TextInUtf8", [](DataStore& s) { s.ReportSystemSerialNum("\u00e4\u20ac\U0001F697"); }, "serial",
     "NULL|0|\u00e4\u20ac\U0001F697", "device|initial|serial number \u00e4\u20ac\U0001F697"},
    {"TextThatIsNoUtf8",
     [](DataStore& s) {
       s.ReportSystemSerialNum(
           "a\xFF"
           "b\xC3(\xE0\x80\x80\xED\xA0\x80\xF4\x90\xE2\x82");
     },
     "serial", "NULL|0|a?b?(??????????", "device|initial|serial number a?b?(??????????"},
    {"Version", [](DataStore& s) { s.ReportVersion(e_COMPONENT_Build, "2.7.1"); }, "version",
     "NULL|0|2|2.7.1", "device|initial|version of component 2: 2.7.1"},
    {"Vehicle",
     [](DataStore& s) {
       VehicleInfo vehicle;
       vehicle.unitId = "it's";
       vehicle.licensePlate = "B-KV 42";
       s.ReportVehicleInfo(vehicle, true);
     },
     "vehicle", "NULL|1|it's|B-KV 42", "vehicle|event|unit it's, plate B-KV 42"},
    {"System",
     [](DataStore& s) {
       SystemInfo system;
       system.deviceName = "recorder";
       system.softwareVersion = "2.7.1";
       s.ReportSystemInfo(system, false);
     },
     "system_info", "NULL|0|recorder|2.7.1", "system info|initial|recorder, software 2.7.1"},
    {"Department",
     [](DataStore& s) {
       DepartmentInfo department;
       department.name = "Police";
       department.division = "North";
       s.ReportDepartmentInfo(department, true);
     },
     "department", "NULL|1|Police|North", "department|event|Police, North"},
    {"Officer",
     [](DataStore& s) {
       Officer officer;
       officer.name = "Jo Miller";
       officer.badgeNumber = "007";
       s.ReportOfficerInfo(officer, true);
     },
     "officer", "NULL|1|Jo Miller|007", "officer|event|Jo Miller, badge 007"},
    {"RecordingSettings",
     [](DataStore& s) {
       VideoRecordingSettings settings;
       settings.preEventSeconds = 30;
       settings.postEventSeconds = 60;
       settings.widthPixels = 1280;
       settings.heightPixels = 720;
       settings.framesPerSecond = 25;
       settings.bitRateKbps = 4000;
       s.ReportVideoRecordingSettings(settings, true);
     },
     "recording_settings", "NULL|1|30|60|1280|720|25|4000",
     "recording settings|event|30 s before, 60 s after, 1280x720 25 frames/s 4000 kbit/s"},
    {"CleanEnd", [](DataStore& s) { s.ReportShutdownData(); }, "run_end", "NULL|1", "run|event|clean end"},
};

class RecordTest : public StoreTest, public testing::WithParamInterface<RecordCase> {};

TEST_P(RecordTest, StandsInItsTableAndInTheTimeline) {
  const RecordCase& c = GetParam();
  Open();
  c.report(Store());
  Store().WriteFullState(true);
  Close();

  const std::string table = c.table;
  const std::string row = Rows("SELECT * FROM " + table + " WHERE event<2");
  const std::string seqAndTick = Rows("SELECT seq,tick FROM " + table + " WHERE event<2");
  EXPECT_EQ(row, seqAndTick.substr(0, seqAndTick.size() - 1) + "|" + c.row + "\n");
  const std::string line = std::string(c.line) + "\n";
  const std::string inTable = "seq IN (SELECT seq FROM " + table + ")";
  EXPECT_EQ(Rows("SELECT source,event,text FROM timeline WHERE event<>'restated' AND " + inTable), line);
  std::string restated = line;
  restated.replace(line.find('|') + 1, line.rfind('|') - line.find('|') - 1, "restated");
  if (table == "bookmark" || table == "run_end") restated.clear();  // no state
  EXPECT_EQ(Rows("SELECT source,event,text FROM timeline WHERE event='restated' AND " + inTable), restated);
}

INSTANTIATE_TEST_SUITE_P(Operations, RecordTest, testing::ValuesIn(kCases),
                         [](const auto& param) { return std::string(param.param.name); });

TEST_F(StoreTest, ATextIsCutAtItsBound) {
  Open();
  Store().ReportVersion(e_COMPONENT_Build, std::string(5000, 'v').c_str());
  Store().ReportVersion(e_COMPONENT_Build, (std::string(1022, 'v') + "\u20ac").c_str());
  Close();
  EXPECT_EQ(Rows("SELECT length(version), replace(version,'v','') FROM version"), "1024|\n1022|\n");
}

TEST_F(StoreTest, ANullHardwareAddressIsIgnored) {
  Open();
  Store().ReportMac(nullptr, false);
  Close();
  EXPECT_EQ(Rows("SELECT count(*) FROM mac"), "0\n");
}

TEST_F(StoreTest, RepeatedValuesAreAllKeptInTheOrderReported) {
  Open();
  Brakes(true);
  Brakes(true);
  Temperature(20);
  Brakes(false);
  Close();
  EXPECT_EQ(Rows("SELECT source,text FROM timeline WHERE source<>'clock'"),
            "brakes|on\nbrakes|on\ntemperature 0|20\nbrakes|off\n");
  EXPECT_EQ(Rows("SELECT count(DISTINCT seq), max(seq)-min(seq)+1 FROM timeline"), "5|5\n");
}

TEST_F(StoreTest, EachStreamsQualityIsARecordStampedWithTheItemsTick) {
  Open();
  VideoMgrStreamQualityItem item;
  item.tick = 77;
  item.streams[0] = {1920, 1080, 30, 6000};
  item.streams[3] = {320, 240, 5, 65535};
  Store().ReportStreamQualityItem(item, false);
  item.streams[3].framesPerSecond = 10;
  Store().ReportStreamQualityItem(item, true);
  Store().WriteFullState(true);
  EXPECT_EQ(Rows("SELECT sender_tick,event,stream,width,height,frames_per_second,bit_rate_kbps "
                 "FROM stream_quality WHERE event=0"),
            "77|0|0|1920|1080|30|6000\n77|0|1|0|0|0|0\n77|0|2|0|0|0|0\n77|0|3|320|240|5|65535\n");
  EXPECT_EQ(Rows("SELECT event,text FROM timeline WHERE source='stream 3' AND event<>'initial'"),
            "event|320x240 10 frames/s 65535 kbit/s\nrestated|320x240 10 frames/s 65535 kbit/s\n");
}

TEST_F(StoreTest, TheConfigurationNamesSoftwareAndSettingsInForce) {
  Open();
  Store().ReportConfiguration(false);
  Close();
  EXPECT_EQ(Rows("SELECT name,value FROM configuration WHERE name IN ('user_version','journal_mode',"
                 "'synchronous','page_size','max_file_bytes','commit_after_ms') ORDER BY name"),
            "commit_after_ms|500\njournal_mode|wal\nmax_file_bytes|268435456\npage_size|1024\n"
            "synchronous|2\nuser_version|1\n");
  EXPECT_EQ(Rows("SELECT count(*) FROM configuration WHERE name='software' AND value<>''"), "1\n");
  EXPECT_EQ(Rows("PRAGMA application_id"), std::to_string(0x4D4D4442) + "\n");
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
  Store().ReportBookmark(1);
  Store().WriteFullState(true);
  EXPECT_EQ(Rows("SELECT source,text FROM timeline WHERE event='restated' ORDER BY source"),
            "brakes|off\ndevice|serial number the second\nlights|on\ntemperature 1|8\ntemperature 2|7\n");
  Brakes(true);
  Store().WriteFullState(false);
  EXPECT_EQ(Rows("SELECT text FROM timeline WHERE event='restated' AND source='brakes'"), "off\non\n");
}

TEST_F(StoreTest, SourcesThatAPeerMakesUpAreRecordedButDoNotSwellTheFullState) {
  Open();
  for (unsigned int mic = 0; mic < 1000; ++mic) {
    Store().ReportMicState(e_MicrophonePosition{mic}, true, true, 0);
  }
  Store().WriteFullState(true);
  EXPECT_EQ(Rows("SELECT event,count(*) FROM mic_active GROUP BY event"), "1|1000\n2|64\n");
}

TEST_F(StoreTest, NothingIsTakenUnlessOpen) {
  DataStoreNormal store(dir_.Path("metadata"), options_);
  store.ReportBookmark(1);
  store.WriteFullState(true);
  store.ReportConfiguration(true);
  store.ReportShutdownData();
  store.Close();
  store.TimerTick(5);
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
