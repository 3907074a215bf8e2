#pragma once

#include "clients/SubscribeClient.h"
#include "ipc/LinxServerNameList.h"
#include "system/Process.h"

// The clients of the servers that publish the vehicle's state. Each names the items that its
// server publishes.

// A subscribe client that knows its server.
template <e_Process kProcess>
class ServerClient : public SubscribeClient {
 public:
  explicit ServerClient(LinxIpc& ipc, int timeoutMs = kDefaultTimeoutMs)
      : SubscribeClient(ipc, LinxServerNameList::Instance().Name(kProcess), timeoutMs) {}
};

class ConfigClient : public ServerClient<e_Process_ConfigMgr> {
 public:
  static constexpr unsigned int kSystemInfo = 7;               // SystemInfo
  static constexpr unsigned int kVehicleInfo = 10;             // VehicleInfo
  static constexpr unsigned int kDepartmentInfo = 11;          // DepartmentInfo
  static constexpr unsigned int kOfficer = 12;                 // Officer
  static constexpr unsigned int kVideoRecordingSettings = 13;  // VideoRecordingSettings
  using ServerClient::ServerClient;
};

class FpgaClient : public ServerClient<e_Process_Fpga> {
 public:
  static constexpr unsigned int kExternalEvent = 17;  // FpgaExternalEventItem
  using ServerClient::ServerClient;
};

class GpsHalClient : public ServerClient<e_Process_GpsHal> {
 public:
  static constexpr unsigned int kStatus = 1;  // GpsStatusItem
  using ServerClient::ServerClient;
};

class RadarHalClient : public ServerClient<e_Process_RadarHal> {
 public:
  static constexpr unsigned int kRadar = 1;  // RadarItem
  using ServerClient::ServerClient;
};

class MicClient : public ServerClient<e_Process_MicMgr> {
 public:
  static constexpr unsigned int kStatus = 0;  // MicStatusResponse
  using ServerClient::ServerClient;
};

class VideoMgrClient : public ServerClient<e_Process_VideoMgr> {
 public:
  static constexpr unsigned int kCamera = 0;         // VideoMgrCameraItem
  static constexpr unsigned int kStreamQuality = 1;  // VideoMgrStreamQualityItem
  using ServerClient::ServerClient;
};

class AccelHalClient : public ServerClient<e_Process_AccelHal> {
 public:
  static constexpr unsigned int kCrash = 1;  // CrashItem
  using ServerClient::ServerClient;
};

class TempHalClient : public ServerClient<e_Process_TempHal> {
 public:
  static constexpr unsigned int kStatus = 0;  // TempStatus
  using ServerClient::ServerClient;
};
