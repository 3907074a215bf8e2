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

// The metadata store: takes each change of the system's state and keeps it as one record.
//
// Every operation takes what it is given as it stands: no range is checked, nothing is compared
// with an earlier value, nothing is merged. Arguments are copied, none is kept by reference. No
// operation throws or tells a result; what goes wrong is the store's business.
//
// Common arguments:
//   report  true: a change as it happened; false: the value that a source had when it was first
//           asked. Recorded as such.
//   tick    the sender's 32-bit system tick in milliseconds, recorded unchanged.
//   tag     recorded unchanged; e_Tag_None where there is nothing to say.
// Texts are UTF-8 and end at their first NUL; what is longer than 1024 bytes is cut, a byte that is
// no UTF-8 becomes "?", null is the empty text.
//
// One thread.
class DataStore {
 public:
  virtual ~DataStore() = default;

  // --- Time ---

  // Tells the current system tick. The store's own times come from here, and its periodic work is
  // done here; to be called at least about once a second. 0xFFFFFFFF (no tick) only does the work.
  virtual void TimerTick(unsigned int tick) = 0;

  // The last tick told that was not 0xFFFFFFFF; 0xFFFFFFFF when there was none yet.
  virtual unsigned int GetCurrentSystemTick() = 0;

  // --- Runs of the process, the device, its settings ---

  // Records how the previous run ended: cleanly or not, and its last recorded time.
  virtual void ReportShutdownDataAtStartup() = 0;

  // Records that this run ends cleanly; durable when it returns.
  virtual void ReportShutdownData() = 0;

  // Records the store's software, schema and the settings in force.
  virtual void ReportConfiguration(bool report) = 0;

  // Records the last value of every source once more, so that what follows can be understood
  // without what came before; durable when it returns. `report` has no influence.
  virtual void WriteFullState(bool report) = 0;

  // The six bytes of the hardware address, first byte first. Null is ignored.
  virtual void ReportMac(unsigned char* mac, bool report) = 0;
  virtual void ReportSystemSerialNum(const std::string& serial) = 0;
  virtual void ReportVersion(e_COMPONENT component, const char* version) = 0;

  // --- Vehicle and recording ---

  // An on/off signal: the tag says which one and which way (see e_Tag). Recording, covert mode and
  // crash are durable when the call returns, unless such a record was made durable less than 50 ms
  // before.
  virtual void ReportStateData(e_Tag tag, bool report, unsigned int tick) = 0;

  // A bookmark was set; durable like the signals above.
  virtual void ReportBookmark(unsigned int tick) = 0;

  // A text under a tag.
  virtual void ReportStringData(e_Tag tag, const char* text) = 0;

  // --- GPS, radar and speed ---

  // Whether GPS has a usable fix.
  virtual void ReportGpsState(bool valid, bool report) = 0;

  // A position with all that the GPS process tells about it.
  virtual void ReportGps(const GpsStatusItem& position, unsigned int tick, bool report) = 0;

  // A sample of the vehicle's speed in whole units of its source (1 = GPS, 2 = radar).
  virtual void ReportSpeed(unsigned char source, unsigned short speed, bool report, unsigned int tick,
                           e_Tag tag) = 0;

  // Whether the source's speed samples are valid at present.
  virtual void ReportValidSpeed(unsigned char source, bool valid) = 0;

  // Whether the radar (number 1) gives usable readings.
  virtual void ReportRadarState(unsigned char radar, bool valid, bool report) = 0;

  // The three speeds that a radar shows, in the radar's own units and order.
  virtual void ReportRadar(unsigned char radar, unsigned short speed1, unsigned short speed2,
                           unsigned short speed3, e_RADAR_DIRECTION direction, bool report, unsigned int tick,
                           e_Tag tag) = 0;

  // --- Microphones and temperature ---

  // Whether the microphone is there; whether it is active.
  virtual void ReportMicPresent(e_MicrophonePosition mic, bool present, bool report, unsigned int tick) = 0;
  virtual void ReportMicState(e_MicrophonePosition mic, bool active, bool report, unsigned int tick) = 0;

  // A temperature in the sensor's own unit, signed.
  virtual void ReportTemp(e_TempSensors sensor, short temperature, bool report, unsigned int tick) = 0;

  // --- Video ---

  virtual void ReportCameraState(e_CameraPort camera, e_CameraState state, bool report,
                                 unsigned int tick) = 0;
  virtual void ReportVideoStreamState(e_VideoStream stream, e_StreamState state, bool report,
                                      unsigned int tick) = 0;
  // What each of the streams is recorded with; stamped with the item's tick.
  virtual void ReportStreamQualityItem(VideoMgrStreamQualityItem& quality, bool report) = 0;

  // Live streaming of one stream. `address` is the receiver's IPv4 address in network byte order, as
  // inet_addr gives it; 0xFFFFFFFF where there is none.
  virtual void ReportLvsState(e_VideoStream stream, unsigned char camera, bool highQuality, bool enabled,
                              unsigned int address, unsigned short port, bool report, unsigned int tick) = 0;

  // --- Configuration records: each is the current one from now on ---

  virtual void ReportVehicleInfo(const VehicleInfo& vehicle, bool report) = 0;
  virtual void ReportSystemInfo(const SystemInfo& system, bool report) = 0;
  virtual void ReportDepartmentInfo(const DepartmentInfo& department, bool report) = 0;
  virtual void ReportOfficerInfo(const Officer& officer, bool report) = 0;
  virtual void ReportVideoRecordingSettings(const VideoRecordingSettings& settings, bool report) = 0;
};
