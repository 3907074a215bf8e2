#include "seal/Note.h"

#include <algorithm>

#include "BigEndian64.h"

namespace seal {
namespace {

constexpr std::size_t kHeadBytes = 5;
constexpr std::size_t kFileBytes = 32 + 32 + 16 + 8;
constexpr std::size_t kPlaceBytes = 8 + 32;
constexpr std::size_t kStartBytes = 2 * kPlaceBytes;

template <std::size_t kSize>
unsigned char* PutArray(unsigned char* p, const std::array<unsigned char, kSize>& value) {
  return std::copy(value.begin(), value.end(), p);
}

template <std::size_t kSize>
const unsigned char* TakeArray(const unsigned char* p, std::array<unsigned char, kSize>& value) {
  std::copy_n(p, kSize, value.begin());
  return p + kSize;
}

unsigned char* PutPlace(unsigned char* p, const Place& place) {
  PutU64(p, static_cast<std::uint64_t>(place.number));
  return PutArray(p + 8, place.hash);
}

const unsigned char* TakePlace(const unsigned char* p, Place& place) {
  place.number = static_cast<std::int64_t>(GetU64(p));
  return TakeArray(p + 8, place.hash);
}

void TakeFile(const unsigned char* p, FileItem& item) {
  p = TakeArray(TakeArray(TakeArray(p, item.previous), item.root), item.run);
  item.number = static_cast<std::int64_t>(GetU64(p));
}

bool TakeItem(unsigned char type, std::span<const unsigned char> content, NoteItems& items) {
  switch (static_cast<ItemType>(type)) {
    case ItemType::kFile:
      items.hasFile = content.size() == kFileBytes;
      if (items.hasFile) TakeFile(content.data(), items.file);
      return items.hasFile;
    case ItemType::kPath:
      items.path = content;
      return !content.empty();
    case ItemType::kEpochEnd:
      items.endsEpoch = true;
      return content.empty();
    case ItemType::kStart:
      items.hasStart = content.size() == kStartBytes;
      if (items.hasStart) (void)TakePlace(TakePlace(content.data(), items.start.expected), items.start.found);
      return items.hasStart;
    case ItemType::kEarlier:
      items.earlier = content;
      return !content.empty();
  }
  return false;
}

}  // namespace

void PutItem(Bytes& note, ItemType type, std::span<const unsigned char> content) {
  std::array<unsigned char, kHeadBytes> head{static_cast<unsigned char>(type)};
  PutU32(head.data() + 1, static_cast<std::uint32_t>(content.size()));
  note.insert(note.end(), head.begin(), head.end());
  note.insert(note.end(), content.begin(), content.end());
}

void Put(Bytes& note, const FileItem& item) {
  std::array<unsigned char, kFileBytes> content;
  unsigned char* p = PutArray(PutArray(PutArray(content.data(), item.previous), item.root), item.run);
  PutU64(p, static_cast<std::uint64_t>(item.number));
  PutItem(note, ItemType::kFile, content);
}

void Put(Bytes& note, const StartItem& item) {
  std::array<unsigned char, kStartBytes> content;
  (void)PutPlace(PutPlace(content.data(), item.expected), item.found);
  PutItem(note, ItemType::kStart, content);
}

// Types must rise, so none comes twice.
bool ReadNote(std::span<const unsigned char> note, NoteItems& items) {
  items = NoteItems{};
  unsigned char last = 0;
  while (!note.empty()) {
    if (note.size() < kHeadBytes || note[0] <= last) return false;
    last = note[0];
    const std::size_t bytes = GetU32(note.data() + 1);
    note = note.subspan(kHeadBytes);
    if (bytes > note.size() || !TakeItem(last, note.first(bytes), items)) return false;
    note = note.subspan(bytes);
  }
  return true;
}

}  // namespace seal
