#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <stdexcept>

#include "system/KorvaneTerminateHandler.h"

namespace {

struct NoText : std::exception {
  const char* what() const noexcept override { return nullptr; }
};

TEST(KorvaneTerminateHandlerDeathTest, LogsTheExceptionWithMask1AndAborts) {
  struct Case {
    void (*end)();
    const char* text;
  };
  constexpr Case kCases[] = {
      {[] { throw std::runtime_error("the reason"); }, "terminated by an exception: the reason\n"},
      {[] { throw std::runtime_error("two\nlines"); }, "terminated by an exception: two.lines\n"},
      {[] { throw NoText(); }, "terminated by an exception: .null.\n"},
      {[] { throw 42; }, "terminated by an exception of unknown type\n"},
      {[] { std::terminate(); }, "terminated without an exception\n"},
  };
  for (const auto& [end, text] : kCases) {
    const auto endUncaught = [end = end]() noexcept {
      setenv("LOG_TARGET", "stderr", 1);
      std::set_terminate(KorvaneTerminateHandler);
      end();
    };
    EXPECT_EXIT(endUncaught(), testing::KilledBySignal(SIGABRT),
                std::string("\\] 1 KorvaneTerminateHandler:[0-9]+ ") + text);
  }
}

}  // namespace
