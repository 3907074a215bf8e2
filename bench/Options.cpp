#include "Options.h"

#include "Verbs.h"

namespace bench {

namespace {

constexpr const char* kDriveHelp =
    "A drive is a text file of timed lines, \"SECONDS VERB ARGUMENTS\". The seconds count from full\n"
    "run; \"#\" begins a comment:\n"
    "  before gps fix 42.3601 -71.0589 0 40 12\n  0 gps rate 5\n  2.0 record start\n  3.5 bookmark\n"
    "  9.0 loglevel 255\n  18 quit\n\n";

void AddOut(CLI::App* command, Options& options) {
  command->add_option("--out", options.out, "directory of the bench (log/, mnt/, ipc/, sent/)")
      ->type_name("DIR")
      ->capture_default_str();
}

}  // namespace

void AddProcesses(CLI::App* run, Options& options) {
  CLI::Option* attach =
      run->add_flag("--attach", options.run.attach, "wait for a MetadataMgr that is started by hand");
  run->add_option("--program", options.run.program, "MetadataMgr to start [beside this program]")
      ->type_name("PATH")
      ->excludes(attach);
  run->add_option("--start-deadline", options.run.startDeadlineSeconds,
                  "time for all processes to come to full run")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.1, 3600.0))
      ->capture_default_str();
  run->add_option("--stop-deadline", options.run.stopDeadlineSeconds,
                  "time for a process to answer the shut-down")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.1, 3600.0))
      ->capture_default_str();
  AddOut(run, options);
  run->footer(
      "Exit status: 0 all went well, 1 something failed, 2 wrong usage or a wrong drive.\n"
      "Environment variables that are set already (METADATA_ROOT, METADATA_SHM, LINX_IPC_DIR,\n"
      "LOG_TARGET, BENCH_SENT) are used as they are.");
}

CLI::App* AddRun(CLI::App& app, Options& options) {
  CLI::App* run = app.add_subcommand(
      "run", "Starts the processes, plays a drive, shuts everything down and says how it went");
  run->add_option("--drive", options.drive, "file to play instead of the built-in drive of 20 seconds")
      ->type_name("FILE");
  CLI::Option* nmea = run->add_option(
      "--nmea", options.nmea, "GPS readings from this NMEA 0183 log; without --drive the drive ends with it");
  nmea->type_name("FILE");
  run->add_option("--gpsd", options.gpsd,
                  "GPS readings from this gpsd as they come; without --drive until Ctrl-C")
      ->type_name("HOST:PORT")
      ->excludes(nmea);
  run->add_option("--speed", options.run.speed, "play the drive this many times faster")
      ->type_name("N")
      ->check(CLI::Range(0.01, 1000.0))
      ->capture_default_str();
  AddProcesses(run, options);
  return run;
}

CLI::App* AddCheck(CLI::App& app, Options& options) {
  CLI::App* check = app.add_subcommand("check", "Checks a drive without running it");
  check->add_option("FILE", options.drive, "the drive")->required();
  check->footer(kDriveHelp + VerbHelp());
  return check;
}

CLI::App* AddDrive(CLI::App& app, Options& options) {
  CLI::App* drive = app.add_subcommand(
      "drive", "Writes one run of recordings, by default the first, as a drive to read, change and run");
  drive->add_option("RECORDING", options.replay.recordings, "recordings, or directories with them")
      ->required();
  drive->add_option("-o,--output", options.output, "file to create; must not exist [standard output]")
      ->type_name("FILE");
  CLI::Option* exact = drive->add_flag("--exact", options.exact,
                                       "with the bytes and ticks of each event, as replay plays them");
  AddRunNumber(drive, options);
  for (CLI::Option* stretch : AddStretch(drive, options)) stretch->needs(exact);
  drive->footer(
      "Exit status: 0 the whole run was written, 1 not all of it, or it cannot be read; see standard error.");
  return drive;
}

CLI::App* AddSend(CLI::App& app, Options& options) {
  CLI::App* send = app.add_subcommand("send", "Makes a running bench do one line, given without its time");
  send->add_option("WORDS", options.words, "verb and arguments")->required();
  AddOut(send, options);
  send->footer(VerbHelp());
  return send;
}

// The director starts the other processes with this command.
CLI::App* AddRole(CLI::App& app, Options& options) {
  CLI::App* role = app.add_subcommand("role", "Runs one process of the bench")->group("");
  role->add_option("NAME", options.role, "its name")->required();
  role->add_option("EXPECTED", options.words, "for the state manager: the processes it leads");
  return role;
}

}  // namespace bench
