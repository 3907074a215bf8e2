#pragma once

#include <optional>

#include "Batch.h"
#include "Database.h"
#include "seal/Sealer.h"

namespace store {

// The table "seal" of the recording that is being written.
class SealTable {
 public:
  SqliteCode Prepare(sqlite3* database);
  // Call within the transaction of the sealed records.
  SqliteCode Insert(const seal::Seal& seal);
  // Place of the newest seal, and its last record; zeros if there is none.
  SqliteCode ReadLast(seal::Place& place, std::int64_t& lastSeq);

 private:
  Statement insert_;
  Statement readLast_;
};

// Seals the records of the batch up to this one, as one commit. Valid until the next call.
const seal::Seal& SealRows(const Batch& batch, const RecordHeader& last, seal::Sealer& sealer);

// The last seal of an earlier recording, which may be hostile. `seal` stays empty if there is none or the row
// cannot be a seal. kOk or an error.
SqliteCode ReadLastSeal(Database& database, std::optional<seal::Found>& seal);

}  // namespace store
