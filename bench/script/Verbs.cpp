#include "Verbs.h"

#include <algorithm>
#include <cctype>
#include <cstdint>

#include "Processes.h"
#include "Sources.h"
#include "items/FpgaExternalEventItem.h"

namespace {

// clang-format off
constexpr Verb kVerbs[] = {
    {"bookmark", "Bench", "Sends a bookmark and waits for the notice that one was taken."},
    {"camera CAMERA STATE", "VideoMgr", "Tells the state of a camera."},
    {"camera entries STATE STATE STATE STATE STATE STATE STATE STATE STATE", "VideoMgr",
     "Publishes the nine camera entries."},
    {"config department TEXT TEXT", "ConfigMgr", "Publishes name and division."},
    {"config officer TEXT TEXT", "ConfigMgr", "Publishes name and badge number."},
    {"config recording SECONDS SECONDS RESOLUTION FPS KBPS", "ConfigMgr",
     "Publishes the time recorded before and after an event, and the quality."},
    {"config system TEXT TEXT", "ConfigMgr", "Publishes device name and software version."},
    {"config vehicle TEXT TEXT", "ConfigMgr", "Publishes unit and licence plate."},
    {"covert off", "StateMgr", "Leaves covert mode."},
    {"covert on", "StateMgr", "Enters covert mode."},
    {"crash SWITCH", "AccelHal", "Publishes that a crash was detected, or is over."},
    {"died PROCESS", "StateMgr", "Tells all processes but this one that it died."},
    {"direct record start [ID]", "StreamMgr", "Tells MetadataMgr of a recording event; without an id it gets one."},
    {"direct record stop", "StreamMgr", "Tells it of the end."},
    {"flood SERVER SOURCE SECONDS", kNamedServer,
     "It publishes one value so long, as fast as MetadataMgr takes it."},
    {"gps fix LATITUDE LONGITUDE KMH COURSE METRES", "GpsHal", "Publishes a place."},
    {"gps none", "GpsHal", "Publishes that the fix is lost, until the next gps fix."},
    {"gps rate RATE", "GpsHal", "Publishes the track that the vehicle drives, so often."},
    {"input INPUT SWITCH ...", "Fpga", "Publishes that inputs changed, at the same time."},
    {"kill SERVER", "Bench", "Kills it; the state manager tells of its death."},
    {"lasttick", "Bench", "Asks MetadataMgr for the last system tick of its store."},
    {"late SERVER MS", kNamedServer, "From now on it answers a subscription so late."},
    {"live LIVE SWITCH CAMERA ADDRESS PORT [HQ]", "ExternalMgr", "Publishes the state of a live stream."},
    {"loglevel [MASK]", "Bench", "Asks MetadataMgr for its log level; with a mask, sets it."},
    {"mic MIC PRESENCE ACTIVITY", "MicMgr", "Publishes the microphones, of which this one changed."},
    {"mic message MIC PRESENCE ACTIVITY", "MicMgr", "Tells the state of one microphone."},
    {"mic rate RATE", "MicMgr", "Publishes the microphones so often."},
    {"missing SERVER [MS]", "Bench", "Only before the start: it is not started, or so long after the others."},
    {"mute SERVER", "Bench", "Stops it: it answers no more, but is there."},
    {"ping", "Bench", "Asks MetadataMgr whether it is there."},
    {"pings SECONDS", "Bench", "Asks MetadataMgr so long, each 5 ms, whether it is there."},
    {"quality STREAM RESOLUTION FPS KBPS", "VideoMgr", "Publishes the quality of the streams, of which this one changed."},
    {"quit", "Bench", "Ends the drive: shuts all processes down."},
    {"radar SPEED SPEED SPEED SPEED", "RadarHal", "Publishes patrol, target, fastest and locked speed."},
    {"radar none", "RadarHal", "Publishes that there is no reading, until the next radar."},
    {"radar rate RATE", "RadarHal", "Publishes traffic along the track, so often."},
    {"record start", "StateMgr", "Begins a recording event."},
    {"record stop", "StateMgr", "Ends it."},
    {"refuse SERVER ITEM", kNamedServer, "From now on it has no such item."},
    {"restarted PROCESS", "StateMgr", "Tells all processes but this one that it was restarted."},
    {"start SERVER", "Bench", "Starts one that is dead or missing."},
    {"stream STREAM STATE", "VideoMgr", "Tells the state of a video stream."},
    {"temp SENSOR CELSIUS", "TempHal", "Publishes the temperatures, of which this one changed."},
    {"temp rate RATE", "TempHal", "Publishes the temperatures so often."},
    {"wake SERVER", "Bench", "Ends mute."},
};

struct Input {
  const char* name;
  std::uint32_t bit;
};
constexpr Input kInputs[] = {
    {"lights", FpgaExternalEventItem::kLights}, {"brakes", FpgaExternalEventItem::kBrakes},
    {"siren", FpgaExternalEventItem::kSiren},   {"aux", FpgaExternalEventItem::kAux},
    {"door", FpgaExternalEventItem::kDoorOpen}, {"ignition", FpgaExternalEventItem::kIgnition},
};
// clang-format on

template <std::uint32_t kLast>
bool IsUpTo(const std::string& word) {
  std::uint32_t number = 0;
  return ReadNumber(word, number) && number <= kLast;
}
constexpr auto IsMask = IsUpTo<0xFFFFFFFF>;
constexpr auto IsShort = IsUpTo<0xFFFF>;

// A number within so much of 0.
template <int kLimit, bool kNegative>
bool IsWithin(const std::string& word) {
  double number = 0;
  return ReadDecimal(word, number) && number <= kLimit && number >= (kNegative ? -kLimit : 0);
}

bool IsCelsius(const std::string& word) {
  return IsWithin<32767, true>(word) && word.find('.') == std::string::npos;
}

bool IsResolution(const std::string& word) {
  const std::size_t x = word.find('x', 1);
  return x != std::string::npos && IsShort(word.substr(0, x)) && IsShort(word.substr(x + 1));
}

bool IsProcess(const std::string& word) {
  std::uint32_t process = 0;
  return ReadProcess(word, process);
}

bool IsServer(const std::string& word) {
  const auto sources = Sources();
  return std::any_of(sources.begin(), sources.end(),
                     [&word](const Source& source) { return ProcessName(source.server) == word; });
}

bool IsSource(const std::string& word) {
  return FindSource(word) != nullptr;
}

bool IsText(const std::string& word) {
  constexpr std::size_t kMaxBytes = 255;
  return !word.empty() && word.size() <= kMaxBytes;
}

bool IsInput(const std::string& word) {
  return InputBit(word) != 0;
}

bool IsSwitch(const std::string& word) {
  return word == "on" || word == "off";
}
bool IsPresence(const std::string& word) {
  return word == "present" || word == "absent";
}
bool IsActivity(const std::string& word) {
  return word == "active" || word == "idle";
}
bool IsHq(const std::string& word) {
  return word == "hq";
}

constexpr ArgumentType kArgumentTypes[] = {
    {"ACTIVITY", IsActivity, "active or idle"},
    {"ADDRESS", IsText, "of the receiver, as 10.0.0.5"},
    {"CAMERA", IsUpTo<255>, "a number up to 255; MetadataMgr knows cameras 0 to 3"},
    {"CELSIUS", IsCelsius, "whole degrees, 16 bits with sign"},
    {"COURSE", IsWithin<360, false>, "degrees clockwise from north"},
    {"FPS", IsShort, "frames a second"},
    {"HQ", IsHq, "hq: in high quality"},
    {"ID", IsText, "a name of a recording event, at most 255 bytes"},
    {"INPUT", IsInput, "lights, brakes, siren, aux, door or ignition"},
    {"ITEM", IsMask, "the number of an item"},
    {"KBPS", IsShort, "kilobits a second"},
    {"KMH", IsWithin<1000, false>, "kilometres an hour"},
    {"LATITUDE", IsWithin<90, true>, "degrees, negative to the south"},
    {"LIVE", IsUpTo<5>, "a live stream, 0 to 5"},
    {"LONGITUDE", IsWithin<180, true>, "degrees, negative to the west"},
    {"MASK", IsMask, "a number of 32 bits, decimal or 0x..."},
    {"METRES", IsWithin<20000, true>, "altitude"},
    {"MIC", IsUpTo<3>, "a microphone, 0 to 3"},
    {"MS", IsUpTo<60000>, "milliseconds, at most 60000"},
    {"PORT", IsShort, "a port number"},
    {"PRESENCE", IsPresence, "present or absent"},
    {"PROCESS", IsProcess, "a process of the system by name (GpsHal, ...) or number"},
    {"RATE", IsWithin<1000, false>, "how often a second of the drive, at most 1000; 0: not at all"},
    {"RESOLUTION", IsResolution, "WIDTHxHEIGHT, as 1280x720"},
    {"SECONDS", IsShort, "seconds"},
    {"SENSOR", IsUpTo<3>, "a temperature sensor, 0 to 3"},
    {"SERVER", IsServer, "a server around MetadataMgr by name (GpsHal, ...)"},
    {"SOURCE", IsSource, "a value by its name in the list of what was sent (gps, temp, ...)"},
    {"SPEED", IsShort, "whole kilometres an hour"},
    {"STATE", IsMask, "a number; cameras in state 1 and 2 are active"},
    {"STREAM", IsUpTo<3>, "a video stream, 0 to 3"},
    {"SWITCH", IsSwitch, "on or off"},
    {"TEXT", IsText, "at most 255 bytes, with _ in place of blanks"},
};

bool IsSmall(const std::string& word) {
  return std::islower(static_cast<unsigned char>(word[0])) != 0;
}

// A verb's pattern taken apart.
struct Pattern {
  explicit Pattern(const Verb& verb) {
    for (std::string word : SplitWords(verb.pattern)) {
      if (IsSmall(word)) {
        verbWords.push_back(word);
        continue;
      }
      if (word == "...") {
        repeated = true;
        continue;
      }
      if (word[0] != '[') ++needed;
      std::erase_if(word, [](char c) { return c == '[' || c == ']'; });
      arguments.push_back(word);
    }
  }

