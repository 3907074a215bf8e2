#pragma once

#include <memory>
#include <string>

#include "store/DataStore.h"

struct StoreOptions;

// The metadata store in SQLite files named "<path>.NNNNNN.db" (docs/store.md). The number counts up. A new
// file begins with each run, and when the current one reaches 256 MB or was deleted or replaced. The store
// never records into an earlier file again and never deletes one.
//
// A record is durable with the first TimerTick that comes 500 ms after it, or earlier. While the file cannot
// be written, records wait in memory, up to 4 MB. Beyond that the oldest are dropped, critical ones last, and
// their number is recorded once writing works again.
//
// Before Open and after Close only TimerTick and GetCurrentSystemTick have an effect.
class DataStoreNormal : public DataStore {
 public:
  explicit DataStoreNormal(const std::string& path);
  DataStoreNormal(const std::string& path, const StoreOptions& options);
  ~DataStoreNormal() override;  // calls Close
  DataStoreNormal(const DataStoreNormal&) = delete;
  DataStoreNormal& operator=(const DataStoreNormal&) = delete;

  // Begins a new recording. False if it cannot be created (no such directory, no permission, no space); the
  // log says why. True at once if already open.
  bool Open();

  // Writes pending records and closes the recording, which is then one single file.
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
