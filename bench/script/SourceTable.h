#pragma once

#include <algorithm>

#include "Sources.h"
#include "system/Messages.h"
#include "system/Servers.h"

namespace bench {

// The source whose item MetadataMgr receives under this notification id.
consteval Source Served(unsigned int notificationId, std::string_view name) {
  for (const ServerRow& server : servers::kAll) {
    for (const ServedItem& item : server.items) {
      if (item.notificationId == notificationId) return {server.process, Source::kItem, item.id, name};
    }
  }
  throw "no server has such an item";  // does not compile
}

// All sources. A new source needs a row here, in Publications.cpp, in Changes.cpp and in VerbTable.cpp.
inline constexpr Source kSources[] = {
    Served(MetadataMgrNotice_RecordStart, "record-start"),
    Served(MetadataMgrNotice_RecordStop, "record-stop"),
    Served(MetadataMgrNotice_EnterCovertMode, "covert-on"),
    Served(MetadataMgrNotice_ExitCovertMode, "covert-off"),
    Served(MetadataMgrNotice_VehicleInfo, "vehicle"),
    Served(MetadataMgrNotice_SystemInfo, "system"),
    Served(MetadataMgrNotice_DepartmentInfo, "department"),
    Served(MetadataMgrNotice_Officer, "officer"),
    Served(MetadataMgrNotice_VideoRecordingSettings, "recording"),
    Served(MetadataMgrNotice_ExternalEvent, "input"),
    Served(MetadataMgrNotice_GpsStatus, "gps"),
    Served(MetadataMgrNotice_Radar, "radar"),
    Served(MetadataMgrNotice_MicStatus, "mic"),
    {e_Process_MicMgr, Source::kMessage, MetadataMgrMsg_MicState, "mic-message"},
    Served(MetadataMgrNotice_Cameras, "camera-entries"),
    Served(MetadataMgrNotice_StreamQuality, "quality"),
    {e_Process_VideoMgr, Source::kMessage, MetadataMgrMsg_VideoStreamState, "stream"},
    {e_Process_VideoMgr, Source::kMessage, MetadataMgrMsg_CameraState, "camera"},
    Served(MetadataMgrNotice_Crash, "crash"),
    Served(MetadataMgrNotice_Temperatures, "temp"),
    Served(MetadataMgrNotice_LiveStream0, "live-0"),
    Served(MetadataMgrNotice_LiveStream1, "live-1"),
    Served(MetadataMgrNotice_LiveStream2, "live-2"),
    Served(MetadataMgrNotice_LiveStream3, "live-3"),
    Served(MetadataMgrNotice_LiveStream4, "live-4"),
    Served(MetadataMgrNotice_LiveStream5, "live-5"),
};

// The source of that name. An unknown name does not compile.
consteval const Source* SourceNamed(std::string_view name) {
  const Source* source = kSources;
  while (source->name != name) ++source;
  return source;
}

constexpr bool HasSource(const ServerRow& server, const ServedItem& item) {
  return std::any_of(std::begin(kSources), std::end(kSources), [&](const Source& source) {
    return source.server == server.process && source.kind == Source::kItem && source.id == item.id;
  });
}

constexpr bool EveryItemIsASource() {
  return std::all_of(std::begin(servers::kAll), std::end(servers::kAll), [](const ServerRow& server) {
    return std::all_of(server.items.begin(), server.items.end(),
                       [&server](const ServedItem& item) { return HasSource(server, item); });
  });
}
static_assert(EveryItemIsASource());

}  // namespace bench
