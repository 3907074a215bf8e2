#include "RecordingStore.h"

#include <sstream>

#include "items/ConfigurationItems.h"
#include "items/GpsStatusItem.h"
#include "items/VideoMgrStreamQualityItem.h"
#include "store/DataStoreNormal.h"
#include "support/Hex.h"
#include "system/Systick.h"
#include "system/Watchdog.h"

unsigned int gStoreTick = 0;
unsigned int gSystemTick = 70'000;

std::vector<std::string>& StoreCalls() {
  static std::vector<std::string> calls;
  return calls;
}

namespace {

const char* Flag(bool report) {
  return report ? "event" : "initial";
}

template <typename... Parts>
void Keep(const Parts&... parts) {
  std::ostringstream line;
  const char* separator = "";
  ((line << separator << parts, separator = " "), ...);
  StoreCalls().push_back(line.str());
}

}  // namespace

class DataStoreNormal::Store {};

DataStoreNormal::DataStoreNormal(const std::string& /*path*/) {}
DataStoreNormal::~DataStoreNormal() = default;
bool DataStoreNormal::Open() {
  Keep("Open");
  return true;
}
void DataStoreNormal::Close() {
  Keep("Close");
}
void DataStoreNormal::TimerTick(unsigned int tick) {
  Keep("TimerTick", tick);
}
unsigned int DataStoreNormal::GetCurrentSystemTick() {
  return gStoreTick;
}
void DataStoreNormal::ReportShutdownDataAtStartup() {
  Keep("ShutdownDataAtStartup");
}
void DataStoreNormal::ReportShutdownData() {
  Keep("ShutdownData");
}
void DataStoreNormal::ReportConfiguration(bool report) {
  Keep("Configuration", Flag(report));
}
void DataStoreNormal::WriteFullState(bool report) {
  Keep("FullState", report);
}
void DataStoreNormal::ReportMac(unsigned char* mac, bool report) {
  Keep("Mac", ToHex({reinterpret_cast<const char*>(mac), 6}), Flag(report));
}
void DataStoreNormal::ReportSystemSerialNum(const std::string& serial) {
  Keep("SerialNum", serial);
}
void DataStoreNormal::ReportVersion(e_COMPONENT component, const char* version) {
  Keep("Version", unsigned{component}, version);
}
void DataStoreNormal::ReportStateData(e_Tag tag, bool report, unsigned int tick) {
  Keep("StateData", unsigned{tag}, Flag(report), tick);
}
void DataStoreNormal::ReportBookmark(unsigned int tick) {
  Keep("Bookmark", tick);
}
void DataStoreNormal::ReportStringData(e_Tag tag, const char* text) {
  Keep("StringData", unsigned{tag}, text);
}
void DataStoreNormal::ReportGpsState(bool valid, bool report) {
  Keep("GpsState", valid, Flag(report));
}
void DataStoreNormal::ReportGps(const GpsStatusItem& position, unsigned int tick, bool report) {
  Keep("Gps", position.latitudeDegrees, position.latitudeMinutes, position.latitudeMinuteFraction,
       position.longitudeDegrees, position.longitudeMinutes, position.longitudeMinuteFraction,
       position.quality, Flag(report), tick);
}
void DataStoreNormal::ReportSpeed(unsigned char source, unsigned short speed, bool report, unsigned int tick,
                                  e_Tag tag) {
  Keep("Speed", unsigned{source}, speed, Flag(report), tick, unsigned{tag});
}
void DataStoreNormal::ReportValidSpeed(unsigned char source, bool valid) {
  Keep("ValidSpeed", unsigned{source}, valid);
}
void DataStoreNormal::ReportRadarState(unsigned char radar, bool valid, bool report) {
  Keep("RadarState", unsigned{radar}, valid, Flag(report));
}
void DataStoreNormal::ReportRadar(unsigned char radar, unsigned short speed1, unsigned short speed2,
                                  unsigned short speed3, e_RADAR_DIRECTION direction, bool report,
                                  unsigned int tick, e_Tag tag) {
  Keep("Radar", unsigned{radar}, speed1, speed2, speed3, unsigned{direction}, Flag(report), tick,
       unsigned{tag});
}
void DataStoreNormal::ReportMicPresent(e_MicrophonePosition mic, bool present, bool report,
                                       unsigned int tick) {
  Keep("MicPresent", unsigned{mic}, present, Flag(report), tick);
}
void DataStoreNormal::ReportMicState(e_MicrophonePosition mic, bool active, bool report, unsigned int tick) {
  Keep("MicState", unsigned{mic}, active, Flag(report), tick);
}
void DataStoreNormal::ReportTemp(e_TempSensors sensor, short temperature, bool report, unsigned int tick) {
  Keep("Temp", unsigned{sensor}, temperature, Flag(report), tick);
}
void DataStoreNormal::ReportCameraState(e_CameraPort camera, e_CameraState state, bool report,
                                        unsigned int tick) {
  Keep("Camera", unsigned{camera}, unsigned{state}, Flag(report), tick);
}
void DataStoreNormal::ReportVideoStreamState(e_VideoStream stream, e_StreamState state, bool report,
                                             unsigned int tick) {
  Keep("VideoStream", unsigned{stream}, unsigned{state}, Flag(report), tick);
}
void DataStoreNormal::ReportStreamQualityItem(VideoMgrStreamQualityItem& quality, bool report) {
  Keep("StreamQuality", quality.streams[0].widthPixels, Flag(report), quality.tick);
}
void DataStoreNormal::ReportLvsState(e_VideoStream stream, unsigned char camera, bool highQuality,
                                     bool enabled, unsigned int address, unsigned short port, bool report,
                                     unsigned int tick) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(&address);  // network byte order
  Keep("Lvs", unsigned{stream}, unsigned{camera}, highQuality, enabled, unsigned{bytes[0]},
       unsigned{bytes[1]}, unsigned{bytes[2]}, unsigned{bytes[3]}, port, Flag(report), tick);
}
void DataStoreNormal::ReportVehicleInfo(const VehicleInfo& vehicle, bool report) {
  Keep("Vehicle", vehicle.unitId.View(), vehicle.licensePlate.View(), Flag(report));
}
void DataStoreNormal::ReportSystemInfo(const SystemInfo& system, bool report) {
  Keep("System", system.deviceName.View(), system.softwareVersion.View(), Flag(report));
}
void DataStoreNormal::ReportDepartmentInfo(const DepartmentInfo& department, bool report) {
  Keep("Department", department.name.View(), department.division.View(), Flag(report));
}
void DataStoreNormal::ReportOfficerInfo(const Officer& officer, bool report) {
  Keep("Officer", officer.name.View(), officer.badgeNumber.View(), Flag(report));
}
void DataStoreNormal::ReportVideoRecordingSettings(const VideoRecordingSettings& settings, bool report) {
  Keep("RecordingSettings", settings.preEventSeconds, settings.bitRateKbps, Flag(report));
}

unsigned int Systick::SystemTick() const {
  return gSystemTick == kUnavailable ? kUnavailable : gSystemTick++;
}

Watchdog::Watchdog(e_Process process, e_ThreadIds thread) {
  Keep("Watchdog", unsigned{process}, unsigned{thread});
}
Watchdog::~Watchdog() {
  Keep("WatchdogGone");
}
bool Watchdog::Subscribe(unsigned int periodSeconds) {
  Keep("WatchdogSubscribe", periodSeconds);
  return true;
}
void Watchdog::PetWatchdog() {
  Keep("WatchdogPet");
}
void Watchdog::Unsubscribe() {
  Keep("WatchdogUnsubscribe");
}
