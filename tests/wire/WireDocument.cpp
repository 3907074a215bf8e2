#include "WireDocument.h"

#include <gtest/gtest.h>

#include <charconv>
#include <fstream>
#include <sstream>

namespace {

bool ParseNumber(std::string_view text, int base, int& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  return error == std::errc() && end == text.data() + text.size();
}

}  // namespace

bool WirePacket::Add(const std::string& line) {
  std::istringstream words(line.substr(0, line.find(';')));
  for (std::string word; words >> word;) {
    int value = kAny;
    if (word[0] == '*') {
      if (bytes_.empty() || !ParseNumber(word.substr(1), 10, value) || value < 1) return false;
      bytes_.insert(bytes_.end(), static_cast<std::size_t>(value) - 1, bytes_.back());
      continue;
    }
    if (word != "??" && (word.size() != 2 || !ParseNumber(word, 16, value))) return false;
    bytes_.push_back(value);
  }
  return true;
}

std::string WirePacket::Bytes() const {
  std::string bytes;
  for (const int byte : bytes_) {
    if (byte == kAny) return {};
    bytes += static_cast<char>(byte);
  }
  return bytes;
}

bool WirePacket::Matches(const std::string& packet) const {
  if (packet.size() != bytes_.size()) return false;
  for (std::size_t i = 0; i < bytes_.size(); ++i) {
    if (bytes_[i] != kAny && bytes_[i] != static_cast<unsigned char>(packet[i])) return false;
  }
  return true;
}

WireDocument::WireDocument(const std::string& path) {
  std::ifstream file(path);
  bool inBlock = false;
  Entry* entry = nullptr;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("```")) {
      inBlock = line == "```wire";
      entry = nullptr;
      continue;
    }
    if (!inBlock) continue;
    const bool isBytes = line.starts_with(" ");
    if (!isBytes) entry = Begin(line);
    if (entry == nullptr || (isBytes && !entry->packet.Add(line)))
      ADD_FAILURE() << "not understood: " << line;
  }
}

WireDocument::Entry* WireDocument::Begin(const std::string& headline) {
  const std::size_t gap = headline.find("  ");
  if (gap == std::string::npos) return nullptr;
  const auto [entry, isNew] = packets_.try_emplace(headline.substr(0, gap));
  entry->second.direction = headline.substr(gap + 2);
  return isNew ? &entry->second : nullptr;
}

const WirePacket& WireDocument::Packet(const std::string& name, const std::string& direction) {
  const auto found = packets_.find(name);
  if (found == packets_.end() || found->second.direction != direction) {
    ADD_FAILURE() << "the document has no packet " << name << " " << direction;
    static const WirePacket none;
    return none;
  }
  found->second.played = true;
  return found->second.packet;
}

std::vector<std::string> WireDocument::NotPlayed() const {
  std::vector<std::string> names;
  for (const auto& [name, entry] : packets_) {
    if (!entry.played && entry.direction != "item") names.push_back(name);
  }
  return names;
}
