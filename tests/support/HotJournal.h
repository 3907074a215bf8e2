#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "system/BigEndian.h"

// A rollback journal that claims to belong to a transaction of several files. SQLite deletes the file that it
// names, and restores a database of `pages` pages without changes.
inline std::string HotJournal(const std::string& victim, std::uint32_t pages) {
  constexpr std::string_view kMagic{"\xd9\xd5\x05\xf9\x20\xa1\x63\xd7", 8};
  std::string journal(kMagic);
  std::uint32_t sum = 0;
  for (const char c : victim) sum += static_cast<std::uint32_t>(static_cast<signed char>(c));
  const auto put = [&journal](std::uint32_t word) {
    unsigned char bytes[4];
    PutU32(bytes, word);
    journal.append(reinterpret_cast<char*>(bytes), sizeof bytes);
  };
  for (const std::uint32_t word : {0U, 0U, pages, 512U, 1024U}) put(word);
  journal.resize(512);
  put((1U << 30) / 1024 + 1);
  journal += victim;
  put(static_cast<std::uint32_t>(victim.size()));
  put(sum);
  return journal.append(kMagic);
}
