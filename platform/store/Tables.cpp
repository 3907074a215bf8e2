#include "Tables.h"

namespace store {
namespace {

constexpr ColumnType kText = ColumnType::kText;

#define TAG_NAME(tag) "(SELECT name FROM tag_name WHERE tag_name.tag=" tag ")"
constexpr const char* kSpeedSource =
    "CASE source WHEN 1 THEN 'speed gps' WHEN 2 THEN 'speed radar' ELSE 'speed '||source END";

constexpr std::array<Table, kTableCount> kAll{{
    {kStateTable,
     "state",
     1,  //
     "coalesce(" TAG_NAME("signal") ",'signal '||signal)",
     "coalesce((SELECT iif(active,active_text,inactive_text) FROM tag_name WHERE tag=signal),"
     "iif(active,'on','off'))",
     {{{"signal"}, {"active"}}}},
    {kStringTable,
     "string",
     1,  //
     "coalesce(" TAG_NAME("string.tag") ",'text '||tag)",
     "text",
     {{{"tag"}, {"text", kText}}}},
    {kBookmarkTable, "bookmark", kNoState, "'bookmark'", "'set'", {}},
    {kGpsStateTable, "gps_state", 0, "'gps'", "iif(valid,'fix','no fix')", {{{"valid"}}}},
    {kSpeedTable, "speed", 1, kSpeedSource, "speed", {{{"source"}, {"speed"}, {"tag"}}}},
    {kSpeedValidTable,
     "speed_valid",
     1,  //
     kSpeedSource,
     "iif(valid,'valid','not valid')",
     {{{"source"}, {"valid"}}}},
    {kRadarStateTable,
     "radar_state",
     1,  //
     "'radar '||radar",
     "iif(valid,'reading','no reading')",
     {{{"radar"}, {"valid"}}}},
    {kRadarTable,
     "radar",
     1,  //
     "'radar '||radar",
     "speed1||' '||speed2||' '||speed3||iif(direction,' direction '||direction,'')",
     {{{"radar"}, {"speed1"}, {"speed2"}, {"speed3"}, {"direction"}, {"tag"}}}},
    {kMicPresentTable,
     "mic_present",
     1,  //
     "'microphone '||mic",
     "iif(present,'present','absent')",
     {{{"mic"}, {"present"}}}},
    {kMicActiveTable,
     "mic_active",
     1,  //
     "'microphone '||mic",
     "iif(active,'active','not active')",
     {{{"mic"}, {"active"}}}},
    {kTemperatureTable,
     "temperature",
     1,  //
     "'temperature '||sensor",
     "temperature",
     {{{"sensor"}, {"temperature"}}}},
    {kCameraTable, "camera", 1, "'camera '||camera", "'state '||state", {{{"camera"}, {"state"}}}},
    {kVideoStreamTable, "video_stream", 1, "'stream '||stream", "'state '||state", {{{"stream"}, {"state"}}}},
    {kLiveStreamTable,
     "live_stream",
     1,  //
     "'live stream '||stream",
     "iif(enabled,'on','off')||' camera '||camera||iif(high_quality,' high quality','')||iif(address="
     "4294967295,'',' to '||(address>>24)||'.'||((address>>16)&255)||'.'||((address>>8)&255)||'.'||"
     "(address&255)||':'||port)",
     {{{"stream"}, {"camera"}, {"high_quality"}, {"enabled"}, {"address"}, {"port"}}}},
    {kMacTable, "mac", 0, "'device'", "'hardware address '||address", {{{"address", kText}}}},
    {kSerialTable, "serial", 0, "'device'", "'serial number '||serial", {{{"serial", kText}}}},
    {kVersionTable,
     "version",
     1,  //
     "'device'",
     "'version of component '||component||': '||version",
     {{{"component"}, {"version", kText}}}},
    {kConfigurationTable,
     "configuration",
     1,  //
     "'store'",
     "name||' = '||value",
     {{{"name", kText}, {"value", kText}}}},
    {kPreviousRunTable,
     "previous_run",
     0,  //
     "'previous run'",
     "ended||iif(file='','',' '||file||' at tick '||last_tick)",
     {{{"ended", kText}, {"file", kText}, {"last_seq"}, {"last_tick"}, {"last_utc_ms"}}}},
    {kRunEndTable, "run_end", kNoState, "'run'", "'clean end'", {}},
    {kClockTable,
     "clock",
     kNoState,  //
     "'clock'",
     "'set by '||clock_source",
     {{{"utc_ms"}, {"clock_source", kText}}}},
    {kLossTable,
     "loss",
     kNoState,  //
     "'store'",
     "'lost '||count||' records of '||lost_table||' from tick '||from_tick||' to '||to_tick",
     {{{"lost_table", kText}, {"from_tick"}, {"to_tick"}, {"count"}}}},
}};
#undef TAG_NAME

constexpr bool InOrder() {
  for (unsigned i = 0; i < kTableCount; ++i) {
    if (kAll[i].id != i) return false;
  }
  return true;
}
static_assert(InOrder());

}  // namespace

const std::array<Table, kTableCount> kTables = kAll;

}  // namespace store