  Words verbWords;
  Words arguments;         // names of argument types
  std::size_t needed = 0;  // arguments that must be there
  bool repeated = false;   // all of them may come again
};

// How many of the verb's words the line begins with.
std::size_t WordsInCommon(const Words& line, const Words& verb) {
  const auto ends = std::mismatch(line.begin(), line.end(), verb.begin(), verb.end());
  return static_cast<std::size_t>(ends.first - line.begin());
}

// The one with the most words that the line begins with; null when there is none.
const Verb* FindVerb(const Words& words) {
  const Verb* found = nullptr;
  std::size_t most = 0;
  for (const Verb& verb : kVerbs) {
    const Words verbWords = Pattern(verb).verbWords;
    if (verbWords.size() <= most || WordsInCommon(words, verbWords) != verbWords.size()) continue;
    found = &verb;
    most = verbWords.size();
  }
  return found;
}

// Names the first word that no verb goes on with.
std::string UnknownVerb(const Words& words) {
  std::size_t common = 0;
  Words next;
  for (const Verb& verb : kVerbs) {
    const Words verbWords = Pattern(verb).verbWords;
    const std::size_t here = WordsInCommon(words, verbWords);
    if (here > common) next.clear();
    common = std::max(common, here);
    const bool goesOn = here == common && common > 0;
    if (goesOn && (next.empty() || next.back() != verbWords[common])) next.push_back(verbWords[common]);
  }
  if (common == 0) return Quoted(words[0]) + " is not a verb";
  std::string wanted = next[0];
  for (std::size_t i = 1; i < next.size(); ++i) wanted += " or " + next[i];
  if (common == words.size()) return Quoted(words.back()) + " must be followed by " + wanted;
  return Quoted(words[common]) + " is wrong: " + Quoted(words[common - 1]) + " must be followed by " + wanted;
}

const ArgumentType* FindArgumentType(const std::string& name) {
  const auto found = std::find_if(std::begin(kArgumentTypes), std::end(kArgumentTypes),
                                  [&name](const ArgumentType& type) { return name == type.name; });
  return found == std::end(kArgumentTypes) ? nullptr : found;
}

bool CheckArguments(const Pattern& pattern, const Words& words, const Words& arguments, std::string& error) {
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (i >= pattern.arguments.size() && !pattern.repeated) {
      error = Quoted(arguments[i]) + " is one word too many";
      return false;
    }
    const std::string& name = pattern.arguments[i % pattern.arguments.size()];
    const ArgumentType* type = FindArgumentType(name);
    if (type != nullptr && type->accepts(arguments[i])) continue;
    error = Quoted(arguments[i]) + " is not a " + name;
    if (type != nullptr) error += std::string(": ") + type->what;
    return false;
  }
  const std::size_t given = arguments.size();
  if (given >= pattern.needed && (!pattern.repeated || given % pattern.needed == 0)) return true;
  error =
      Quoted(words.back()) + " must be followed by a " + pattern.arguments[given % pattern.arguments.size()];
  return false;
}

