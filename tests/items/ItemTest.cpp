#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "ipc/IpcMessage.h"
#include "items/BoolItem.h"
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
  const char* name;
  std::shared_ptr<Item> item;
  std::string encoding;
  std::shared_ptr<Item> other;  // of the same class, with another value
};

template <typename ItemType, typename Value>
ItemCase Case(const char* name, const Value& value, const std::string& encoding, const Value& other) {
  return {name, std::make_shared<ItemType>(value), encoding, std::make_shared<ItemType>(other)};
}

std::string Repeat(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

std::vector<ItemCase> Cases() {
  using namespace std::string_literals;
  return {
      Case<BoolItem>("true", true, "01", false),
      Case<BoolItem>("false", false, "00", true),
      Case<UShortItem, std::uint16_t>("65534", 65534, "ff fe", 1),
      Case<UShortItem, std::uint16_t>("258", 258, "01 02", 0),
      Case<SystickItem>("tick", 0x89abcdefU, "89 ab cd ef", 7U),
      Case<SystickItem>("no tick", 0xffffffffU, "ff ff ff ff", 0U),
      Case<StringItem>("no text", ""s, "00 00", "old"s),
      Case<StringItem>("text", "Unit 7"s, "00 06 55 6e 69 74 20 37", "old"s),
      Case<StringItem>("text with a NUL", "a\0b"s, "00 03 61 00 62", ""s),
      Case<StringItem>("longest text", std::string(255, 'z'), "00 ff" + Repeat(255, " 7a"), "old"s),
      Case<StringItem>("text that is cut", std::string(300, 'z'), "00 ff" + Repeat(255, " 7a"), "old"s),
  };
}

TEST(Item, EncodesAndDecodesItsBytes) {
  for (const ItemCase& c : Cases()) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Encoding(*c.item), c.encoding);
    IpcMessage message;
    Fill(message, FromHex(c.encoding) + "what follows is not read");
    EXPECT_EQ(c.other->Decode(message.DataPtr()), message.DataPtr() + c.item->Size());
    EXPECT_EQ(Encoding(*c.other), c.encoding);
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
      SCOPED_TRACE(std::string(c.name) + " cut to " + std::to_string(length));
      const LogCapture log;
      Fill(message, std::string(600, '\xee'));
      Fill(message, whole.substr(0, length));
      ASSERT_FALSE(c.other->DecodeMsg(message));
      ASSERT_EQ(Encoding(*c.other), before);
      ASSERT_EQ(log.Lines("Payload of " + std::to_string(length) + " bytes is too short for its item"), 1);
    }
  }
}

TEST(Item, EncodeMsgNeedsRoom) {
  for (const ItemCase& c : Cases()) {
    SCOPED_TRACE(c.name);
    IpcMessage message;
    Fill(message, std::string(c.item->Size() - 1, 'x'));
    EXPECT_FALSE(c.item->EncodeMsg(message));
    EXPECT_TRUE(std::string(message.DataPtr(), message.DataPtr() + message.Size()).find_first_not_of('x') ==
                std::string::npos);
    Fill(message, std::string(c.item->Size() + 1, 'x'));
    EXPECT_TRUE(c.item->EncodeMsg(message));
    EXPECT_EQ(message.Size(), c.item->Size() + 1);
    EXPECT_EQ(ToHex(std::string(message.DataPtr(), message.DataPtr() + c.item->Size())), c.encoding);
  }
}

TEST(StringItem, LengthAboveTheMaximumIsTheMaximum) {
  for (const char* length : {"01 00", "7f ff", "80 00", "ff ff"}) {
    SCOPED_TRACE(length);
    IpcMessage message;
    const LogCapture log;
    StringItem item("old");
    Fill(message, FromHex(length) + std::string(254, 'y'));
    EXPECT_FALSE(item.DecodeMsg(message));
    EXPECT_EQ(item.Value(), "old");
    EXPECT_EQ(item.Decode(message.DataPtr()), message.DataPtr() + 257) << "out of the slack";
    Fill(message, FromHex(length) + std::string(IpcMessage::kMaxPayload - 2, 'y'));
    EXPECT_TRUE(item.DecodeMsg(message));
    EXPECT_EQ(item.Value(), std::string(255, 'y'));
  }
}

TEST(BoolItem, EveryByteButZeroIsTrue) {
  for (int byte = 0; byte < 256; ++byte) {
    IpcMessage message;
    Fill(message, std::string(1, static_cast<char>(byte)));
    BoolItem item(byte == 0);
    EXPECT_TRUE(item.DecodeMsg(message));
    EXPECT_EQ(item.Value(), byte != 0);
  }
}

// Any bytes: either the item is as it was, or it reads as its own encoding reads.
TEST(Item, AnyBytes) {
  const LogCapture log;
  const std::vector<ItemCase> cases = Cases();
  std::mt19937 random(7);
  IpcMessage message;
  for (int round = 0; round < 20000; ++round) {
    Item& item = *cases[random() % cases.size()].other;
    std::string payload(random() % (round % 2 == 0 ? 5 : 300), '\0');
    for (char& byte : payload) byte = static_cast<char>(random() % (round % 4 < 2 ? 256 : 3));
    Fill(message, payload);
    const std::string before = Encoding(item);
    if (!item.DecodeMsg(message)) {
      ASSERT_EQ(Encoding(item), before);
      continue;
    }
    const std::string after = Encoding(item);
    ASSERT_LE(item.Size(), payload.size());
    Fill(message, FromHex(after));
    ASSERT_TRUE(item.DecodeMsg(message));
    ASSERT_EQ(Encoding(item), after);
  }
}

}  // namespace
