#include "Options.h"

namespace bench {

namespace {

CLI::Option* AddInstant(CLI::App* app, const char* name, std::optional<reader::Instant>& instant,
                        const char* help) {
  const auto read = [&instant](const std::string& text) {
    std::string error;
    if (!ReadInstant(text, instant.emplace(), error)) throw CLI::ValidationError(error);
  };
  return app->add_option_function<std::string>(name, read, help)->type_name("T");
}

CLI::Option* AddSources(CLI::App* app, const char* name, std::optional<reader::Selection>& selection,
                        const char* help) {
  const auto read = [&selection](const std::string& text) {
    std::string error;
    if (!selection.emplace().Read(text, error)) throw CLI::ValidationError(error);
  };
  return app->add_option_function<std::string>(name, read, help)->type_name("SOURCES");
}

double ReadSpeed(const std::string& text) {
  if (text == "max") return kMaxSpeed;
  double speed = 0;
  if (ReadDecimal(text, speed) && speed >= 0.01 && speed <= 1000) return speed;
  throw CLI::ValidationError("'" + text + "' is no speed: 0.01 to 1000, or max");
}

}  // namespace

void AddRunNumber(CLI::App* app, Options& options) {
  app->add_option("--run", options.replay.run, "only this run; metadata info tells the numbers")
      ->type_name("N")
      ->check(CLI::Range(1, 1'000'000'000));
}

std::vector<CLI::Option*> AddStretch(CLI::App* app, Options& options) {
  return {AddInstant(app, "--from", options.replay.from, "begin at T, with the values known then"),
          AddInstant(app, "--to", options.replay.to, "end at T"),
          AddSources(app, "--only", options.replay.how.only, "only these sources, separated by commas"),
          AddSources(app, "--without", options.replay.how.without, "without these sources")};
}

CLI::App* AddReplay(CLI::App& app, Options& options) {
  CLI::App* replay =
      app.add_subcommand("replay", "Plays recordings, run by run: the servers send again what was recorded");
  replay->add_option("RECORDING", options.replay.recordings, "recordings, or directories with them")
      ->required();
  AddRunNumber(replay, options);
  (void)AddStretch(replay, options);
  const auto speed = [&options](const std::string& text) { options.run.speed = ReadSpeed(text); };
  replay
      ->add_option_function<std::string>("--speed", speed,
                                         "play this many times faster, or as fast as possible")
      ->type_name("N|max");
  replay->add_option("--ticks", options.ticks, "keep the ticks of the senders, or move them to now")
      ->type_name("keep|move")
      ->check(CLI::IsMember({"keep", "move"}));
  replay->add_flag("--loop", options.replay.how.loop, "play again and again, until Ctrl-C or \"send quit\"");
  AddProcesses(replay, options);
  replay->footer("If standard input is a terminal: space pauses and goes on, n or a dot plays one line.\n" +
                 replay->get_footer());
  return replay;
}

bool CompleteReplay(Options& options, std::string& error) {
  const bool realTime = options.run.speed == 1;
  if (options.ticks == "move" && !realTime) {
    error = "--ticks move goes with --speed 1: at another speed the ticks would leave the present";
    return false;
  }
  options.replay.how.moveTicks = options.ticks.empty() ? realTime : options.ticks == "move";
  options.replay.how.beginIsOpen = options.run.attach;
  return true;
}

}  // namespace bench
