#pragma once

#include <concepts>
#include <cstdint>
#include <string_view>
#include <type_traits>

namespace store {

enum TableId : unsigned char {
  kStateTable,
  kStringTable,
  kBookmarkTable,
  kGpsStateTable,
  kGpsTable,
  kSpeedTable,
  kSpeedValidTable,
  kRadarStateTable,
  kRadarTable,
  kMicPresentTable,
  kMicActiveTable,
  kTemperatureTable,
  kCameraTable,
  kVideoStreamTable,
  kLiveStreamTable,
  kStreamQualityTable,
  kVehicleTable,
  kSystemTable,
  kDepartmentTable,
  kOfficerTable,
  kRecordingSettingsTable,
  kMacTable,
  kSerialTable,
  kVersionTable,
  kConfigurationTable,
  kPreviousRunTable,
  kRunEndTable,
  kClockTable,
  kLossTable,
  kLogPinnedTable,
  kCopyTable,
  kTableCount
};

// Why a record was made; the numbers stand in the files.
enum class Event : unsigned char {
  kInitial = 0,   // the value a source had when first asked
  kChange = 1,    // it happened
  kRestated = 2,  // a last value told again
};
constexpr Event EventOf(bool report) {
  return report ? Event::kChange : Event::kInitial;
}

constexpr std::int64_t kNoSenderTick = -1;

struct RecordHeader {
  std::int64_t seq = 0;
  std::int64_t tick = 0;  // arrival, milliseconds
  std::int64_t senderTick = kNoSenderTick;
  std::uint32_t cellBytes = 0;
  TableId table = kStateTable;
  Event event = Event::kChange;
  bool critical = false;  // durable at once, and the last to go
};

// One column's value on its way into the batch; a text is not copied before it gets there.
class Value {
 public:
  // NOLINTBEGIN(google-explicit-constructor): the values of a record are written as they are
  Value(std::integral auto number) : number_(static_cast<std::int64_t>(number)) {}
  template <typename E>
  requires std::is_enum_v<E> Value(E number) : number_(static_cast<std::int64_t>(number)) {}
  Value(std::string_view text)
      : number_(static_cast<std::int64_t>(text.size())), text_(text.empty() ? "" : text.data()) {}
  // NOLINTEND(google-explicit-constructor)

  std::int64_t Number() const { return number_; }
  std::string_view Text() const { return {text_, static_cast<std::size_t>(number_)}; }
  bool IsText() const { return text_ != nullptr; }

 private:
  std::int64_t number_ = 0;  // of a text: its length
  const char* text_ = nullptr;
};

}  // namespace store
