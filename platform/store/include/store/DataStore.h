#pragma once

#include <string>

#include "items/Enumerations.h"
#include "store/Enumerations.h"

class DepartmentInfo;
class GpsStatusItem;
class Officer;
class SystemInfo;
class VehicleInfo;
class VideoMgrStreamQualityItem;
class VideoRecordingSettings;

// The metadata store: records each change of the system's state.
//
// Operations record their arguments unchanged: they check no range, compare with no earlier value and merge
// nothing. They copy their arguments. They never throw and return no result; the store handles errors itself.
//
// Common arguments:
//   report  true: a change as it happened; false: the value that a source had when first asked. Recorded.
//   tick    the sender tick: the sender's 32-bit system tick in milliseconds, recorded unchanged.
//   tag     recorded unchanged; e_Tag_None if there is none.
// Texts are UTF-8 and end at their first NUL. The store cuts them to 1024 bytes and replaces each byte that
// is not UTF-8 by "?". Null is the empty text.
//
// Use from one thread only.
class DataStore {
 public:
  virtual ~DataStore() = default;

  // --- Time ---

  // Takes the current system tick, which sets the store's time, and does the periodic work. Call it at least
  // about once a second. With 0xFFFFFFFF (no tick) it does only the work.
  virtual void TimerTick(unsigned int tick) = 0;

  // The last tick passed to TimerTick other than 0xFFFFFFFF; 0xFFFFFFFF if there was none yet.
  virtual unsigned int GetCurrentSystemTick() = 0;

  // --- Runs of the process, the device, its settings ---

  // Records how the previous run ended: cleanly or not, and its last recorded time.
  virtual void ReportShutdownDataAtStartup() = 0;

  // Records that this run ends cleanly; durable when it returns.
  virtual void ReportShutdownData() = 0;

  // Records the store's software, schema and the settings in force.
  virtual void ReportConfiguration(bool report) = 0;

  // Records the last value of every source again, so that later records can be understood without earlier
  // ones; durable when it returns. Ignores `report`.
  virtual void WriteFullState(bool report) = 0;

  // The six bytes of the hardware address, first byte first. Null is ignored.
  virtual void ReportMac(unsigned char* mac, bool report) = 0;
  virtual void ReportSystemSerialNum(const std::string& serial) = 0;
  virtual void ReportVersion(e_COMPONENT component, const char* version) = 0;

  // --- Vehicle and recording ---

  // An on/off signal. The tag names the signal and its new state (see e_Tag). Recording, covert mode and
  // crash are critical: durable when the call returns, or with the first TimerTick after 50 ms if another
  // critical record was committed less than 50 ms before.
  virtual void ReportStateData(e_Tag tag, bool report, unsigned int tick) = 0;

  // A bookmark was set; durable like the signals above.
  virtual void ReportBookmark(unsigned int tick) = 0;

  // A text under a tag.
  virtual void ReportStringData(e_Tag tag, const char* text) = 0;

  // --- GPS, radar and speed ---

  // Whether GPS has a usable fix.
  virtual void ReportGpsState(bool valid, bool report) = 0;

  // A GPS position with all its details.
  virtual void ReportGps(const GpsStatusItem& position, unsigned int tick, bool report) = 0;

  // A sample of the vehicle's speed in whole units of its source (1 = GPS, 2 = radar).
  virtual void ReportSpeed(unsigned char source, unsigned short speed, bool report, unsigned int tick,
                           e_Tag tag) = 0;

  // Whether the source's speed samples are valid now.
  virtual void ReportValidSpeed(unsigned char source, bool valid) = 0;

  // Whether the radar (number 1) gives usable readings.
  virtual void ReportRadarState(unsigned char radar, bool valid, bool report) = 0;

  // The three speeds that a radar shows, in the radar's own units and order.
  virtual void ReportRadar(unsigned char radar, unsigned short speed1, unsigned short speed2,
                           unsigned short speed3, e_RADAR_DIRECTION direction, bool report, unsigned int tick,
                           e_Tag tag) = 0;

  // --- Microphones and temperature ---

  // Whether the microphone is present; whether it is active.
  virtual void ReportMicPresent(e_MicrophonePosition mic, bool present, bool report, unsigned int tick) = 0;
  virtual void ReportMicState(e_MicrophonePosition mic, bool active, bool report, unsigned int tick) = 0;

  // A temperature in the sensor's own unit, signed.
  virtual void ReportTemp(e_TempSensors sensor, short temperature, bool report, unsigned int tick) = 0;

  // --- Video ---

  virtual void ReportCameraState(e_CameraPort camera, e_CameraState state, bool report,
                                 unsigned int tick) = 0;
  virtual void ReportVideoStreamState(e_VideoStream stream, e_StreamState state, bool report,
                                      unsigned int tick) = 0;
  // The recording quality of each stream. The sender tick is the item's.
  virtual void ReportStreamQualityItem(VideoMgrStreamQualityItem& quality, bool report) = 0;

  // Live streaming of one stream. `address` is the receiver's IPv4 address in network byte order, as
  // inet_addr gives it; 0xFFFFFFFF if there is none.
  virtual void ReportLvsState(e_VideoStream stream, unsigned char camera, bool highQuality, bool enabled,
                              unsigned int address, unsigned short port, bool report, unsigned int tick) = 0;

  // --- Configuration: each record is in force from now on ---

  virtual void ReportVehicleInfo(const VehicleInfo& vehicle, bool report) = 0;
  virtual void ReportSystemInfo(const SystemInfo& system, bool report) = 0;
  virtual void ReportDepartmentInfo(const DepartmentInfo& department, bool report) = 0;
  virtual void ReportOfficerInfo(const Officer& officer, bool report) = 0;
  virtual void ReportVideoRecordingSettings(const VideoRecordingSettings& settings, bool report) = 0;
};
