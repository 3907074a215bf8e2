#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include "Director.h"
#include "Drive.h"
#include "GpsdConnection.h"
#include "NmeaLog.h"
#include "Receiver.h"
#include "Roles.h"
#include "Send.h"
#include "Surroundings.h"
#include "Verbs.h"
#include "log/LogClient.h"

namespace {

enum ExitStatus { kGood = 0, kFailed = 1, kUsage = 2 };

struct Options {
  RunOptions run;
  std::string out = "out";
  std::string drive;
  std::string nmea;
  std::string gpsd;
  Words words;
  std::string role;
};

constexpr const char* kDriveHelp =
    "A drive is a text file of timed lines, \"SECONDS VERB ARGUMENTS\", the seconds counted from\n"
    "full run; \"#\" begins a comment:\n"
    "  before gps fix 42.3601 -71.0589 0 40 12\n  0 gps rate 5\n  2.0 record start\n  3.5 bookmark\n"
    "  9.0 loglevel 255\n  18 quit\n\n";

int ReportErrors(const std::vector<std::string>& errors) {
  for (const std::string& error : errors) (void)std::fprintf(stderr, "%s\n", error.c_str());
  return errors.empty() ? kGood : kUsage;
}

// Has the GPS process follow a receiver where one was asked for; it learns from the environment which.
bool PrepareReceiver(const Options& options, std::string& error) {
  unsetenv(kNmeaVariable);
  unsetenv(kNmeaEndsDriveVariable);
  unsetenv(kGpsdVariable);
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

// With a receiver to follow the drive has no lines of its own, unless one was asked for.
std::vector<std::string> PrepareDrive(const Options& options, Drive& drive) {
  const std::string& receiver = options.nmea.empty() ? options.gpsd : options.nmea;
  if (!options.drive.empty()) return ReadDrive(options.drive, drive);
  return receiver.empty() ? ReadDefaultDrive(drive) : ParseDrive(receiver, "", drive);
}

// The director says everything itself; what its libraries log would stand between its lines.
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

void AddOut(CLI::App* command, Options& options) {
  command->add_option("--out", options.out, "directory of the bench (log/, mnt/, ipc/, sent/)")
      ->type_name("DIR")
      ->capture_default_str();
}

CLI::App* AddRun(CLI::App& app, Options& options) {
  CLI::App* run = app.add_subcommand(
      "run", "Starts the processes, plays a drive, shuts everything down and says how it went");
  run->add_option("--drive", options.drive, "file to play instead of the built-in drive of 20 seconds")
      ->type_name("FILE");
  CLI::Option* nmea = run->add_option(
      "--nmea", options.nmea, "GPS readings from this NMEA 0183 log; without --drive its end is the drive's");
  nmea->type_name("FILE");
  run->add_option("--gpsd", options.gpsd,
                  "GPS readings from this gpsd, as they come; without --drive until Ctrl-C")
      ->type_name("HOST:PORT")
      ->excludes(nmea);
  run->add_option("--speed", options.run.speed, "play so many times faster")
      ->type_name("N")
      ->check(CLI::Range(0.01, 1000.0))
      ->capture_default_str();
  CLI::Option* attach =
      run->add_flag("--attach", options.run.attach, "wait for a MetadataMgr that is started by hand");
  run->add_option("--program", options.run.program, "MetadataMgr to start [the one beside this program]")
      ->type_name("PATH")
      ->excludes(attach);
  run->add_option("--start-deadline", options.run.startDeadlineSeconds, "time for all to come to full run")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.1, 3600.0))
      ->capture_default_str();
  run->add_option("--stop-deadline", options.run.stopDeadlineSeconds, "time to answer the shut-down")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.1, 3600.0))
      ->capture_default_str();
  AddOut(run, options);
  run->footer(
      "Exit status: 0 all went well, 1 something failed, 2 wrong usage or a wrong drive.\n"
      "Environment variables that are set already (METADATA_ROOT, METADATA_SHM, LINX_IPC_DIR,\n"
      "LOG_TARGET, BENCH_SENT) are used as they are.");
  return run;
}

CLI::App* AddCheck(CLI::App& app, Options& options) {
  CLI::App* check = app.add_subcommand("check", "Checks a drive without running it");
  check->add_option("FILE", options.drive, "the drive")->required();
  check->footer(kDriveHelp + VerbHelp());
  return check;
}

CLI::App* AddSend(CLI::App& app, Options& options) {
  CLI::App* send = app.add_subcommand("send", "Has a running bench do one line, without its time");
  send->add_option("WORDS", options.words, "verb and arguments")->required();
  AddOut(send, options);
  send->footer(VerbHelp());
  return send;
}

// How the director starts the other processes.
CLI::App* AddRole(CLI::App& app, Options& options) {
  CLI::App* role = app.add_subcommand("role", "Runs one process of the bench")->group("");
  role->add_option("NAME", options.role, "its name")->required();
  role->add_option("EXPECTED", options.words, "for the state manager: the processes it leads");
  return role;
}

int RunCommandLine(int argc, char** argv) {
  Options options;
  CLI::App app("The bench vehicle: the processes around MetadataMgr, and drives to play to it.");
  app.require_subcommand(1);
  const CLI::App* run = AddRun(app, options);
  const CLI::App* check = AddCheck(app, options);
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
  if (*send) return Send(options);
  return RunRole(options.role, options.words);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return RunCommandLine(argc, argv);
  } catch (const std::exception& error) {
    (void)std::fprintf(stderr, "%s\n", error.what());
    return kFailed;
  }
}
