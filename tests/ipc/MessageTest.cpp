#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

#include "support/IpcTest.h"

namespace {

bool AllZero(const unsigned char* from, std::size_t size) {
  return std::all_of(from, from + size, [](unsigned char byte) { return byte == 0; });
}

TEST(Message, IsCopiedZeroedOrLeftAsItWas) {
  IpcMessage message;
  EXPECT_EQ(message.MsgType(), 0U);
  EXPECT_EQ(message.DataPtr(), nullptr);
  EXPECT_EQ(message.GetSender(), "");
  std::string text = "abcdefgh" + std::string(IpcMessage::kMaxPayload, 'x');
  ASSERT_EQ(message.Allocate(1, 100, text.data()), 0);
  ASSERT_EQ(message.Allocate(2, 5, reinterpret_cast<char*>(message.DataPtr()) + 2), 0);
  for (const unsigned int tooLong : {4097U, ~0U}) {
    EXPECT_EQ(message.Allocate(3, tooLong, text.data()), EMSGSIZE);
  }
  EXPECT_EQ(message.MsgType(), 2U);
  EXPECT_EQ(PayloadOf(message), "cdefg");
  ASSERT_EQ(message.Allocate(3, 50, nullptr), 0);
  EXPECT_EQ(message.Size(), 50U);
  EXPECT_TRUE(AllZero(message.DataPtr(), 50 + IpcMessage::kSlack));
  ASSERT_EQ(message.Allocate(3, 0, nullptr), 0);
  EXPECT_EQ(message.DataPtr(), nullptr);
}

// Zeros follow every payload, whatever the buffer held before, on both ways of receiving.
TEST_F(IpcTest, SlackIsZeroAfterEveryLength) {
  const std::size_t lengths[] = {4096, 1, 4095, 0, 17, 4096, 16, 2048, 3, 4096, 5};
  for (const bool kept : {false, true}) {
    for (const std::size_t length : lengths) {
      ASSERT_EQ(Tell(a_, "Me", 1, std::string(length, '\xff')), 0);
      if (kept) {  // the message waits in the queue
        ASSERT_EQ(Await(me_, 99, "A", 20).result, ETIMEDOUT);
      }
      ASSERT_EQ(Next(me_).payload.size(), length);
      IpcMessage& message = me_.CurrentMessage();
      if (length == 0) {
        ASSERT_EQ(message.DataPtr(), nullptr);
        ASSERT_EQ(message.Allocate(1, 1, nullptr), 0);  // gives access to the buffer
      }
      EXPECT_TRUE(AllZero(message.DataPtr() + length, IpcMessage::kSlack)) << length << " kept " << kept;
    }
  }
}

}  // namespace