std::string HelpRow(const std::string& name, const char* text) {
  constexpr std::size_t kColumn = 22;
  const bool fits = name.size() < kColumn;
  const std::string gap = fits ? std::string(kColumn - name.size(), ' ') : "\n  " + std::string(kColumn, ' ');
  return "  " + name + gap + text + "\n";
}

}  // namespace

std::span<const Verb> Verbs() {
  return kVerbs;
}

std::string NameOf(const Verb& verb) {
  return JoinWords(Pattern(verb).verbWords);
}

bool ParseCommand(const Words& words, Command& command, std::string& error) {
  if (words.empty()) {
    error = "a verb is missing";
    return false;
  }
  const Verb* verb = FindVerb(words);
  if (verb == nullptr) {
    error = UnknownVerb(words);
    return false;
  }
  const Pattern pattern(*verb);
  const Words arguments(words.begin() + static_cast<std::ptrdiff_t>(pattern.verbWords.size()), words.end());
  if (!CheckArguments(pattern, words, arguments, error)) return false;
  command = {verb, words, arguments};
  return true;
}

std::string PerformerOf(const Command& command) {
  const std::string performer = command.verb->performer;
  return performer == kNamedServer ? command.arguments[0] : performer;
}

std::uint32_t InputBit(const std::string& word) {
  for (const Input& input : kInputs) {
    if (word == input.name) return input.bit;
  }
  return 0;
}

std::string VerbHelp() {
  std::string help = "Verbs:\n";
  for (const Verb& verb : kVerbs) help += HelpRow(verb.pattern, verb.help);
  help +=
      "In a drive the lines \"before VERB ARGUMENTS\" come first; they are done when the servers have\n"
      "started and MetadataMgr has not.\n";
  help += "Arguments:\n";
  for (const ArgumentType& type : kArgumentTypes) help += HelpRow(type.name, type.what);
  return help;
}
