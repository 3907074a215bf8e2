#include "SentLog.h"

#include <fstream>

#include "system/KvGetenv.h"

namespace bench {

// Writes whole lines at once: a killed process leaves no partial line.
void LogSent(const std::string& process, const std::string& line) {
  const char* directory = KvGetenv(kSentDirectoryVariable);
  if (directory == nullptr) return;
  std::ofstream file(std::string(directory) + "/" + process + ".log", std::ios::app);
  file << line + "\n";
}

}  // namespace bench
