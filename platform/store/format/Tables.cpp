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
    {kGpsTable,
     "gps",
     0,  //
     "'gps'",
     "printf('%.6f %.6f',latitude_e4min/600000.0,longitude_e4min/600000.0)||"
     "iif(altitude_dm=134217727,'',printf(' %.1f m',altitude_dm/10.0))||"
     "printf(', %.1f km/h, course %.1f',speed_deci_kmh/10.0,course_deci_deg/10.0)||"
     "CASE quality WHEN 0 THEN ', no fix' WHEN 1 THEN ', fix' WHEN 2 THEN ', differential' "
     "WHEN 8 THEN ', simulated' ELSE ', quality '||quality END||', '||satellites_used||' satellites'",
     {{{"latitude_e4min"},
       {"longitude_e4min"},
       {"altitude_dm"},
       {"speed_deci_kmh"},
       {"speed_deci_knots"},
       {"course_deci_deg"},
       {"quality"},
       {"fix_dimensions"},
       {"satellites_used"},
       {"satellites_in_view"},
       {"signal_db"},
       {"utc_date"},
       {"utc_time_ms"},
       {"valid"}}}},
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
    {kStreamQualityTable,
     "stream_quality",
     1,  //
     "'stream '||stream",
     "width||'x'||height||' '||frames_per_second||' frames/s '||bit_rate_kbps||' kbit/s'",
     {{{"stream"}, {"width"}, {"height"}, {"frames_per_second"}, {"bit_rate_kbps"}}}},
    {kVehicleTable,
     "vehicle",
     0,  //
     "'vehicle'",
     "'unit '||unit_id||', plate '||license_plate",
     {{{"unit_id", kText}, {"license_plate", kText}}}},
    {kSystemTable,
     "system_info",
     0,  //
     "'system info'",
     "device_name||', software '||software_version",
     {{{"device_name", kText}, {"software_version", kText}}}},
    {kDepartmentTable,
     "department",
     0,  //
     "'department'",
     "name||', '||division",
     {{{"name", kText}, {"division", kText}}}},
    {kOfficerTable,
     "officer",
     0,  //
     "'officer'",
     "name||', badge '||badge_number",
     {{{"name", kText}, {"badge_number", kText}}}},
    {kRecordingSettingsTable,
     "recording_settings",
     0,  //
     "'recording settings'",
     "pre_event_s||' s before, '||post_event_s||' s after, '||width||'x'||height||' '||frames_per_second||"
     "' frames/s '||bit_rate_kbps||' kbit/s'",
     {{{"pre_event_s"}, {"post_event_s"}, {"width"}, {"height"}, {"frames_per_second"}, {"bit_rate_kbps"}}}},
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
     "'set by '||clock_source||iif(abs(system_utc_ms-utc_ms)<=1000,'',"
     "printf(', the wall clock is off by %+.1f s',(system_utc_ms-utc_ms)/1000.0))",
     {{{"utc_ms"}, {"clock_source", kText}, {"system_utc_ms"}}}},
    {kLossTable,
     "loss",
     kNoState,  //
     "'store'",
     "'lost '||count||' records of '||lost_table||' from tick '||from_tick||' to '||to_tick",
     {{{"lost_table", kText}, {"from_tick"}, {"to_tick"}, {"count"}}}},
    {kLogPinnedTable,
     "log_pinned",
     kNoState,  //
     "'store'",
     "iif(pinned,'a reader makes the log grow','the log is short again')||': '||log_bytes||' bytes'",
     {{{"pinned"}, {"log_bytes"}}}},
    {kCopyTable,
     "copy",
     kNoState,  //
     "'copy'",
     "'of '||store||', '||first_file||' to '||last_file||', ticks '||from_tick||' to '||to_tick||"
     "iif(missing_files=0,'',', '||missing_files||' files are missing')",
     {{{"store", kText},
       {"first_file", kText},
       {"last_file", kText},
       {"missing_files"},
       {"first_asked"},
       {"last_asked"},
       {"from_tick"},
       {"to_tick"}}}},
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
