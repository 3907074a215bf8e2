#pragma once

#include <map>
#include <string>
#include <vector>

// The packets and items in the blocks "wire" of a document, by name. Bytes have the format of ToHex, with
// "??" for any byte.
class WireDocument {
 public:
  // A malformed line fails the test.
  explicit WireDocument(const std::string& path);

  // Returns the packet of that name and direction ("A > B", or "item"), and marks it as played. A missing
  // packet fails the test.
  const std::string& Packet(const std::string& name, const std::string& direction);
  // Returns its bytes. None of them may be "??".
  std::string Bytes(const std::string& name, const std::string& direction);
  bool Matches(const std::string& name, const std::string& direction, const std::string& bytes);
  // The packets that were not played. Items do not count.
  std::vector<std::string> NotPlayed() const;

 private:
  struct Entry {
    std::string direction;
    std::string hex;
    bool played = false;
  };

  std::map<std::string, Entry> packets_;
};
