#pragma once

#include <cstdint>
#include <span>

#include "seal/Types.h"

// What a seal says beside its commit: items one after the other, each a type of one byte, a length of four
// (big-endian) and that many bytes.
namespace seal {

enum class ItemType : unsigned char {
  kFile = 1,      // the file begins: FileItem
  kPath = 2,      // how the recorder's public key certifies the epoch's (KeyTree.h)
  kEpochEnd = 3,  // the epoch's last seal; empty
  kStart = 4,     // the run begins: StartItem
  kEarlier = 5,   // digests of files that were there before there was a key; any bytes
};

// First in the first seal of a file.
struct FileItem {
  Hash previous{};                      // hash of the seal before
  PublicKey root{};                     // the recorder's; zeros: it has none
  std::array<unsigned char, 16> run{};  // the run's id
  std::int64_t number = 0;              // the file's in its series
};

// In the first seal of a run: how the recorder remembers the last run, and what it found of it.
struct StartItem {
  Place expected;
  Place found;
};

void PutItem(Bytes& note, ItemType type, std::span<const unsigned char> content);
void Put(Bytes& note, const FileItem& item);
void Put(Bytes& note, const StartItem& item);

// The whole of a note; an item that is not there is null or empty.
struct NoteItems {
  bool hasFile = false;
  FileItem file;
  bool hasStart = false;
  StartItem start;
  bool endsEpoch = false;
  std::span<const unsigned char> path;
  std::span<const unsigned char> earlier;
};

// False where this is no note: an unknown type or one twice, a wrong length. The spans point into it.
bool ReadNote(std::span<const unsigned char> note, NoteItems& items);

}  // namespace seal
