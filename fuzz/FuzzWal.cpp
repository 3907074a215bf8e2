// Scans a WAL of any bytes, usually a real one that was changed. The scan must accept exactly what SQLite
// recovers, and must not read past the end.

#include "Input.h"
#include "store/WalFiles.h"

namespace {

void Change(std::string& wal, Input& input) {
  const std::size_t at = (input.Word() >> 8) % wal.size();
  switch (input.Below(8)) {
    case 0:
      wal.resize(at);
      break;
    case 1: {  // replaces a frame by another
      const auto frameAt = [&wal](std::size_t number) {
        return std::min(wal.size(), kWalHeader + number * kWalFrame);
      };
      const std::string frame = wal.substr(frameAt(input.Below(8)), kWalFrame);
      wal.replace(frameAt(at / kWalFrame), frame.size(), frame);
      break;
    }
    default: {
      const std::string bytes = input.Take(1 + input.Below(16));
      wal.replace(at, std::min(bytes.size(), wal.size() - at), bytes);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const WalFiles kMade[] = {MakeWal(4), MakeWal(6, 4)};
  static const TempDir directory;
  Input input(data, size);
  const std::size_t which = input.Below(3);
  WalFiles files = kMade[which % 2];
  if (which == 2) files.wal = input.Take(size);
  while (!input.Done() && !files.wal.empty()) Change(files.wal, input);
  const auto found = store::ScanWal(ReaderOf(files.wal));
  const bool folds = found.state == store::WalState::kSound || found.state == store::WalState::kTorn;
  Require(found.endOfCommits <= files.wal.size() && found.brokenAt <= files.wal.size());
  Require(folds || found.state == store::WalState::kDamaged || files.wal.empty());
  // A WAL with another page size belongs to another database.
  if (folds && found.frameBytes == kWalFrame)
    Require(found.endOfCommits == RecoveredBySqlite(files, directory));
  return 0;
}
