#include "Selection.h"

#include <algorithm>
#include <array>

#include "Catalogue.h"

namespace reader {
namespace {

struct Group {
  const char* name;
  const char* words;
};
constexpr std::array<Group, 5> kGroups{{
    {"inputs", "lights,brakes,siren,aux,doorOpen,ignition"},
    {"events", "recording,covert,crash,bookmark"},
    {"microphones", "mic_present,mic_active"},
    {"video", "camera,video_stream,stream_quality,live_stream"},
    {"settings", "vehicle,system_info,department,officer,recording_settings"},
}};

// Sources without their numbers, and the tables that hold their records. A source named like its only table
// needs no row.
struct Source {
  const char* name;
  const char* tables;
};
constexpr std::array<Source, 25> kSources{{
    {"lights", "state"},
    {"siren", "state"},
    {"brakes", "state"},
    {"covert", "state"},
    {"aux", "state"},
    {"doorOpen", "state"},
    {"system", "state"},
    {"crash", "state"},
    {"ignition", "state"},
    {"recording", "state"},
    {"signal", "state"},
    {"filler", "state,string"},
    {"text", "string"},
    {"gps", "gps,gps_state"},
    {"speed gps", "speed,speed_valid"},
    {"speed radar", "speed,speed_valid"},
    {"radar", "radar,radar_state"},
    {"microphone", "mic_present,mic_active"},
    {"stream", "video_stream,stream_quality"},
    {"live stream", "live_stream"},
    {"device", "mac,serial,version"},
    {"store", "configuration,loss,log_pinned"},
    {"previous run", "previous_run"},
    {"system info", "system_info"},
    {"run", "run_end"},
}};

std::string_view WithoutNumber(std::string_view source) {
  const std::size_t end = source.find_last_not_of("0123456789");
  return end == std::string_view::npos || end + 1 == source.size() || source[end] != ' '
             ? source
             : source.substr(0, end);
}

template <typename Names>
bool Contains(const Names& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::vector<std::string> SplitList(std::string_view list) {
  std::vector<std::string> words;
  words.reserve(std::size(kGroups) + std::size(kSources));
  for (;;) {
    const std::size_t end = std::min(list.find(','), list.size());
    std::string word(list.substr(0, end));
    std::replace(word.begin(), word.end(), '-', ' ');
    if (!word.empty()) words.push_back(word);
    if (end == list.size()) return words;
    list.remove_prefix(end + 1);
  }
}

const Source* FindSource(std::string_view word) {
  const auto* found = std::find_if(kSources.begin(), kSources.end(),
                                   [word](const Source& row) { return WithoutNumber(word) == row.name; });
  return found == kSources.end() ? nullptr : found;
}

// The table name for a word: drops the number, and blanks become underscores.
std::string AsTable(std::string_view word) {
  std::string table(WithoutNumber(word));
  std::replace(table.begin(), table.end(), ' ', '_');
  return table;
}

}  // namespace

bool Selection::Read(const std::string& list, std::string& error) {
  for (const std::string& word : SplitList(list)) {
    const auto group =
        std::find_if(kGroups.begin(), kGroups.end(), [&word](const Group& row) { return word == row.name; });
    if (group != kGroups.end()) {
      for (const std::string& member : SplitList(group->words)) words_.push_back(member);
    } else if (FindSource(word) != nullptr || CurrentCatalogue().Find(AsTable(word)) != nullptr) {
      words_.push_back(word);
    } else {
      error = "'" + word + "' is no source; there are " + SelectionHelp();
      return false;
    }
  }
  if (words_.empty()) error = "no source is named";
  return !words_.empty();
}

bool Selection::Selects(std::string_view table, std::string_view source) const {
  return Contains(words_, table) || Contains(words_, source) || Contains(words_, WithoutNumber(source));
}

bool Selection::MaySelect(std::string_view table) const {
  return std::any_of(words_.begin(), words_.end(), [table](const std::string& word) {
    const Source* source = FindSource(word);
    return AsTable(word) == table || (source != nullptr && Contains(SplitList(source->tables), table));
  });
}

std::string SelectionHelp() {
  std::string help = "the sources that \"metadata info\" lists, tables, and the groups";
  for (const Group& group : kGroups) help += std::string(&group == kGroups.data() ? " " : ", ") + group.name;
  return help;
}

std::vector<std::string> SelectionWords() {
  std::vector<std::string> words;
  words.reserve(std::size(kGroups) + std::size(kSources));
  for (const Group& group : kGroups) words.emplace_back(group.name);
  for (const Source& source : kSources) words.emplace_back(source.name);
  for (const RecordTable& table : CurrentCatalogue().tables) words.push_back(table.name);
  for (std::string& word : words) std::replace(word.begin(), word.end(), ' ', '-');
  std::sort(words.begin(), words.end());
  words.erase(std::unique(words.begin(), words.end()), words.end());
  return words;
}

}  // namespace reader
