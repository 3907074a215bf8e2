#include "TextFile.h"

#include <array>
#include <fstream>

namespace bench {

bool ReadTextFile(const std::string& path, std::string& text) {
  std::ifstream file(path, std::ios::binary);
  std::array<char, 4096> block;
  text.clear();
  while (file.read(block.data(), block.size()), file.gcount() > 0) {
    text.append(block.data(), static_cast<std::size_t>(file.gcount()));
  }
  return file.is_open() && !file.bad();
}

}  // namespace bench
