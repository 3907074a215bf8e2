#pragma once

#include <memory>
#include <string>

#include "items/Item.h"

namespace ipc {

// Which notices of a subscription reach its handler: those of the server that was subscribed to, when they
// hold the whole item. An empty notice does reach it, too: each handler has a line of its own for that.
class NoticeCheck {
 public:
  // `scratch` is an item of the class that is expected; null: any payload will do.
  NoticeCheck(std::string server, std::unique_ptr<Item> scratch)
      : server_(std::move(server)), scratch_(std::move(scratch)) {}

  // False after one mask-2 line.
  bool operator()(IpcMessage& notice) const;

 private:
  std::string server_;
  std::shared_ptr<Item> scratch_;
};

}  // namespace ipc
