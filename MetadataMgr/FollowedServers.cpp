#include "FollowedServers.h"

#include <algorithm>
#include <iterator>

// The order of the clean-up is not that of the subscriptions; the state manager is released last.
std::span<const MetadataMgr::FollowedServer> MetadataMgr::FollowedServers() {
  // clang-format off
  static constexpr FollowedServer kRows[] = {
      {e_Process_ConfigMgr, &MetadataMgr::SubscribeToConfigMgr, "MetadataMgr - Failed to subscribe to ConfigMgr",
       "ConfigMgr", Client<&MetadataMgr::configClient>, 1},
      {e_Process_Fpga, &MetadataMgr::SubscribeToFpga, "MetadataMgr - Failed to subscribe to External Events",
       "FpgaHal", Client<&MetadataMgr::fpgaClient>, 2},
      {e_Process_GpsHal, &MetadataMgr::SubscribeToGpsHal, "MetadataMgr - Failed to subscribe to Gps Events",
       "GpsHal", Client<&MetadataMgr::gpsHalClient>, 3},
      {e_Process_StateMgr, &MetadataMgr::SubscribeToStateMgr,
       "MetadataMgr - Failed to subscribe to StateMgr Events", "StateMgr", Client<&MetadataMgr::stateMgrClient>, 10},
      {e_Process_RadarHal, &MetadataMgr::SubscribeToRadarHal,
       "MetadataMgr - Failed to subscribe to RadarHal Events", "RadarHal", Client<&MetadataMgr::radarHalClient>, 4},
      {e_Process_MicMgr, &MetadataMgr::SubscribeToMicMgr, "MetadataMgr - Failed to subscribe to MicMgr Events",
       "MicMgr", Client<&MetadataMgr::micClient>, 8},
      {e_Process_VideoMgr, &MetadataMgr::SubscribeToVideoMgr,
       "MetadataMgr - Failed to subscribe to VideoMgr Events", "VideoMgr", Client<&MetadataMgr::videoMgrClient>, 5},
      {e_Process_AccelHal, &MetadataMgr::SubscribeToAccelHal,
       "MetadataMgr - Failed to subscribe to Accelerometer Events", "AccelHal",
       Client<&MetadataMgr::accelHalClient>, 7},
      {e_Process_TempHal, &MetadataMgr::SubscribeToTempHal,
       "MetadataMgr::SubscribeToServers - Failed to subscribe to TempHal Events", "TempHal",
       Client<&MetadataMgr::tempHalClient>, 6},
      {e_Process_ExternalMgr, &MetadataMgr::SubscribeToExternalMgr,
       "MetadataMgr - Failed to subscribe to LVS state changes", "ExternalMgr",
       Client<&MetadataMgr::externalMgrClient>, 9},
  };
  // clang-format on
  static_assert(
      std::equal(
          std::begin(kRows), std::end(kRows), std::begin(servers::kAll), std::end(servers::kAll),
          [](const FollowedServer& row, const ServerRow& server) { return row.process == server.process; }),
      "each server has its row here, in the same order");
  static_assert(
      [] {
        for (unsigned int place = 1; place <= std::size(kRows); ++place) {
          if (std::none_of(std::begin(kRows), std::end(kRows),
                           [place](const FollowedServer& row) { return row.cleanUpPlace == place; }))
            return false;
        }
        return true;
      }(),
      "each server has a place of its own in the clean-up");
  return kRows;
}
