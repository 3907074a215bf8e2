#pragma once

#include <map>
#include <string>
#include <vector>

// The packets and items of a document's blocks marked "wire", by name: bytes as ToHex writes them, with "??"
// for any.
class WireDocument {
 public:
  // A line that is not understood fails the test.
  explicit WireDocument(const std::string& path);

  // The packet of that name and direction ("A > B", or "item"); fails the test where there is none. What was
  // asked for counts as played.
  const std::string& Packet(const std::string& name, const std::string& direction);
  // Its bytes, of which none may be any.
  std::string Bytes(const std::string& name, const std::string& direction);
  bool Matches(const std::string& name, const std::string& direction, const std::string& bytes);
  // Those that travel and were not asked for.
  std::vector<std::string> NotPlayed() const;

 private:
  struct Entry {
    std::string direction;
    std::string hex;
    bool played = false;
  };

  std::map<std::string, Entry> packets_;
};
