#pragma once

#include "clients/SubscribeClient.h"
#include "ipc/LinxServerNameList.h"
#include "system/Servers.h"

// The clients of the servers that publish the vehicle's state. Each class names the items of its server;
// system/Messages.h names the items' classes.

// A subscribe client that knows its server.
template <e_Process kProcess>
class ServerClient : public SubscribeClient {
 public:
  explicit ServerClient(LinxIpc& ipc, int timeoutMs = kDefaultTimeoutMs)
      : SubscribeClient(ipc, LinxServerNameList::Instance().Name(kProcess), timeoutMs) {}
};

class ConfigClient : public ServerClient<e_Process_ConfigMgr> {
 public:
  static constexpr unsigned int kSystemInfo = servers::ItemId(MetadataMgrNotice_SystemInfo);
  static constexpr unsigned int kVehicleInfo = servers::ItemId(MetadataMgrNotice_VehicleInfo);
  static constexpr unsigned int kDepartmentInfo = servers::ItemId(MetadataMgrNotice_DepartmentInfo);
  static constexpr unsigned int kOfficer = servers::ItemId(MetadataMgrNotice_Officer);
  static constexpr unsigned int kVideoRecordingSettings =
      servers::ItemId(MetadataMgrNotice_VideoRecordingSettings);
  using ServerClient::ServerClient;
};

class FpgaClient : public ServerClient<e_Process_Fpga> {
 public:
  static constexpr unsigned int kExternalEvent = servers::ItemId(MetadataMgrNotice_ExternalEvent);
  using ServerClient::ServerClient;
};

class GpsHalClient : public ServerClient<e_Process_GpsHal> {
 public:
  static constexpr unsigned int kStatus = servers::ItemId(MetadataMgrNotice_GpsStatus);
  using ServerClient::ServerClient;
};

class RadarHalClient : public ServerClient<e_Process_RadarHal> {
 public:
  static constexpr unsigned int kRadar = servers::ItemId(MetadataMgrNotice_Radar);
  using ServerClient::ServerClient;
};

class MicClient : public ServerClient<e_Process_MicMgr> {
 public:
  static constexpr unsigned int kStatus = servers::ItemId(MetadataMgrNotice_MicStatus);
  using ServerClient::ServerClient;
};

class VideoMgrClient : public ServerClient<e_Process_VideoMgr> {
 public:
  static constexpr unsigned int kCamera = servers::ItemId(MetadataMgrNotice_Cameras);
  static constexpr unsigned int kStreamQuality = servers::ItemId(MetadataMgrNotice_StreamQuality);
  using ServerClient::ServerClient;
};

class AccelHalClient : public ServerClient<e_Process_AccelHal> {
 public:
  static constexpr unsigned int kCrash = servers::ItemId(MetadataMgrNotice_Crash);
  using ServerClient::ServerClient;
};

class TempHalClient : public ServerClient<e_Process_TempHal> {
 public:
  static constexpr unsigned int kStatus = servers::ItemId(MetadataMgrNotice_Temperatures);
  using ServerClient::ServerClient;
};
