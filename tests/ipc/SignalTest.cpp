#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <functional>

#include "support/Child.h"
#include "support/IpcTest.h"

namespace {

// Runs the body in a child with its own endpoint. Signals are raised there.
int InChild(const std::function<int(LinxIpc& ipc)>& body) {
  const IpcDir directory;
  Child child([&body] {
    alarm(20);
    (void)std::signal(SIGINT, SIG_DFL);  // shells ignore it in background jobs
    sigset_t none;                       // other cases of this program may have caught signals
    sigemptyset(&none);
    (void)sigprocmask(SIG_SETMASK, &none, nullptr);
    LinxIpc ipc("Me");
    return body(ipc);
  });
  return child.Wait();
}

// Signals stay caught while a process closes down, and after it has closed its endpoint.
TEST(Signals, StayCaughtToTheEndOfTheProcess) {
  EXPECT_EQ(InChild([](LinxIpc& outer) {
              {
                LinxIpc ipc("Inner");
                if (ipc.Init() + outer.Init() != 0) return 2;
                ipc.RegisterShutdown(Calls::Handler, nullptr);
                ipc.DeregisterShutdown();
                if (raise(SIGTERM) + raise(SIGINT) != 0) return 3;
              }
              return raise(SIGTERM) + raise(SIGINT);
            }),
            0);
}

TEST(Signals, AreShutdownNoticesWhileOneIsRegistered) {
  for (const int signal : {SIGTERM, SIGINT}) {
    EXPECT_EQ(InChild([signal](LinxIpc& ipc) {
                Calls calls;
                if (signal == SIGINT && ipc.Init() != 0) return 1;
                ipc.RegisterShutdown(Calls::Handler, &calls);
                if (signal == SIGTERM && ipc.Init() != 0) return 1;
                raise(signal);
                const Stopwatch watch;
                if (Await(ipc, 0, "", 10000).result != ESHUTDOWN || !calls.got.empty()) return 2;
                if (watch.Ms() > 1000) return 5;
                const Got got = Next(ipc);
                if (got.result != ESHUTDOWN || got.type != LinxIpc::kShutdownNotice) return 3;
                return calls.got.size() == 1 ? 0 : 4;
              }),
              0);
  }
}

// Interrupts every system call that can be interrupted, once a millisecond.
class Interruptions {
 public:
  Interruptions() {
    struct sigaction action {};
    action.sa_handler = [](int) {};  // without SA_RESTART
    sigaction(SIGALRM, &action, &actionBefore_);
    const itimerval everyMs{{0, 1000}, {0, 1000}};
    setitimer(ITIMER_REAL, &everyMs, nullptr);
  }
  ~Interruptions() {
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
    sigaction(SIGALRM, &actionBefore_, nullptr);
  }
  Interruptions(const Interruptions&) = delete;
  Interruptions& operator=(const Interruptions&) = delete;

 private:
  struct sigaction actionBefore_ {};
};

// Another process floods with garbage, refused connections and unwanted messages.
TEST(Deadlines, HoldUnderAFlood) {
  const IpcDir directory;
  LogCapture log;
  LinxIpc me("Me");
  ASSERT_EQ(me.Init(), 0);
  Child flooder([] {
    for (;;) {
      const RawPeer peer = RawPeer::To("Me", "Flooder");
      for (int i = 0; i < 1000; ++i) {
        (void)peer.Send("xy");
        (void)peer.Send(Packet(8, "not wanted"));
      }
      (void)RawPeer::To("Me").Send("no hello");
    }
    return 0;
  });
  const Interruptions interruptions;
  ASSERT_EQ(Next(me).sender, "Flooder");
  const Stopwatch watch;
  EXPECT_EQ(Await(me, 9, "", 300).result, ETIMEDOUT);
  EXPECT_EQ(Await(me, 9, "Flooder", 300).result, ETIMEDOUT);
  EXPECT_GE(watch.Ms(), 600);
  EXPECT_LT(watch.Ms(), 3000);
  // At most one line of each kind per second.
  EXPECT_GE(log.Lines("Dropped a packet from Flooder: too short"), 1);
  EXPECT_LE(log.Lines("Dropped a packet"), watch.Ms() / 1000 + 2);
  EXPECT_LE(log.Lines("Refused a connection"), watch.Ms() / 1000 + 2);
}

}  // namespace
