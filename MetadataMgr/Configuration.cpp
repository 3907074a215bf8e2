#include "ItemHandler.h"
#include "Subscribing.h"
#include "items/ConfigurationItems.h"

bool MetadataMgr::SubscribeToConfigMgr(LinxIpc& ipc) {
  subscribing::Trace(e_Process_ConfigMgr, kLogTrace);
  if (subscribing::Ignored(e_Process_ConfigMgr)) return true;
  VehicleInfo vehicle;
  SystemInfo system;
  DepartmentInfo department;
  Officer officer;
  VideoRecordingSettings settings;
  if (!subscribing::Fetch<e_Process_ConfigMgr>(
          subscribing::MakeOnce(configClient, ipc, subscribing::kPatientTimeoutMs), this,
          {&vehicle, &system, &department, &officer, &settings})) {
    return false;
  }
  dataStore.ReportVehicleInfo(vehicle, false);
  dataStore.ReportSystemInfo(system, false);
  dataStore.ReportDepartmentInfo(department, false);
  dataStore.ReportOfficerInfo(officer, false);
  dataStore.ReportVideoRecordingSettings(settings, false);
  return true;
}

void MetadataMgr::VehicleChanged(const VehicleInfo& vehicle) {
  dataStore.ReportVehicleInfo(vehicle, true);
}

void MetadataMgr::OfficerChanged(const Officer& officer) {
  dataStore.ReportOfficerInfo(officer, true);
}

void MetadataMgr::DepartmentInfoChanged(const DepartmentInfo& department) {
  dataStore.ReportDepartmentInfo(department, true);
}

void MetadataMgr::SystemInfoChanged(const SystemInfo& system) {
  dataStore.ReportSystemInfo(system, true);
}

void MetadataMgr::VideoRecordingSettingsChanged(const VideoRecordingSettings& settings) {
  dataStore.ReportVideoRecordingSettings(settings, true);
}

void MetadataMgr::VehicleInfoChangedHandler(LinxIpc* ipc, void* context) {
  HandleMessageItem<VehicleInfo>(ipc, context, {"VehicleInfoChangedHandler"},
                                 std::mem_fn(&MetadataMgr::VehicleChanged));
}

void MetadataMgr::OfficerChangedHandler(LinxIpc* ipc, void* context) {
  HandleMessageItem<Officer>(ipc, context, {"OfficerChangedHandler"},
                             std::mem_fn(&MetadataMgr::OfficerChanged));
}

void MetadataMgr::DeptInfoChangedHandler(LinxIpc* ipc, void* context) {
  HandleMessageItem<DepartmentInfo>(ipc, context, {"DeptInfoChangedHandler"},
                                    std::mem_fn(&MetadataMgr::DepartmentInfoChanged));
}

void MetadataMgr::SystemInfoChangedHandler(LinxIpc* ipc, void* context) {
  HandleMessageItem<SystemInfo>(ipc, context, {"SystemInfoChangedHandler"},
                                std::mem_fn(&MetadataMgr::SystemInfoChanged));
}

void MetadataMgr::VideoRecordingSettingsChangedHandler(LinxIpc* ipc, void* context) {
  HandleMessageItem<VideoRecordingSettings>(ipc, context, {"VideoRecordingSettingsChangedHandler"},
                                            std::mem_fn(&MetadataMgr::VideoRecordingSettingsChanged));
}
