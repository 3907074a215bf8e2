#pragma once

#include <cstdint>
#include <span>

#include "seal/Types.h"

// The note of a seal: a sequence of items, each one byte of type, four bytes of length (big-endian), then the
// content.
namespace seal {

enum class ItemType : unsigned char {
  kFile = 1,      // a file begins: FileItem
  kPath = 2,      // certificates from the recorder's key to the epoch's (KeyTree.h)
  kEpochEnd = 3,  // the epoch's last seal; empty
  kStart = 4,     // a run begins: StartItem
  kEarlier = 5,   // digests of files older than the key; any bytes
};

// First item in the first seal of a file.
struct FileItem {
  Hash previous{};                      // hash of the previous seal
  PublicKey root{};                     // the recorder's; zeros: no key
  std::array<unsigned char, 16> run{};  // the run's id
  std::int64_t number = 0;              // the file's number in its series
};

// In the first seal of a run: the last seal as the recorder remembers it, and as it found it.
struct StartItem {
  Place expected;
  Place found;
};

void PutItem(Bytes& note, ItemType type, std::span<const unsigned char> content);
void Put(Bytes& note, const FileItem& item);
void Put(Bytes& note, const StartItem& item);

// All items of a note; a missing item is false or empty.
struct NoteItems {
  bool hasFile = false;
  FileItem file;
  bool hasStart = false;
  StartItem start;
  bool endsEpoch = false;
  std::span<const unsigned char> path;
  std::span<const unsigned char> earlier;
};

// False if the note is invalid: an unknown or repeated type, a wrong length. The spans point into `note`.
bool ReadNote(std::span<const unsigned char> note, NoteItems& items);

}  // namespace seal
