#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Sqlite.h"
#include "Tables.h"
#include "seal/CommitHash.h"

namespace reader {

// Reads the rows of all tables of a recording of the current schema as they stand, in the order of their
// sequence numbers. Memory use does not depend on the number of rows.
class SealedRows {
 public:
  // The connection must outlive this object. False: see Fault.
  bool Open(Connection& connection);

  bool AtEnd() const { return heap_.empty(); }
  std::int64_t Seq() const { return seqs_[heap_.front()]; }  // of the current row
  // Adds the current row to the hash and moves to the next one. False: see Fault.
  bool Take(seal::CommitHash& hash);

  const std::string& Fault() const { return fault_; }

 private:
  bool Step(std::size_t table);
  bool AddValue(std::size_t table, int column, seal::CommitHash& hash);
  void SiftDown(std::size_t at);
  bool Fail(std::size_t table, const std::string& why);

  std::array<Statement, store::kTableCount> rows_;
  std::array<std::int64_t, store::kTableCount> seqs_{};
  std::vector<std::size_t> heap_;  // tables that have rows left: min-heap by sequence number
  std::string fault_;
};

}  // namespace reader
