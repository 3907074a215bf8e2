#pragma once

#include <memory>
#include <string>

#include "store/DataStore.h"

struct StoreOptions;

// The metadata store on files: SQLite recordings named "<path>.NNNNNN.db", with a number of six
// digits that counts up. Each run begins a new one, and so does a file that has grown to 256 MB;
// none is ever recorded into again or deleted. docs/store.md describes what they hold.
//
// A record is durable at the latest with the first TimerTick that comes 500 ms after it. While a
// file cannot be written, records wait in memory, up to 4 MB; beyond that the oldest go first
// (recording, covert mode, crash and bookmark last) and how many went is recorded when writing
// works again. A file that was deleted or replaced is followed by a new one.
//
// Before Open and after Close only TimerTick and GetCurrentSystemTick have an effect.
class DataStoreNormal : public DataStore {
 public:
  explicit DataStoreNormal(const std::string& path);
  DataStoreNormal(const std::string& path, const StoreOptions& options);
  ~DataStoreNormal() override;  // as Close
  DataStoreNormal(const DataStoreNormal&) = delete;
  DataStoreNormal& operator=(const DataStoreNormal&) = delete;

  // Begins a new recording. False when it cannot be created (no such directory, no permission, no
  // space); the log tells why. True at once when already open.
  bool Open();

  // Writes what is pending and closes the recording, which is then one single file.
  void Close();

  void TimerTick(unsigned int tick) override;
  unsigned int GetCurrentSystemTick() override;

  void ReportShutdownDataAtStartup() override;
  void ReportShutdownData() override;
  void ReportConfiguration(bool report) override;
  void WriteFullState(bool report) override;
  void ReportMac(unsigned char* mac, bool report) override;
  void ReportSystemSerialNum(const std::string& serial) override;
  void ReportVersion(e_COMPONENT component, const char* version) override;

  void ReportStateData(e_Tag tag, bool report, unsigned int tick) override;
  void ReportBookmark(unsigned int tick) override;
  void ReportStringData(e_Tag tag, const char* text) override;

  void ReportGpsState(bool valid, bool report) override;
  void ReportGps(const GpsStatusItem& position, unsigned int tick, bool report) override;
  void ReportSpeed(unsigned char source, unsigned short speed, bool report, unsigned int tick,
                   e_Tag tag) override;
  void ReportValidSpeed(unsigned char source, bool valid) override;
  void ReportRadarState(unsigned char radar, bool valid, bool report) override;
  void ReportRadar(unsigned char radar, unsigned short speed1, unsigned short speed2, unsigned short speed3,
                   e_RADAR_DIRECTION direction, bool report, unsigned int tick, e_Tag tag) override;

  void ReportMicPresent(e_MicrophonePosition mic, bool present, bool report, unsigned int tick) override;
  void ReportMicState(e_MicrophonePosition mic, bool active, bool report, unsigned int tick) override;
  void ReportTemp(e_TempSensors sensor, short temperature, bool report, unsigned int tick) override;

  void ReportCameraState(e_CameraPort camera, e_CameraState state, bool report, unsigned int tick) override;
  void ReportVideoStreamState(e_VideoStream stream, e_StreamState state, bool report,
                              unsigned int tick) override;
  void ReportStreamQualityItem(VideoMgrStreamQualityItem& quality, bool report) override;
  void ReportLvsState(e_VideoStream stream, unsigned char camera, bool highQuality, bool enabled,
                      unsigned int address, unsigned short port, bool report, unsigned int tick) override;

  void ReportVehicleInfo(const VehicleInfo& vehicle, bool report) override;
  void ReportSystemInfo(const SystemInfo& system, bool report) override;
  void ReportDepartmentInfo(const DepartmentInfo& department, bool report) override;
  void ReportOfficerInfo(const Officer& officer, bool report) override;
  void ReportVideoRecordingSettings(const VideoRecordingSettings& settings, bool report) override;

 private:
  class Store;
  std::unique_ptr<Store> store_;
};
