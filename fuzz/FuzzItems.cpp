// Decodes any payload as each item class, in both ways. An item must decode completely or not at all, and its
// encoding must decode to the same item.

#include <string>

#include "Input.h"
#include "StreamingLvsStateItem.h"
#include "ipc/IpcMessage.h"
#include "items/ConfigurationItems.h"
#include "items/CrashItem.h"
#include "items/FpgaExternalEventItem.h"
#include "items/GpsStatusItem.h"
#include "items/MicStatusResponse.h"
#include "items/RadarItem.h"
#include "items/SystickItem.h"
#include "items/TempStatus.h"
#include "items/VideoMgrCameraItem.h"
#include "items/VideoMgrStreamQualityItem.h"
#include "log/LogClient.h"

namespace {

std::string Encoding(const Item& item) {
  std::string bytes(item.Size(), '\0');
  auto* begin = reinterpret_cast<unsigned char*>(bytes.data());
  Require(item.Encode(begin) == begin + bytes.size());
  return bytes;
}

void Fill(IpcMessage& message, std::string payload) {
  payload.resize(std::min(payload.size(), IpcMessage::kMaxPayload));
  (void)message.Allocate(1, static_cast<unsigned int>(payload.size()), payload.data());
}

template <typename ItemType>
void Decode(IpcMessage& message) {
  ItemType item;
  const std::string before = Encoding(item);
  if (!item.DecodeMsg(message)) {
    Require(Encoding(item) == before);
  } else {
    const std::string after = Encoding(item);
    Require(after.size() <= message.Size());
    ItemType again;
    IpcMessage copy;
    Fill(copy, after);
    Require(again.DecodeMsg(copy) && Encoding(again) == after);
  }
  if (message.DataPtr() == nullptr) return;
  ItemType cutShort;
  (void)cutShort.Decode(message.DataPtr());
  Require(Encoding(cutShort).size() <= IpcMessage::kSlack);
}

constexpr void (*kDecoders[])(IpcMessage&) = {
    Decode<BoolItem>,       Decode<UShortItem>,
    Decode<SystickItem>,    Decode<StringItem>,
    Decode<RadarItem>,      Decode<FpgaExternalEventItem>,
    Decode<GpsStatusItem>,  Decode<MicStatusResponse>,
    Decode<TempStatus>,     Decode<CrashItem>,
    Decode<VehicleInfo>,    Decode<VideoMgrCameraItem>,
    Decode<Officer>,        Decode<VideoMgrStreamQualityItem>,
    Decode<DepartmentInfo>, Decode<VideoRecordingSettings>,
    Decode<SystemInfo>,     Decode<ExternalMgrApi::StreamingLvsStateItem>,
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  LogClient::Instance().Level(0);
  Input input(data, size);
  const auto decode = kDecoders[input.Below(std::size(kDecoders))];
  static IpcMessage message;  // keeps the bytes of a longer payload, as in the process
  Fill(message, input.Take(size));
  decode(message);
  return 0;
}
