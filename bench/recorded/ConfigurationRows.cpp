#include <algorithm>

#include "RowFields.h"
#include "RowKinds.h"
#include "SourceTable.h"
#include "Texts.h"
#include "items/ConfigurationItems.h"

namespace bench {

namespace {

// Makes a word of a drive: blanks, control characters and an empty text become "_".
std::string Word(std::string_view text) {
  std::string word(text.empty() ? "_" : text);
  const auto separates = [](char c) { return static_cast<unsigned char>(c) <= ' ' || c == '\x7f'; };
  std::replace_if(word.begin(), word.end(), separates, '_');
  if (word[0] == '#') word[0] = '_';  // "#" starts a comment
  return word;
}

// An item of two texts, with the columns that hold them.
struct TwoTexts {
  const char* verb;
  const Source* source;
  std::string_view first;
  std::string_view second;
};
constexpr TwoTexts kVehicle{"config vehicle ", SourceNamed("vehicle"), "unit_id", "license_plate"};
constexpr TwoTexts kSystem{"config system ", SourceNamed("system"), "device_name", "software_version"};
constexpr TwoTexts kDepartment{"config department ", SourceNamed("department"), "name", "division"};
constexpr TwoTexts kOfficer{"config officer ", SourceNamed("officer"), "name", "badge_number"};

template <const TwoTexts& kTexts>
std::string LineOfTexts(LineValues& /*values*/, const Row& row) {
  return kTexts.verb + Word(row.Text(kTexts.first)) + " " + Word(row.Text(kTexts.second));
}

template <const TwoTexts& kTexts, typename T>
const Source* ItemOfTexts(ItemValues& values, const Row& row) {
  SetTexts(values.At<T>(kTexts.source), std::string(row.Text(kTexts.first)),
           std::string(row.Text(kTexts.second)));
  return kTexts.source;
}

std::string LineOfRecording(LineValues& /*values*/, const Row& row) {
  return "config recording " + Number(row, "pre_event_s") + " " + Number(row, "post_event_s") + " " +
         Resolution(row);
}

const Source* ItemOfRecording(ItemValues& values, const Row& row) {
  auto& item = values.At<VideoRecordingSettings>(SourceNamed("recording"));
  Set(item.preEventSeconds, row, "pre_event_s");
  Set(item.postEventSeconds, row, "post_event_s");
  SetQuality(item, row);
  return SourceNamed("recording");
}

constexpr RowKind kConfigurationRows[] = {
    {"vehicle", LineOfTexts<kVehicle>, ItemOfTexts<kVehicle, VehicleInfo>},
    {"system_info", LineOfTexts<kSystem>, ItemOfTexts<kSystem, SystemInfo>},
    {"department", LineOfTexts<kDepartment>, ItemOfTexts<kDepartment, DepartmentInfo>},
    {"officer", LineOfTexts<kOfficer>, ItemOfTexts<kOfficer, Officer>},
    {"recording_settings", LineOfRecording, ItemOfRecording},
};

}  // namespace

std::span<const RowKind> ConfigurationRows() {
  return kConfigurationRows;
}

}  // namespace bench
