#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "Words.h"
#include "items/Item.h"
#include "system/Process.h"

// What the servers around MetadataMgr tell it, in three tables: a further item or event is a row.

// A value: an item that a server publishes, or the payload of a message that goes to MetadataMgr
// without a subscription.
struct Publication {
  e_Process server;
  enum Kind { kItem, kMessage } kind;
  unsigned int id;                  // of the item, or the message's type
  const char* source;               // its name in the list of what was sent
  std::unique_ptr<Item> (*make)();  // as it is at the start
  std::string (*describe)(const Item& item);
  void (*stamp)(Item& item, std::uint32_t tick);
};

// A verb that changes a value, which is then sent.
struct Change {
  const char* verb;
  e_Process server;
  Publication::Kind kind;
  unsigned int id;
  void (*apply)(Item& item, const Words& arguments);  // null: an event without a value
  bool idFromArgument = false;                        // the first, a number, is added to `id`
};

// A verb that sets how often a reading is sent, in readings per second of the drive.
struct Reading {
  const char* verb;
  e_Process server;
  unsigned int itemId;
  void (*advance)(Item& item, double driveSeconds);
};

std::span<const Publication> Publications();
std::span<const Change> Changes();
std::span<const Reading> Readings();
