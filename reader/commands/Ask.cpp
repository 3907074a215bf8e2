#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>

#include "Declarations.h"
#include "FindFiles.h"
#include "NewestSeal.h"
#include "clients/MetadataMgrClient.h"

namespace reader {
namespace {

constexpr unsigned int kNoTick = 0xFFFFFFFF;

struct AskOptions {
  double timeoutSeconds = 5;
  std::optional<unsigned int> mask;
  std::string path;
  unsigned int first = 0;
  unsigned int last = kNoTick;
};

int Fail(const std::string& why) {
  (void)std::fprintf(stderr, "metadata: %s\n", why.c_str());
  return kFinding;
}

std::string WhyNot(int error) {
  switch (error) {
    case ENOENT:
    case ECONNREFUSED:
      return "MetadataMgr is not there";
    case EACCES:
      return "you may not connect to MetadataMgr";
    case ETIMEDOUT:
      return "MetadataMgr did not answer in time";
    case ENOTCONN:
      return "MetadataMgr refused the connection, or ended without an answer";
    case EPROTO:
      return "MetadataMgr's answer is too short";
    default:
      return std::strerror(error);
  }
}

int Ping(MetadataMgrClient& client, const AskOptions& /*options*/) {
  const int error = client.Ping();
  if (error == 0) std::puts("MetadataMgr is there");
  return error;
}

int Tick(MetadataMgrClient& client, const AskOptions& /*options*/) {
  unsigned int tick = 0;
  const int error = client.LastSystemTick(tick);
  if (error == 0) std::puts(tick == kNoTick ? "none yet" : std::to_string(tick).c_str());
  return error;
}

int LogLevel(MetadataMgrClient& client, const AskOptions& options) {
  unsigned int mask = options.mask.value_or(0);
  const int error = options.mask ? client.SetLogLevel(mask) : client.LogLevel(mask);
  if (error == 0) std::puts(std::to_string(mask).c_str());
  return error;
}

int Copy(MetadataMgrClient& client, const AskOptions& options) {
  bool copied = false;
  const std::string path = std::filesystem::absolute(options.path).lexically_normal().string();
  const int error = client.CopyToFile(path, options.first, options.last, copied);
  if (error == EINVAL) return ENAMETOOLONG;
  if (error == 0 && !copied) return ECANCELED;
  if (error == 0) std::puts(path.c_str());
  return error;
}

int Quit(MetadataMgrClient& client, const AskOptions& /*options*/) {
  return client.Quit();
}

using Question = int (*)(MetadataMgrClient& client, const AskOptions& options);

int Ask(Question question, const AskOptions& options) {
  LinxIpc ipc("Metadata-" + std::to_string(getpid()));
  if (ipc.InitToAsk() != 0) return Fail("cannot use the endpoint directory: is LINX_IPC_DIR right?");
  MetadataMgrClient client(ipc, static_cast<int>(options.timeoutSeconds * 1000));
  const int error = question(client, options);
  if (error == ECANCELED) return Fail("MetadataMgr did not copy; its log may tell why");
  return error == 0 ? kGood : Fail(WhyNot(error));
}

// From the file: what is noted must be on the medium, and the endpoints' messages do not tell it.
int AskSeal(const Recordings& recordings) {
  Messages messages;
  const auto newest = NewestSeal(FindFiles(recordings.Paths(), messages), messages);
  if (!newest) return Fail("no recording has a seal");
  std::printf("%lld:%s\n", static_cast<long long>(newest->number), seal::Fingerprint(newest->hash).c_str());
  return messages.Status();
}

struct QuestionRow {
  const char* name;
  const char* summary;
  Question question;
  void (*declare)(CLI::App& app, AskOptions& options);
};

void DeclareMask(CLI::App& app, AskOptions& options) {
  app.add_option("MASK", options.mask, "sets this one first");
}

void DeclareCopy(CLI::App& app, AskOptions& options) {
  options.timeoutSeconds = 600;
  app.add_option("PATH", options.path, "file to be made; nothing may be there")->required();
  app.add_option("FIRST", options.first, "first tick; 0: from the begin of the run")->capture_default_str();
  app.add_option("LAST", options.last, "last tick; 4294967295: to the end")->capture_default_str();
}

constexpr QuestionRow kQuestions[] = {
    {"tick", "Prints the last system tick that MetadataMgr knows", Tick, nullptr},
    {"ping", "Tells whether MetadataMgr answers", Ping, nullptr},
    {"copy", "Copies the records of this run into a new file", Copy, DeclareCopy},
    {"loglevel", "Prints or sets the log level", LogLevel, DeclareMask},
    {"quit", "Shuts MetadataMgr down and waits for its end", Quit, nullptr},
};

}  // namespace

Action DeclareAsk(CLI::App& app) {
  struct Asked {
    std::vector<std::pair<const CLI::App*, Question>> questions;
    std::vector<std::unique_ptr<AskOptions>> options;
    const CLI::App* seal = nullptr;
    Recordings recordings;
  };
  auto asked = std::make_shared<Asked>();
  app.require_subcommand(1);
  for (const QuestionRow& row : kQuestions) {
    AskOptions& options = *asked->options.emplace_back(std::make_unique<AskOptions>());
    CLI::App* question = app.add_subcommand(row.name, row.summary);
    if (row.declare != nullptr) row.declare(*question, options);
    question->add_option("--timeout", options.timeoutSeconds, "time to answer")
        ->type_name("SECONDS")
        ->check(CLI::Range(0.001, 86400.0))
        ->capture_default_str();
    asked->questions.emplace_back(question, row.question);
  }
  CLI::App* seal =
      app.add_subcommand("seal", "Prints the newest seal of the recordings, to be noted elsewhere");
  AddRecordings(*seal, asked->recordings);
  asked->seal = seal;
  app.footer(
      "Asks over the endpoints in LINX_IPC_DIR, by default /run/linx.\n"
      "Examples:\n"
      "  metadata ask ping                               is it there?\n"
      "  metadata ask copy /mnt/usb/drive.db             all of its run\n"
      "  metadata ask copy /mnt/usb/part.db 120000 180000\n"
      "  metadata ask seal                               for \"metadata verify --noted\"\n"
      "  metadata ask loglevel 255                       log everything\n"
      "  metadata ask quit                               shut down, as at the end of a service");
  return [asked] {
    if (asked->seal->parsed()) return AskSeal(asked->recordings);
    std::size_t i = 0;
    while (!asked->questions[i].first->parsed()) ++i;
    return Ask(asked->questions[i].second, *asked->options[i]);
  };
}

}  // namespace reader
