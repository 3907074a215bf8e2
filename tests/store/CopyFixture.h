#pragma once

#include <set>

#include "StoreFixture.h"
#include "store/MetadataReader.h"

constexpr unsigned int kFromBeginning = 0;
constexpr unsigned int kToEnd = 0xFFFFFFFFU;

// A store that is copied, into "copy.db" unless another name is given.
class CopyTest : public StoreTest {
 protected:
  bool Copy(unsigned int first = kFromBeginning, unsigned int last = kToEnd,
            const std::string& name = "copy.db", Watchdog* watchdog = nullptr) {
    return MetadataReader().ReadToNewFile(dir_.Path("metadata"), dir_.Path(name), first, last, watchdog);
  }
  // Replaces an earlier copy, and reads the new copy.
  std::string CopyAndRead(unsigned int first, unsigned int last, const std::string& sql) {
    std::filesystem::remove(dir_.Path("copy.db"));
    return Copy(first, last) ? InCopy(sql) : "not copied";
  }
  std::string InCopy(const std::string& sql) const { return Connection(dir_.Path("copy.db")).Rows(sql); }

  // Compares the copy with a file.
  void ExpectSame(const std::string& sql) const { EXPECT_EQ(InCopy(sql), Rows(sql)); }

  // Time passes until this tick, then TimerTick is called.
  void At(unsigned int tick) { After(tick - clock_.tick); }

  // Adds temperatures at the first tick of the file, to make a long recording at once.
  void Fill(int rows) const {
    EXPECT_EQ(
        Rows("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<" + std::to_string(rows) +
             ") INSERT INTO temperature SELECT -i, (SELECT min(tick) FROM clock), NULL, 1, 0, "
             "i%100 FROM n"),
        "");
  }

  // The names in the directory.
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir_.Path(""))) {
      names.insert(entry.path().filename());
    }
    return names;
  }
};
