#pragma once

#include <map>
#include <string>
#include <vector>

// A packet of the document: its bytes, of which some may be any.
class WirePacket {
 public:
  // Adds what stands on one line: bytes in hexadecimal, "??" for any, " *9" to repeat the last one.
  // False when it is something else.
  bool Add(const std::string& line);

  // The bytes; nothing when some may be any.
  std::string Bytes() const;
  bool Matches(const std::string& packet) const;

 private:
  static constexpr int kAny = -1;
  std::vector<int> bytes_;
};

// The packets and items of the document's blocks marked "wire", by name.
class WireDocument {
 public:
  // A line that is not understood fails the test.
  explicit WireDocument(const std::string& path);

  // The packet of that name and direction ("A > B", or "item"); fails the test and gives an empty one when
  // there is none. What was asked for counts as played.
  const WirePacket& Packet(const std::string& name, const std::string& direction);
  // Those that travel and were not asked for.
  std::vector<std::string> NotPlayed() const;

 private:
  struct Entry {
    std::string direction;
    WirePacket packet;
    bool played = false;
  };

  // Null where there is one of that name.
  Entry* Begin(const std::string& headline);

  std::map<std::string, Entry> packets_;
};
