#pragma once

#include <iterator>

#include "clients/SubscribeClient.h"
#include "system/Servers.h"

// Client of the external manager, which streams live video on up to six streams.
class ExternalMgrApi : public SubscribeClient {
 public:
  // Item of stream 0, a StreamingLvsStateItem; the items of the other streams follow.
  static constexpr unsigned int kFirstStreamState = servers::ItemId(MetadataMgrNotice_LiveStream0);
  static constexpr unsigned int kStreams = std::size(servers::kExternalMgr);

  // The state of one stream. Each process that uses this class defines it.
  class StreamingLvsStateItem;

  using SubscribeClient::SubscribeClient;

  // True when the environment variable LVS_FORCE_HQ exists: it forces live streaming to high quality
  // system-wide. Reads the variable once.
  static bool InLvsForceHqStreaming();

 protected:
  bool UsesValue() const override { return false; }
  std::unique_ptr<Item> ScratchItem(const Item& item) const override;
};
