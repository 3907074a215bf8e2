#pragma once

#include "clients/ExternalMgrApi.h"
#include "items/BoolItem.h"
#include "items/StringItem.h"
#include "items/UShortItem.h"

// Live-streaming state of one stream: its members in this order, without padding.
class ExternalMgrApi::StreamingLvsStateItem : public Item {
 public:
  unsigned int Size() const override;
  unsigned char* Encode(unsigned char* p) const override;
  unsigned char* Decode(unsigned char* p) override;

  BoolItem enabled;
  BoolItem highQuality;
  UShortItem camera;
  StringItem address;  // of the receiver, IPv4 as dotted text
  UShortItem port;     // of the receiver
};
