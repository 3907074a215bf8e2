#pragma once

#include <set>

#include "StoreFixture.h"
#include "store/MetadataReader.h"

constexpr unsigned int kFromBeginning = 0;
constexpr unsigned int kToEnd = 0xFFFFFFFFU;

// A store of which copies are made: "copy.db" unless another name is given.
class CopyTest : public StoreTest {
 protected:
  bool Copy(unsigned int first = kFromBeginning, unsigned int last = kToEnd,
            const std::string& name = "copy.db", Watchdog* watchdog = nullptr) {
    return MetadataReader().ReadToNewFile(dir_.Path("metadata"), dir_.Path(name), first, last, watchdog);
  }
  // Of a copy that takes the place of an earlier one.
  std::string CopyAndRead(unsigned int first, unsigned int last, const std::string& sql) {
    std::filesystem::remove(dir_.Path("copy.db"));
    return Copy(first, last) ? InCopy(sql) : "not copied";
  }
  std::string InCopy(const std::string& sql) const { return Connection(dir_.Path("copy.db")).Rows(sql); }

  // In the copy and in a file.
  void ExpectSame(const std::string& sql) const { EXPECT_EQ(InCopy(sql), Rows(sql)); }

  // Time passes until this tick, then the store is told of it.
  void At(unsigned int tick) { After(tick - clock_.tick); }

  // Adds temperatures to the file, at the tick at which it begins: a long recording at once.
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
