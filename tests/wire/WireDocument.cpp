#include "WireDocument.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "support/Hex.h"

namespace {

// Adds the bytes of a line: hexadecimal, "??" for any byte, "*9" to repeat the last byte.
bool Add(const std::string& line, std::string& hex) {
  std::istringstream words(line.substr(0, line.find(';')));
  for (std::string word; words >> word;) {
    int times = 1;
    if (word[0] == '*') {
      times = std::atoi(word.c_str() + 1) - 1;
      word = hex.substr(std::max<std::size_t>(hex.size(), 2) - 2);
    }
    const bool known = word == "??" || word.find_first_not_of("0123456789ABCDEFabcdef") == std::string::npos;
    if (times < 1 || word.size() != 2 || !known) return false;
    if (word != "??") word = ToHex(FromHex(word));
    while (times-- > 0) hex.append(hex.empty() ? "" : " ").append(word);
  }
  return true;
}

}  // namespace

WireDocument::WireDocument(const std::string& path) {
  std::ifstream file(path);
  bool inBlock = false;
  Entry* entry = nullptr;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("```")) {
      inBlock = line == "```wire";
      entry = nullptr;
    } else if (inBlock && line.starts_with(" ")) {
      EXPECT_TRUE(entry != nullptr && Add(line, entry->hex)) << "not understood: " << line;
    } else if (inBlock) {
      const std::size_t gap = std::min(line.find("  "), line.size() - 2);
      entry = &packets_[line.substr(0, gap)];
      EXPECT_EQ(entry->direction, "") << "twice: " << line;
      entry->direction = line.substr(gap + 2);
    }
  }
}

const std::string& WireDocument::Packet(const std::string& name, const std::string& direction) {
  Entry& entry = packets_[name];
  EXPECT_EQ(entry.direction, direction) << "of packet " << name;
  entry.played = true;
  return entry.hex;
}

std::string WireDocument::Bytes(const std::string& name, const std::string& direction) {
  const std::string& hex = Packet(name, direction);
  EXPECT_EQ(hex.find('?'), std::string::npos) << name;
  return FromHex(hex);
}

bool WireDocument::Matches(const std::string& name, const std::string& direction, const std::string& bytes) {
  const std::string& hex = Packet(name, direction);
  const std::string given = ToHex(bytes);
  return std::equal(given.begin(), given.end(), hex.begin(), hex.end(),
                    [](char one, char wanted) { return wanted == '?' || one == wanted; });
}

std::vector<std::string> WireDocument::NotPlayed() const {
  std::vector<std::string> names;
  for (const auto& [name, entry] : packets_) {
    if (!entry.played && entry.direction != "item") names.push_back(name);
  }
  return names;
}
