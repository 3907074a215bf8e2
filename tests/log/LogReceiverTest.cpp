// Receivers of standard error that are full, gone or broken.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <string>

#include "StderrChild.h"
#include "log/LogLine.h"
#include "support/TempDir.h"

namespace {

constexpr LogSource log{"Test"};

std::uint64_t Dropped() {
  return LogClient::Instance().DroppedLines();
}

struct Receiver {
  const char* name;
  int socketType;  // 0: a pipe
};
constexpr Receiver kReceivers[] = {
    {"Pipe", 0}, {"Datagram", SOCK_DGRAM}, {"Stream", SOCK_STREAM}, {"SeqPacket", SOCK_SEQPACKET}};

class LogReceiver : public testing::TestWithParam<Receiver> {
 protected:
  LogReceiver() {
    int fds[2];
    const int type = GetParam().socketType;
    if ((type == 0 ? pipe(fds) : socketpair(AF_UNIX, type, 0, fds)) != 0) std::abort();
    reader_ = fds[0];
    writer_ = fds[1];
    fcntl(reader_, F_SETFL, O_NONBLOCK);
  }
  ~LogReceiver() override {
    close(reader_);
    close(writer_);
  }

  // Writes until not one more byte is taken; the descriptor blocks again afterwards.
  void Fill() const {
    fcntl(writer_, F_SETFL, O_NONBLOCK);
    const std::string block(512, 'x');
    for (const std::size_t size : {block.size(), std::size_t{1}}) {
      while (write(writer_, block.data(), size) > 0) {
      }
    }
    fcntl(writer_, F_SETFL, 0);
  }

  std::string Drain() const {
    std::string all;
    char buffer[4096];
    ssize_t size = 0;
    while ((size = read(reader_, buffer, sizeof buffer)) > 0)
      all.append(buffer, static_cast<std::size_t>(size));
    return all;
  }

  int reader_ = -1;
  int writer_ = -1;
};

TEST_P(LogReceiver, WhenFullCostsTheLinesAndIsToldHowMany) {
  WithStderr(writer_, [this] {
    Fill();
    for (int i = 0; i < 3; ++i) log(kLogError, "lost ", i);
    EXPECT_EQ(Dropped(), 3U);

    EXPECT_EQ(Drain().find("lost"), std::string::npos);
    log(kLogUnusual, "kept");
    log(kLogUnusual, "kept, too");
    const std::string lines = Drain();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 3) << lines;
    EXPECT_LT(lines.find("] 1 LogClient:"), lines.find(" 3 log lines dropped\n")) << lines;
    EXPECT_LT(lines.find(" 3 log lines dropped\n"), lines.find(" kept\n")) << lines;
    EXPECT_LT(lines.find(" kept\n"), lines.find(" kept, too\n")) << lines;

    Fill();
    log(kLogError, "lost again");
    EXPECT_EQ(Dropped(), 4U);
    Drain();
    log(kLogError, "kept again");
    EXPECT_NE(Drain().find(" 1 log lines dropped\n"), std::string::npos);
  });
}

TEST_P(LogReceiver, WhenGoneCostsTheLinesOnly) {
  close(reader_);
  reader_ = -1;
  WithStderr(writer_, [] {
    for (int i = 0; i < 3; ++i) log(kLogError, "lost");
    EXPECT_EQ(Dropped(), 3U);
    EXPECT_EQ(write(STDERR_FILENO, "x", 1), -1);  // nor do other writes end the process
  });
}

INSTANTIATE_TEST_SUITE_P(All, LogReceiver, testing::ValuesIn(kReceivers),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(LogStandardError, ThatIsClosedNeverGetsLinesAgain) {
  const TempDir directory;
  const std::string path = directory.Path("data");
  const auto logIntoData = [&path] {
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT, 0600);
    EXPECT_EQ(fd, STDERR_FILENO);  // the next file takes the number
    log(kLogError, "lost");
    EXPECT_EQ(lseek(fd, 0, SEEK_END), 0);
  };
  WithStderr(-1, [&] {
    log(kLogError, "lost");
    logIntoData();
    EXPECT_EQ(Dropped(), 2U);
  });
  WithStderr(STDERR_FILENO, [&] {
    LogClient::Instance();
    close(STDERR_FILENO);
    log(kLogError, "lost");
    logIntoData();
    EXPECT_EQ(Dropped(), 2U);
  });
}

TEST(LogStandardError, HalfALineIsADroppedLineAndTheNextStartsAfresh) {
  const TempDir directory;
  const int file = open(directory.Write("log", "").c_str(), O_WRONLY | O_APPEND);
  WithStderr(file, [] {
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small{10, limit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    log(kLogError, "lost");
    log(kLogError, "lost, too");
    setrlimit(RLIMIT_FSIZE, &limit);
    log(kLogError, "kept");
    EXPECT_EQ(Dropped(), 2U);
  });
  close(file);
  const std::string lines = directory.Read("log");
  EXPECT_EQ(lines.find('\n'), 10U) << lines;
  EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 3) << lines;
  EXPECT_NE(lines.find(" 2 log lines dropped\n"), std::string::npos) << lines;
  EXPECT_TRUE(lines.ends_with(" kept\n")) << lines;
}

}  // namespace
