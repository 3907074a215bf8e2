#pragma once

#include <cstddef>
#include <memory>

#include "FollowedServers.h"
#include "ManagerLog.h"
#include "system/KvGetenv.h"

// Common steps of the subscribe operations of all servers.
namespace subscribing {

constexpr int kPatientTimeoutMs = 30000;  // for the configuration manager and the state manager

inline bool IsOff(const ServerRow& server) {
  return server.offSwitch != nullptr && KvGetenv(server.offSwitch) != nullptr;
}

inline void Trace(e_Process process, e_LogMask mask = kLogInfo) {
  kManagerLog({mask}, "SubscribeTo", servers::Of(process).name);
}

// Logs and returns true when the server is switched off.
inline bool Ignored(e_Process process) {
  const ServerRow& server = servers::Of(process);
  if (!IsOff(server)) return false;
  kManagerLog(kLogDetail, "SubscribeTo", server.name, " - set to ignore ", server.name, " ");
  return true;
}

template <typename Client, typename... Arguments>
Client& MakeOnce(std::unique_ptr<Client>& client, LinxIpc& ipc, const Arguments&... arguments) {
  if (!client) client = std::make_unique<Client>(ipc, arguments...);
  return *client;
}

// Subscribes to the server's items in order; logs the first failure and returns false. Leaves the values as
// constructed when the server is switched off.
template <e_Process kProcess, std::size_t kCount>
bool Fetch(SubscribeClient& client, MetadataMgr* manager, Item* const (&values)[kCount]) {
  constexpr const ServerRow& server = servers::Of(kProcess);
  static_assert(server.items.size() == kCount);
  if (IsOff(server)) return true;
  for (std::size_t i = 0; i < kCount; ++i) {
    const ServedItem& item = server.items[i];
    const FollowedItem& row = FollowedItemOf(item.notificationId);
    if (client.Subscribe(item.id, item.notificationId, *values[i], row.handler, manager) == 0) continue;
    kManagerLog(kLogError, row.failure);
    return false;
  }
  return true;
}

// The whole operation for a server with one item. When the server is switched off, reports nothing, or the
// item as constructed, as its row says.
template <e_Process kProcess, typename T, typename Client, typename Report>
bool SubscribeAndReport(std::unique_ptr<Client>& client, LinxIpc& ipc, MetadataMgr* manager, Report report) {
  Trace(kProcess);
  if (!servers::Of(kProcess).defaultWhenOff && Ignored(kProcess)) return true;
  T value;
  if (!Fetch<kProcess>(MakeOnce(client, ipc), manager, {&value})) return false;
  report(value);
  return true;
}

}  // namespace subscribing
