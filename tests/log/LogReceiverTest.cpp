// Standard error is full, gone or broken.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <string>

#include "StderrChild.h"
#include "log/LogLine.h"
#include "support/Eventually.h"
#include "support/LogText.h"
#include "support/TempDir.h"

namespace {

constexpr LogSource kTestLog{"Test"};

std::uint64_t Dropped() {
  return LogClient::Instance().DroppedLines();
}

// Writes until no byte is accepted, then makes the descriptor blocking again.
void Fill(int fd) {
  fcntl(fd, F_SETFL, O_NONBLOCK);
  const std::string block(512, 'x');
  for (const std::size_t size : {block.size(), std::size_t{1}}) {
    while (write(fd, block.data(), size) > 0) {
    }
  }
  fcntl(fd, F_SETFL, 0);
}

std::string Drain(int fd) {
  std::string all;
  char buffer[4096];
  ssize_t size = 0;
  while ((size = read(fd, buffer, sizeof buffer)) > 0) all.append(buffer, static_cast<std::size_t>(size));
  return all;
}

TEST(LogReceiver, ThatIsFullOrGoneCostsTheLinesOnlyAndIsToldHowMany) {
  constexpr int kPipe = 0;
  for (const int type : {kPipe, int{SOCK_DGRAM}, int{SOCK_STREAM}, int{SOCK_SEQPACKET}}) {
    SCOPED_TRACE(type);
    int fds[2];
    ASSERT_EQ(type == kPipe ? pipe(fds) : socketpair(AF_UNIX, type, 0, fds), 0);
    fcntl(fds[0], F_SETFL, O_NONBLOCK);
    WithStderr(fds[1], [&fds] {
      for (int round = 0; round < 2; ++round) {
        Fill(STDERR_FILENO);
        for (int i = 0; i < 3; ++i) kTestLog(kLogError, "lost ", i);
        EXPECT_EQ(Dropped(), round == 0 ? 3U : 6U);
        EXPECT_EQ(Drain(fds[0]).find("lost"), std::string::npos);
        // The count comes with the next line, at most once per second.
        Lines lines;
        EXPECT_TRUE(Eventually([&] {
          kTestLog(kLogUnusual, "kept");
          for (const std::string& line : LogText(Drain(fds[0]))) lines.push_back(line);
          return lines.size() > 1 && lines[lines.size() - 2] == "1 LogClient: 3 log lines dropped";
        }));
        EXPECT_EQ(std::count(lines.begin(), lines.end(), "4 Test: kept"),
                  static_cast<long>(lines.size()) - 1);
      }
    });
    close(fds[0]);
    WithStderr(fds[1], [] {
      for (int i = 0; i < 3; ++i) kTestLog(kLogError, "lost");
      EXPECT_EQ(Dropped(), 3U);
      EXPECT_EQ(write(STDERR_FILENO, "x", 1), -1);  // other writes do not kill the process either
    });
    close(fds[1]);
  }
}

TEST(LogStandardError, ThatIsClosedNeverGetsLinesAgain) {
  const TempDir directory;
  for (const bool closedBeforeTheFirstLine : {true, false}) {
    WithStderr(STDERR_FILENO, [&] {
      if (!closedBeforeTheFirstLine) LogClient::Instance();
      close(STDERR_FILENO);
      kTestLog(kLogError, "lost");
      const int fd = open(directory.Path("data").c_str(), O_WRONLY | O_CREAT, 0600);
      EXPECT_EQ(fd, STDERR_FILENO);  // the next file gets that descriptor
      kTestLog(kLogError, "lost");
      EXPECT_EQ(lseek(fd, 0, SEEK_END), 0);
      EXPECT_EQ(Dropped(), 2U);
    });
  }
}

}  // namespace
