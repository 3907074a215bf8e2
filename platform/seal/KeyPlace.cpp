#include "seal/KeyPlace.h"

#include "system/KvGetenv.h"
#include "system/SystemInformation.h"

namespace seal {

std::string KeyFilePath() {
  const char* path = KvGetenvText("METADATA_KEY");
  return path == nullptr ? "/var/lib/metadatamgr/seal.key" : path;
}

std::string Hardware() {
  constexpr char kHex[] = "0123456789abcdef";
  unsigned char address[6] = {};
  SystemInformation::GetShortMacAddress(address);
  std::string text;
  for (const unsigned char byte : address) {
    if (!text.empty()) text += ':';
    text.append({kHex[byte >> 4], kHex[byte & 15]});
  }
  return text;
}

const char* TextOf(KeyFile::Outcome outcome) {
  switch (outcome) {
    case KeyFile::Outcome::kOk:
      return "good";
    case KeyFile::Outcome::kMissing:
      return "it does not exist";
    case KeyFile::Outcome::kExposed:
      return "it is not a file that only this user may access";
    case KeyFile::Outcome::kBusy:
      return "another process uses it";
    case KeyFile::Outcome::kInvalid:
      return "it is damaged, or belongs to a recorder with another hardware address";
    case KeyFile::Outcome::kFailed:
      return "it cannot be read or written";
  }
  return "";
}

}  // namespace seal
