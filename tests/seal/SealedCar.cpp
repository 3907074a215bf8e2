#include "SealedCar.h"

#include <gtest/gtest.h>

namespace {

Row Invent(std::int64_t seq, std::int64_t tick) {
  if (seq % 3 == 0)
    return {"string", {seq, tick, std::monostate(), 1, 40, "plate \u00c4 " + std::to_string(seq)}};
  return {"speed", {seq, tick, tick - 3, 1, 1, seq % 240, 0}};
}

std::optional<seal::Found> LastOf(const std::vector<File>& files) {
  if (files.empty() || files.back().empty()) return std::nullopt;
  seal::NoteItems first;
  EXPECT_TRUE(seal::ReadNote(files.back().front().seal.note, first));
  return seal::Found{files.back().back().seal, first.file.root};
}

const char* NameOf(seal::Verdict verdict) {
  constexpr const char* kNames[] = {"proven", "tail", "consistent", "altered", "incomplete", "cannot tell"};
  return kNames[static_cast<std::size_t>(verdict)];
}

bool Follow(seal::Chain& chain, const File& file, std::int64_t& number) {
  chain.BeginFile();
  for (const Commit& commit : file) {
    number = commit.seal.place.number;
    if (!chain.Begin(commit.seal)) return false;
    for (const Row& row : commit.rows) Add(chain.Rows(), row);
    if (!chain.End()) return false;
  }
  return true;
}

}  // namespace

void Add(seal::CommitHash& hash, const Row& row) {
  hash.BeginRow(row.table, row.values.size());
  for (const Value& value : row.values) {
    if (const auto* number = std::get_if<std::int64_t>(&value)) {
      hash.Add(*number);
    } else if (const auto* text = std::get_if<std::string>(&value)) {
      hash.Add(std::string_view(*text));
    } else {
      hash.AddNull();
    }
  }
}

SealedCar::SealedCar(Key key, unsigned char seed) : hasKey_(key == Key::kOwn) {
  if (!hasKey_) return;
  seal::Seed secret{};
  secret.fill(seed);
  const seal::KeyTree tree(secret);
  root_ = tree.Root();
  seal::KeyFile file;
  EXPECT_EQ(file.Create(KeyPath(), kHardware, tree), seal::KeyFile::Outcome::kOk);
}

void SealedCar::Start() {
  sealer_.emplace();
  if (hasKey_) {
    EXPECT_EQ(sealer_->UseKey(KeyPath(), kHardware), seal::KeyFile::Outcome::kOk);
  }
  sealer_->StartRun({++run_}, LastOf(files), {});
  seq_ = 0;
  NewFile();
  Record();
}

void SealedCar::NewFile() {
  files.emplace_back();
  sealer_->BeginFile(static_cast<std::int64_t>(files.size()));
}

void SealedCar::Record(int rows, std::int64_t laterMs) {
  Commit commit;
  tick_ += laterMs;
  for (int i = 0; i < rows; ++i) commit.rows.push_back(Invent(++seq_, tick_));
  sealer_->Begin(seq_ - rows + 1, seq_, tick_);
  for (const Row& row : commit.rows) Add(sealer_->Rows(), row);
  commit.seal = sealer_->End();
  files.back().push_back(std::move(commit));
  sealer_->Committed();
}

void SealedCar::End() {
  sealer_->EndRun();
  Record(1);
  sealer_.reset();
}

seal::KeyTree SealedCar::StolenKey() {
  seal::KeyTree tree;
  seal::Place last;
  sealer_.reset();
  seal::KeyFile file;
  EXPECT_EQ(file.Open(KeyPath(), kHardware, tree, last), seal::KeyFile::Outcome::kOk);
  return tree;
}

std::string Verify(const std::vector<File>& files, const std::optional<seal::PublicKey>& key) {
  seal::Chain chain(key);
  std::string worst = "proven";
  for (std::size_t i = 0; i < files.size(); ++i) {
    std::int64_t number = 0;
    (void)Follow(chain, files[i], number);
    if (chain.ProvesBefore() && worst == "tail") worst = "proven";
    if (chain.FileVerdict() == seal::Verdict::kProven) continue;
    worst = NameOf(chain.FileVerdict());
    if (chain.Reason().empty()) continue;
    return worst + ": file " + std::to_string(i + 1) + ", seal " + std::to_string(number) + ": " +
           chain.Reason();
  }
  return worst;
}
