#include "system/VersionApi.h"

#include <optional>
#include <string_view>

#include "DeviceFiles.h"
#include "system/KvGetenv.h"

namespace {

constexpr std::size_t kMaxFile = std::size_t{64} * 1024;
constexpr std::string_view kVersionBlanks(" \t\r\v\f\0", 6);

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kVersionBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kVersionBlanks) - begin + 1);
}

std::optional<VersionEntry> ParseLine(std::string_view line) {
  line = Trimmed(line);
  if (line.empty() || line[0] == '#') return {};
  const std::size_t nameEnd = line.find_first_of(" \t=");
  if (nameEnd == 0 || nameEnd == std::string_view::npos) return {};
  std::string_view version = Trimmed(line.substr(nameEnd));
  if (version[0] == '=') version = Trimmed(version.substr(1));
  if (version.empty()) return {};
  return VersionEntry(std::string(Trimmed(line.substr(0, nameEnd))), std::string(version));
}

}  // namespace

const std::string VersionApi::versionFile = "/etc/korvane/versions";

void VersionApi::GetAllVersions(std::vector<VersionEntry>& entries, const std::string& file) {
  const char* instead = file == versionFile ? KvGetenvText("VERSION_FILE") : nullptr;
  const std::string content = ReadSmallFile(instead != nullptr ? instead : file, kMaxFile);
  std::string_view rest = content;
  // A longer file is cut here; drops its last line, whose version may be incomplete.
  if (rest.size() == kMaxFile) rest = rest.substr(0, rest.rfind('\n') + 1);
  while (!rest.empty()) {
    const std::size_t lineEnd = rest.find('\n');
    if (auto entry = ParseLine(rest.substr(0, lineEnd))) entries.push_back(*std::move(entry));
    if (lineEnd == std::string_view::npos) break;
    rest.remove_prefix(lineEnd + 1);
  }
}
