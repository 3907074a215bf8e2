#include "system/SystemInformation.h"

#include <dirent.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <optional>

#include "DeviceFiles.h"

namespace {

constexpr std::size_t kAddressText = 17;  // "00:11:22:33:44:55"
using MacAddress = std::array<unsigned char, 6>;

// Nothing when the text is not an address, or all zeros.
std::optional<MacAddress> ParseAddress(const std::string& text) {
  if (text.size() < kAddressText || text.find_first_not_of('\n', kAddressText) != std::string::npos)
    return {};
  MacAddress address{};
  for (std::size_t i = 0; i < address.size(); ++i) {
    const char* digits = text.data() + 3 * i;
    const auto [end, error] = std::from_chars(digits, digits + 2, address[i], 16);
    if (error != std::errc{} || end != digits + 2) return {};
    if (i + 1 < address.size() && digits[2] != ':') return {};
  }
  if (address == MacAddress{}) return {};
  return address;
}

std::optional<MacAddress> AddressOf(const std::string& directory, const std::string& interface) {
  // Reads longer addresses whole, so that ParseAddress rejects them.
  return ParseAddress(ReadSmallFile(directory + "/" + interface + "/address", 128));
}

std::optional<MacAddress> FirstAddress(const std::string& directory) {
  if (auto address = AddressOf(directory, "eth0")) return address;
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(directory.c_str()), closedir);
  if (!entries) return {};
  std::string firstName;
  std::optional<MacAddress> first;
  while (const dirent* entry = readdir(entries.get())) {
    const std::string name = entry->d_name;
    if (first && name > firstName) continue;
    if (auto address = AddressOf(directory, name)) {
      first = address;
      firstName = name;
    }
  }
  return first;
}

}  // namespace

void MacAddressUnder(const std::string& directory, unsigned char (&mac)[6]) {
  const MacAddress address = FirstAddress(directory).value_or(MacAddress{});
  std::copy(address.begin(), address.end(), mac);
}

void SystemInformation::GetShortMacAddress(unsigned char (&mac)[6]) {
  MacAddressUnder("/sys/class/net", mac);
}
