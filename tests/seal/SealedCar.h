#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "seal/Chain.h"
#include "seal/Sealer.h"
#include "support/TempDir.h"

using Value = std::variant<std::monostate, std::int64_t, std::string>;

struct Row {
  std::string table;
  std::vector<Value> values;  // values[0] is the sequence number

  bool operator==(const Row&) const = default;
};

struct Commit {
  seal::Seal seal;
  std::vector<Row> rows;
};

using File = std::vector<Commit>;

void Add(seal::CommitHash& hash, const Row& row);

// A recorder without a store: seals invented records and keeps its files in memory.
class SealedCar {
 public:
  enum class Key : unsigned char { kNone, kOwn };

  explicit SealedCar(Key key = Key::kOwn, unsigned char seed = 7);

  void Start();
  void NewFile();
  // Makes one commit of `rows` records, `laterMs` after the previous commit.
  void Record(int rows = 3, std::int64_t laterMs = 500);
  void RecordFor(std::int64_t ms) {
    for (std::int64_t t = 0; t < ms; t += 500) Record();
  }
  void End();  // ends the run in order
  void CutOff() { sealer_.reset(); }
  void Drive(std::int64_t ms) {
    Start();
    RecordFor(ms);
    End();
  }

  std::string KeyPath() const { return dir_.Path("key"); }
  seal::PublicKey Root() const { return root_; }
  seal::Sealer& Sealer() { return *sealer_; }
  seal::KeyTree StolenKey();  // the current content of the key file

  std::vector<File> files;

 private:
  TempDir dir_;
  bool hasKey_;
  seal::PublicKey root_{};
  std::optional<seal::Sealer> sealer_;
  std::int64_t seq_ = 0;
  std::int64_t tick_ = 0;
  unsigned char run_ = 0;
};

inline constexpr const char* kHardware = "02:00:00:00:00:01";

// Verifies the files. Returns "proven", another verdict as "consistent", or "altered: file 2, seal 17: why".
std::string Verify(const std::vector<File>& files, const std::optional<seal::PublicKey>& key);
