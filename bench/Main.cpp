#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>
#include <vector>

#include "Commands.h"
#include "Director.h"
#include "Drive.h"
#include "GpsdConnection.h"
#include "NmeaLog.h"
#include "Options.h"
#include "Receiver.h"
#include "Roles.h"
#include "Send.h"
#include "Surroundings.h"
#include "log/LogClient.h"

namespace bench {

namespace {

// Names the receiver for the GPS process in the environment.
bool PrepareReceiver(const Options& options, std::string& error) {
  ForgetReceiver();
  if (!options.gpsd.empty()) {
    std::string peer;
    if (!ResolveGpsd(options.gpsd, peer, error)) return false;
    (void)setenv(kGpsdVariable, peer.c_str(), 1);
  }
  if (options.nmea.empty()) return true;
  NmeaLog log;
  if (!ReadNmea(options.nmea, log) || log.readings.empty()) {
    error = options.nmea + ": cannot be read, or tells no place";
    return false;
  }
  (void)std::printf("Log %s: %s\n", options.nmea.c_str(), log.Summary().c_str());
  (void)std::fflush(stdout);
  (void)setenv(kNmeaVariable, options.nmea.c_str(), 1);
  if (options.drive.empty()) (void)setenv(kNmeaEndsDriveVariable, "1", 1);
  return true;
}

// With a receiver and without --drive the drive is empty.
std::vector<std::string> PrepareDrive(const Options& options, Drive& drive) {
  const std::string& receiver = options.nmea.empty() ? options.gpsd : options.nmea;
  if (!options.drive.empty()) return ReadDrive(options.drive, drive);
  return receiver.empty() ? ReadDefaultDrive(drive) : ParseDrive(receiver, "", drive);
}

// Log lines of the libraries would mix with the lines of the director.
int Run(const Options& options) {
  LogClient::Instance().Level(0);
  Drive drive;
  const auto errors = PrepareDrive(options, drive);
  if (!errors.empty()) return ReportErrors(errors);
  std::string error;
  if (!PrepareReceiver(options, error)) return ReportErrors({error});
  Surroundings surroundings(options.out);
  if (!surroundings.Prepare(error)) {
    (void)ReportErrors({error});
    return kFailed;
  }
  return Director(options.run, drive, surroundings).Run() ? kGood : kFailed;
}

int Check(const Options& options) {
  Drive drive;
  const auto errors = ReadDrive(options.drive, drive);
  if (!errors.empty()) return ReportErrors(errors);
  (void)std::printf("%s: good, %zu lines\n", drive.name.c_str(), drive.lines.size());
  return kGood;
}

int Send(const Options& options) {
  LogClient::Instance().Level(0);
  Command command;
  std::string error;
  const Words words = SplitWords(JoinWords(options.words));
  if (!ParseCommand(words, command, error)) return ReportErrors({error});
  Surroundings(options.out).UseEndpoints();
  return SendToBench(words) ? kGood : kFailed;
}

int RunCommandLine(int argc, char** argv) {
  Options options;
  CLI::App app("The bench vehicle: the processes around MetadataMgr, and drives to play to it.");
  app.set_version_flag("--version", "vehiclebench " MM_VERSION);
  app.require_subcommand(1);
  const CLI::App* run = AddRun(app, options);
  const CLI::App* check = AddCheck(app, options);
  const CLI::App* drive = AddDrive(app, options);
  const CLI::App* replay = AddReplay(app, options);
  const CLI::App* send = AddSend(app, options);
  (void)AddRole(app, options);
  app.footer("vehiclebench COMMAND --help tells more; \"check --help\" describes drives.");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kGood : kUsage;
  }
  if (*run) return Run(options);
  if (*check) return Check(options);
  if (*drive) return WriteDrive(options);
  if (*replay) return PlayReplay(options);
  if (*send) return Send(options);
  return RunRole(options.role, options.words);
}

}  // namespace

}  // namespace bench

// Fails when standard output is full or broken.
int main(int argc, char** argv) {
  try {
    const int status = bench::RunCommandLine(argc, argv);
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
    (void)std::fprintf(stderr, "cannot write to standard output\n");
    return bench::kFailed;
  } catch (const std::exception& error) {
    (void)std::fprintf(stderr, "%s\n", error.what());
    return bench::kFailed;
  }
}
