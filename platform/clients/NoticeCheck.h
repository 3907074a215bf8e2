#pragma once

#include <memory>
#include <string>

#include "items/Item.h"

namespace ipc {

// Admits the notices of a subscription that come from its server and hold the whole item. Also admits empty
// notices, because each handler logs these itself.
class NoticeCheck {
 public:
  // `scratch` is an item of the expected class; null admits any payload.
  NoticeCheck(std::string server, std::unique_ptr<Item> scratch)
      : server_(std::move(server)), scratch_(std::move(scratch)) {}

  // Logs each rejected notice with mask 2.
  bool operator()(IpcMessage& notice) const;

 private:
  std::string server_;
  std::shared_ptr<Item> scratch_;
};

}  // namespace ipc
