#pragma once

#include "clients/SubscribeClient.h"

// Client of the external manager, which streams live video on up to six streams.
class ExternalMgrApi : public SubscribeClient {
 public:
  static constexpr unsigned int kFirstStreamState = 16;  // StreamingLvsStateItem of stream 0; 5 more follow
  static constexpr unsigned int kStreams = 6;

  // The state of one stream. Defined by the processes that use it.
  class StreamingLvsStateItem;

  using SubscribeClient::SubscribeClient;

  // True when live streaming is forced to high quality system-wide: the environment variable
  // LVS_FORCE_HQ exists. It is looked up once.
  static bool InLvsForceHqStreaming();
};
