#include <gtest/gtest.h>

#include <string>

#include "ipc/IpcMessage.h"
#include "items/BoolItem.h"
#include "items/ConfigurationItems.h"
#include "items/MicStatusResponse.h"
#include "items/StringItem.h"
#include "support/Hex.h"

namespace {

void Fill(IpcMessage& message, std::string payload) {
  ASSERT_EQ(message.Allocate(1, static_cast<unsigned int>(payload.size()), payload.data()), 0);
}

TEST(Item, ReadsWhatNoItemWrites) {
  IpcMessage message;
  BoolItem flag(false);
  Fill(message, "\x80");
  EXPECT_TRUE(flag.DecodeMsg(message));
  EXPECT_TRUE(flag.Value());
  for (const char* length : {"10 00", "7f ff", "80 00", "ff ff"}) {  // longer than any payload
    StringItem text("old");
    Fill(message, FromHex(length) + std::string(IpcMessage::kMaxPayload - 2, 'y'));
    EXPECT_FALSE(text.DecodeMsg(message)) << length;
    EXPECT_EQ(text.Value(), "old");
    EXPECT_LE(text.Decode(message.DataPtr()), message.DataPtr() + message.Size() + IpcMessage::kSlack);
    EXPECT_EQ(text.Value(), std::string(255, 'y'));
  }
}

// A text that is too long is truncated and skipped whole; the next field is read correctly.
TEST(Item, WhatIsTooLongIsSkippedWhole) {
  IpcMessage message;
  VehicleInfo vehicle;
  Fill(message, FromHex("01 2c") + std::string(300, 'u') + FromHex("00 03") + "KV1");
  EXPECT_TRUE(vehicle.DecodeMsg(message));
  EXPECT_EQ(vehicle.unitId.View(), std::string(255, 'u'));
  EXPECT_EQ(vehicle.licensePlate.View(), "KV1");
  MicStatusResponse microphones;
  std::string entries;
  for (int i = 0; i < 33; ++i) entries += FromHex("00000002 01 00");
  Fill(message, FromHex("00 21") + entries + FromHex("0000002a"));
  EXPECT_TRUE(microphones.DecodeMsg(message));
  EXPECT_EQ(microphones.end() - microphones.begin(), 32);
  EXPECT_EQ(microphones.tick, 42U);
  Fill(message, FromHex("00 21") + entries + FromHex("00002a"));
  EXPECT_FALSE(microphones.DecodeMsg(message)) << "one byte is missing";
}

}  // namespace
