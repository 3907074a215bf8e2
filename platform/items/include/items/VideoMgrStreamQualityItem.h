#pragma once

#include "items/RecordItem.h"

// Size, frame rate and bit rate of the four recorded video streams.
class VideoMgrStreamQualityItem : public RecordItem<VideoMgrStreamQualityItem> {
 public:
  static constexpr std::size_t kStreams = 4;

  struct Stream {
    std::uint16_t widthPixels = 0;
    std::uint16_t heightPixels = 0;
    std::uint16_t framesPerSecond = 0;
    std::uint16_t bitRateKbps = 0;

    static constexpr auto Fields() {
      return std::make_tuple(&Stream::widthPixels, &Stream::heightPixels, &Stream::framesPerSecond,
                             &Stream::bitRateKbps);
    }
  };

  std::array<Stream, kStreams> streams{};
  std::uint32_t tick = 0;

  static constexpr auto Fields() {
    return std::make_tuple(&VideoMgrStreamQualityItem::streams, &VideoMgrStreamQualityItem::tick);
  }
};
