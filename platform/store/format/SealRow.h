#pragma once

#include <algorithm>
#include <span>

#include "seal/Types.h"

namespace store {

template <std::size_t kSize>
bool TakeBytes(std::span<const unsigned char> bytes, std::array<unsigned char, kSize>& value) {
  if (bytes.size() != kSize) return false;
  std::copy(bytes.begin(), bytes.end(), value.begin());
  return true;
}

// Reads a row of the table "seal" (kReadSeals). False if the row cannot be a seal.
template <typename Statement>
bool TakeSeal(const Statement& row, seal::Seal& seal) {
  seal.place.number = row.Integer(0);
  seal.firstSeq = row.Integer(1);
  seal.lastSeq = row.Integer(2);
  seal.lastTick = row.Integer(3);
  seal.epoch = row.Integer(4);
  seal.isSigned = !row.IsNull(6);
  const auto note = row.Blob(7);
  seal.note.assign(note.begin(), note.end());
  return TakeBytes(row.Blob(5), seal.place.hash) &&
         (!seal.isSigned || TakeBytes(row.Blob(6), seal.signature)) && (row.IsNull(7) || !note.empty());
}

}  // namespace store
