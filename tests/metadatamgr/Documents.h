#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "support/LogText.h"

// The lines of a document. A missing document fails the test.
inline Lines LinesOfFile(const std::string& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file.is_open()) << path;
  Lines lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

// The lines of the blocks of a kind in a document. A document without such a block fails the test.
inline Lines BlocksOf(const std::string& path, const std::string& kind) {
  Lines blocks;
  bool inBlock = false;
  for (const std::string& line : LinesOfFile(path)) {
    const bool isFence = line.starts_with("```");
    if (inBlock && !isFence) blocks.push_back(line);
    if (isFence) inBlock = line == "```" + kind;
  }
  EXPECT_FALSE(blocks.empty()) << path;
  return blocks;
}
