#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "ipc/IpcMessage.h"
#include "items/BoolItem.h"
#include "items/ConfigurationItems.h"
#include "items/MicStatusResponse.h"
#include "items/StringItem.h"
#include "items/SystickItem.h"
#include "items/UShortItem.h"
#include "support/Hex.h"
#include "support/LogCapture.h"

namespace {

std::string Encoding(const Item& item) {
  std::string bytes(item.Size(), '\0');
  auto* begin = reinterpret_cast<unsigned char*>(bytes.data());
  EXPECT_EQ(item.Encode(begin), begin + item.Size());
  return ToHex(bytes);
}

void Fill(IpcMessage& message, std::string payload) {
  ASSERT_EQ(message.Allocate(1, static_cast<unsigned int>(payload.size()), payload.data()), 0);
}

struct ItemCase {
  std::shared_ptr<Item> item;
  std::string encoding;
  std::shared_ptr<Item> other;  // of the same class, with another value
};

template <typename ItemType, typename Value>
ItemCase Case(const Value& value, const std::string& encoding, const Value& other) {
  return {std::make_shared<ItemType>(value), encoding, std::make_shared<ItemType>(other)};
}

std::vector<ItemCase> Cases() {
  using namespace std::string_literals;
  const std::string longest(255, 'z');
  return {
      Case<BoolItem>(true, "01", false),
      Case<BoolItem>(false, "00", true),
      Case<UShortItem, std::uint16_t>(65534, "ff fe", 1),
      Case<SystickItem>(0x89abcdefU, "89 ab cd ef", 7U),
      Case<StringItem>(""s, "00 00", "old"s),
      Case<StringItem>("a\0b"s, "00 03 61 00 62", ""s),
      Case<StringItem>(longest, "00 ff " + ToHex(longest), "old"s),
      Case<StringItem>(longest + "cut", "00 ff " + ToHex(longest), "old"s),
  };
}

TEST(Item, EncodesAndDecodesItsBytes) {
  for (const ItemCase& c : Cases()) {
    SCOPED_TRACE(c.encoding);
    EXPECT_EQ(Encoding(*c.item), c.encoding);
    IpcMessage message;
    Fill(message, std::string(c.item->Size() - 1, 'x'));
    EXPECT_FALSE(c.item->EncodeMsg(message)) << "needs room";
    Fill(message, std::string(c.item->Size(), 'x') + "what follows is not read");
    EXPECT_TRUE(c.item->EncodeMsg(message));
    EXPECT_TRUE(c.other->DecodeMsg(message));
    EXPECT_EQ(Encoding(*c.other), c.encoding);
  }
}

// Also with bytes of a longer message before it in the same buffer.
TEST(Item, TakesAllOfItsPayloadOrNothing) {
  for (const ItemCase& c : Cases()) {
    const std::string whole = FromHex(c.encoding);
    const std::string before = Encoding(*c.other);
    IpcMessage message;
    for (std::size_t length = 0; length < whole.size(); ++length) {
      SCOPED_TRACE(c.encoding + " cut to " + std::to_string(length));
      const LogCapture log;
      Fill(message, std::string(600, '\xee'));
      Fill(message, whole.substr(0, length));
      ASSERT_FALSE(c.other->DecodeMsg(message));
      ASSERT_EQ(Encoding(*c.other), before);
      ASSERT_EQ(log.Lines("Payload of " + std::to_string(length) + " bytes is too short for its item"), 1);
    }
  }
}

TEST(Item, ReadsWhatNoItemWrites) {
  IpcMessage message;
  BoolItem flag(false);
  Fill(message, "\x80");
  EXPECT_TRUE(flag.DecodeMsg(message));
  EXPECT_TRUE(flag.Value());
  for (const char* length : {"10 00", "7f ff", "80 00", "ff ff"}) {  // more than any payload has
    StringItem text("old");
    Fill(message, FromHex(length) + std::string(IpcMessage::kMaxPayload - 2, 'y'));
    EXPECT_FALSE(text.DecodeMsg(message)) << length;
    EXPECT_EQ(text.Value(), "old");
    EXPECT_LE(text.Decode(message.DataPtr()), message.DataPtr() + message.Size() + IpcMessage::kSlack);
    EXPECT_EQ(text.Value(), std::string(255, 'y'));
  }
}

// The first part of what is too long is kept, all of it is skipped, and the next field is right.
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
