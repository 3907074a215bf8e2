#pragma once

#include <string>

namespace store {

// The numbers in a recording file's header that say whose it is, and in which form.
constexpr int kApplicationId = 0x4D4D4442;     // "MMDB"
constexpr int kUnfinishedCopyId = 0x4D4D4450;  // "MMDP": not a recording yet
constexpr int kSchemaVersion = 1;

// The statements that make an empty recording file: tables, names of the tags, views, progress.
std::string CreateSchema();

}  // namespace store
