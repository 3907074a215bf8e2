#include "ObserverRules.h"

#include <algorithm>
#include <iterator>

#include "system/Messages.h"

namespace ipc {

namespace {

constexpr unsigned int kOpen[] = {
    SubscribeMsg_Subscribe, SubscribeMsg_Unsubscribe,         LogLevelMsg_Get,
    MetadataMgrMsg_Ping,    MetadataMgrMsg_GetLastSystemTick,
};

}  // namespace

bool OpenToObservers(unsigned int type) {
  return std::find(std::begin(kOpen), std::end(kOpen), type) != std::end(kOpen);
}

unsigned int RefusalOf(unsigned int type) {
  return type == MetadataMgrMsg_MetadataToFile ? MetadataMgrMsg_MetadataToFileResponse : 0U;
}

bool IsLongWork(unsigned int type) {
  return type == MetadataMgrMsg_MetadataToFile;
}

}  // namespace ipc
