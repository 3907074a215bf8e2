#include "ipc/LinxServerNameList.h"

#include <algorithm>
#include <vector>

#include "system/Servers.h"

namespace {

struct NamedProcess {
  unsigned int process;
  std::string name;
};

// The servers, MetadataMgr itself and the stream manager.
const std::vector<NamedProcess>& Processes() {
  static const std::vector<NamedProcess> processes = [] {
    std::vector<NamedProcess> all = {{e_Process_MetadataMgr, "MetadataMgr"},
                                     {e_Process_StreamMgr, "StreamMgr"}};
    for (const ServerRow& server : servers::kAll) all.push_back({server.process, server.name});
    return all;
  }();
  return processes;
}

const std::string kUnknown;

}  // namespace

const LinxServerNameList& LinxServerNameList::Instance() {
  static const LinxServerNameList instance;
  return instance;
}

const std::string& LinxServerNameList::Name(unsigned int process) const {
  const auto& all = Processes();
  const auto found = std::find_if(all.begin(), all.end(),
                                  [process](const NamedProcess& known) { return known.process == process; });
  return found == all.end() ? kUnknown : found->name;
}

bool LinxServerNameList::Has(const std::string& name) const {
  const auto& all = Processes();
  return std::any_of(all.begin(), all.end(),
                     [&name](const NamedProcess& known) { return known.name == name; });
}
