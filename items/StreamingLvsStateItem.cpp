#include "StreamingLvsStateItem.h"

unsigned int ExternalMgrApi::StreamingLvsStateItem::Size() const {
  return enabled.Size() + highQuality.Size() + camera.Size() + address.Size() + port.Size();
}

unsigned char* ExternalMgrApi::StreamingLvsStateItem::Encode(unsigned char* p) const {
  p = enabled.Encode(p);
  p = highQuality.Encode(p);
  p = camera.Encode(p);
  p = address.Encode(p);
  return port.Encode(p);
}

unsigned char* ExternalMgrApi::StreamingLvsStateItem::Decode(unsigned char* p) {
  p = enabled.Decode(p);
  p = highQuality.Decode(p);
  p = camera.Decode(p);
  p = address.Decode(p);
  return port.Decode(p);
}
