#include "Processes.h"

#include "Words.h"
#include "ipc/LinxServerNameList.h"
#include "system/Servers.h"

namespace bench {

const std::string kBenchName = "Bench";

const std::string& ProcessName(std::uint32_t process) {
  return LinxServerNameList::Instance().Name(process);
}

const std::string& MetadataMgrName() {
  return ProcessName(e_Process_MetadataMgr);
}

const std::string& StateMgrName() {
  return ProcessName(e_Process_StateMgr);
}

bool ReadProcess(const std::string& word, std::uint32_t& process) {
  constexpr std::uint32_t kNumbers = 64;  // more than the system has processes
  if (ReadNumber(word, process)) return true;
  for (std::uint32_t number = 0; number < kNumbers; ++number) {
    if (word.empty() || ProcessName(number) != word) continue;
    process = number;
    return true;
  }
  return false;
}

}  // namespace bench
