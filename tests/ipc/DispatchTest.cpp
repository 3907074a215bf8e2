#include <cerrno>

#include "support/IpcTest.h"

namespace {

TEST_F(IpcTest, DispatchesToTheHandlerOfTheType) {
  Calls one;
  Calls two;
  me_.RegisterHandler(1, Calls::Handler, &one);
  me_.RegisterHandler(2, Calls::Handler, &two);
  ASSERT_EQ(Tell(a_, "Me", 2, "second"), 0);
  EXPECT_EQ(Next(me_).result, 0);
  ASSERT_EQ(two.got.size(), 1U);
  EXPECT_EQ(two.got[0].payload, "second");
  EXPECT_EQ(two.got[0].sender, "A");
  EXPECT_TRUE(one.got.empty());

  me_.RegisterHandler(2, Calls::Handler, &one);  // replaces the handler
  ASSERT_EQ(Tell(a_, "Me", 2), 0);
  EXPECT_EQ(Next(me_).result, 0);
  EXPECT_EQ(two.got.size(), 1U);
  EXPECT_EQ(one.got.size(), 1U);

  ASSERT_EQ(Tell(a_, "Me", 77, "x"), 0);
  const Got got = Next(me_);
  EXPECT_EQ(got.result, 0);
  EXPECT_EQ(got.type, 77U);
  EXPECT_EQ(log_.Lines("No handler for message 77 from A"), 1);
}

TEST_F(IpcTest, SelectiveWaitLeavesTheRestInOrder) {
  LinxIpc b("B");
  ASSERT_EQ(b.Init(), 0);
  Calls calls;
  for (const unsigned int type : {1U, 2U, 3U}) me_.RegisterHandler(type, Calls::Handler, &calls);
  ASSERT_EQ(Tell(a_, "Me", 1, "current"), 0);
  ASSERT_EQ(Next(me_).payload, "current");
  calls.got.clear();

  for (const char* payload : {"a1", "a2", "a3"}) ASSERT_EQ(Tell(a_, "Me", 1, payload), 0);
  ASSERT_EQ(Tell(b, "Me", 2, "b-other type"), 0);
  ASSERT_EQ(Tell(a_, "Me", 3, "wrong sender"), 0);
  ASSERT_EQ(Tell(a_, "Me", 1, "a4"), 0);
  ASSERT_EQ(Tell(b, "Me", 3, "wanted"), 0);

  const Got got = Await(me_, 3, "B");
  EXPECT_EQ(got.result, 0);
  EXPECT_EQ(got.payload, "wanted");
  EXPECT_EQ(got.sender, "B");
  EXPECT_TRUE(calls.got.empty()) << "nothing is dispatched";
  EXPECT_EQ(PayloadOf(me_.CurrentMessage()), "current");

  EXPECT_EQ(Await(me_, 0, "B").payload, "b-other type");  // from the queue, by sender
  EXPECT_EQ(Await(me_, 3).payload, "wrong sender");       // and by type
  EXPECT_EQ(Drain(me_), (std::vector<std::string>{"a1", "a2", "a3", "a4"}));
  EXPECT_EQ(calls.got.size(), 4U);
}

// The handler of a request asks a third process before it answers.
TEST_F(IpcTest, HandlerMayReceiveRebuildTheCurrentMessageAndDeregisterItself) {
  Calls later;
  me_.RegisterHandler(5, Calls::Handler, &later);
  me_.RegisterHandler(
      1,
      [](LinxIpc* ipc, void*) {
        ipc->DeregisterHandler(1);
        const std::string sender = ipc->CurrentMessage().GetSender();
        ASSERT_EQ(Await(*ipc, 2, "A").payload, "meanwhile");
        IpcMessage& message = ipc->CurrentMessage();
        ASSERT_EQ(PayloadOf(message), "question");
        ASSERT_EQ(message.Allocate(9, 3, reinterpret_cast<char*>(message.DataPtr()) + 5), 0);
        ASSERT_EQ(ipc->Notify(sender, message, true), 0);
      },
      nullptr);
  ASSERT_EQ(Tell(a_, "Me", 1, "question"), 0);
  ASSERT_EQ(Tell(a_, "Me", 5, "later"), 0);
  ASSERT_EQ(Tell(a_, "Me", 2, "meanwhile"), 0);
  const Got got = Next(me_);
  EXPECT_EQ(got.result, 0);
  EXPECT_EQ(got.type, 9U) << "the current message is what the handler left";
  EXPECT_EQ(Next(a_).payload, "ion");
  EXPECT_TRUE(later.got.empty());
  EXPECT_EQ(Next(me_).payload, "later");
  EXPECT_EQ(later.got.size(), 1U);
  ASSERT_EQ(Tell(a_, "Me", 1, "once more"), 0);
  EXPECT_EQ(Next(me_).type, 1U) << "not rebuilt";
}

TEST_F(IpcTest, ShutdownNoticeWaitsForAGeneralReceiveAndStaysInForce) {
  Calls calls;
  me_.RegisterHandler(2, Calls::Handler, &calls);
  static int quits;
  quits = 0;
  me_.RegisterShutdown(
      [](LinxIpc* ipc, void*) {
        ++quits;
        ipc->DeregisterShutdown();
        ASSERT_EQ(ipc->CurrentMessage().Allocate(4711, 0, nullptr), 0);  // as an answer would do
      },
      nullptr);
  ASSERT_EQ(Tell(a_, "Me", LinxIpc::kShutdownNotice, "ignored"), 0);
  ASSERT_EQ(Tell(a_, "Me", 1, "wanted"), 0);
  ASSERT_EQ(Tell(a_, "Me", 2, "after"), 0);
  EXPECT_EQ(Await(me_, 1).payload, "wanted");
  EXPECT_EQ(Await(me_, LinxIpc::kShutdownNotice, "A").result, ESHUTDOWN) << "at once";
  EXPECT_EQ(quits, 0);

  Got got = Next(me_);
  EXPECT_EQ(got.result, ESHUTDOWN);
  EXPECT_EQ(got.type, LinxIpc::kShutdownNotice);
  EXPECT_EQ(got.payload, "");
  EXPECT_EQ(quits, 1);

  got = Next(me_);
  EXPECT_EQ(got.result, ESHUTDOWN);
  EXPECT_EQ(got.payload, "after");
  EXPECT_EQ(calls.got.size(), 1U);
  EXPECT_EQ(Next(me_, 0).result, ESHUTDOWN);
  EXPECT_EQ(Await(me_, 1, "A", 0).result, ETIMEDOUT);
}

TEST_F(IpcTest, GeneralReceiveWithAFilterDispatchesTheMatchAndMeetsAShutdownToo) {
  Calls calls;
  me_.RegisterHandler(1, Calls::Handler, &calls);
  me_.RegisterHandler(2, Calls::Handler, &calls);
  ASSERT_EQ(Tell(a_, "Me", 1, "first"), 0);
  ASSERT_EQ(Tell(a_, "Me", 2, "second"), 0);
  EXPECT_EQ(me_.Receive(10000, 2, "A", nullptr), 0);
  EXPECT_EQ(Next(me_).payload, "first");
  ASSERT_EQ(calls.got.size(), 2U);
  EXPECT_EQ(calls.got[0].payload, "second");

  ASSERT_EQ(Tell(a_, "Me", LinxIpc::kShutdownNotice), 0);
  EXPECT_EQ(me_.Receive(10000, 5, "B", nullptr), ESHUTDOWN);
  EXPECT_EQ(me_.CurrentMessage().MsgType(), LinxIpc::kShutdownNotice);
}

}  // namespace
