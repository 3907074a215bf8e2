#pragma once

#include "items/Enumerations.h"
#include "items/RecordItem.h"

// The state of the video manager's nine camera entries.
class VideoMgrCameraItem : public RecordItem<VideoMgrCameraItem> {
 public:
  static constexpr std::size_t kEntries = 9;

  std::array<e_CameraState, kEntries> states{};
  std::uint32_t tick = 0;

  static constexpr auto Fields() {
    return std::make_tuple(&VideoMgrCameraItem::states, &VideoMgrCameraItem::tick);
  }
};
