#include "system/MfgItem.h"

#include <algorithm>
#include <string_view>

#include "DeviceFiles.h"
#include "system/KvGetenv.h"

namespace {

constexpr std::size_t kMaxSerial = 256;
constexpr std::string_view kBlanks(" \t\r\n\v\f\0", 7);  // device tree texts end with a NUL
constexpr std::string_view kLineEnds("\r\n\0", 3);

}  // namespace

bool FirstSerialNumber(std::span<const char* const> files, std::string& serial) {
  for (const char* file : files) {
    const std::string content = ReadSmallFile(file, kMaxSerial);
    std::string_view text = content;
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    if (text.empty()) continue;
    text = text.substr(0, text.find_first_of(kLineEnds));
    serial = text.substr(0, text.find_last_not_of(kBlanks) + 1);
    return true;
  }
  return false;
}

bool MfgItem::GetSystemSerialNumber(std::string& serial) {
  if (const char* file = KvGetenvText("MFG_FILE")) return FirstSerialNumber({&file, 1}, serial);
  static constexpr const char* kFiles[] = {"/proc/device-tree/serial-number", "/etc/machine-id"};
  return FirstSerialNumber(kFiles, serial);
}
