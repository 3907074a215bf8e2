#include "ArgumentTypes.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "Processes.h"
#include "Sources.h"
#include "Words.h"
#include "items/FpgaExternalEventItem.h"
#include "system/Servers.h"

namespace bench {

namespace {

constexpr double kMost16 = 0xFFFF;
constexpr double kMost32 = 0xFFFFFFFF;
constexpr auto kWhole = ArgumentType::kWhole;
constexpr auto kDecimal = ArgumentType::kDecimal;

struct Input {
  const char* name;
  std::uint32_t bit;
};
constexpr Input kInputs[] = {
    {"lights", FpgaExternalEventItem::kLights}, {"brakes", FpgaExternalEventItem::kBrakes},
    {"siren", FpgaExternalEventItem::kSiren},   {"aux", FpgaExternalEventItem::kAux},
    {"door", FpgaExternalEventItem::kDoorOpen}, {"ignition", FpgaExternalEventItem::kIgnition},
};

bool IsResolution(const std::string& word) {
  const auto isShort = [](const std::string& text) {
    std::uint32_t number = 0;
    return ReadNumber(text, number) && number <= kMost16;
  };
  const std::size_t x = word.find('x', 1);
  return x != std::string::npos && isShort(word.substr(0, x)) && isShort(word.substr(x + 1));
}

bool IsAddress(const std::string& word) {
  in_addr address{};
  return inet_pton(AF_INET, word.c_str(), &address) == 1;
}

bool IsProcess(const std::string& word) {
  std::uint32_t process = 0;
  return ReadProcess(word, process);
}

bool IsServer(const std::string& word) {
  return std::any_of(std::begin(servers::kAll), std::end(servers::kAll),
                     [&word](const ServerRow& server) { return server.name == word; });
}

bool IsFollower(const std::string& word) {
  return IsServer(word) && word != StateMgrName();
}

bool IsSource(const std::string& word) {
  return FindSource(word) != nullptr;
}

bool IsText(const std::string& word) {
  constexpr std::size_t kMaxBytes = 255;
  return !word.empty() && word.size() <= kMaxBytes;
}

bool IsBytes(const std::string& word) {
  constexpr std::size_t kMaxDigits = 4096;
  return !word.empty() && word.size() <= kMaxDigits && word.size() % 2 == 0 &&
         word.find_first_not_of("0123456789abcdef") == std::string::npos;
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

// clang-format off
constexpr ArgumentType kArgumentTypes[] = {
    {.name = "ACTIVITY", .what = "active or idle", .accepts = IsActivity},
    {.name = "ADDRESS", .what = "the IPv4 address of the receiver, as 10.0.0.5", .accepts = IsAddress},
    {.name = "BYTES", .what = "the payload in hexadecimal, as 0100000007", .accepts = IsBytes},
    {"CAMERA", "a camera; MetadataMgr knows cameras 0 to 3", kWhole, 0, 255},
    {"CELSIUS", "whole degrees", kWhole, -32767, 32767},
    {"COURSE", "degrees clockwise from north", kDecimal, 0, 360},
    {.name = "FOLLOWER", .what = "a server other than the state manager, by name", .accepts = IsFollower},
    {"FPS", "frames a second", kWhole, 0, kMost16},
    {.name = "HQ", .what = "hq: in high quality", .accepts = IsHq},
    {.name = "ID", .what = "a name of a recording event, at most 255 bytes", .accepts = IsText},
    {.name = "INPUT", .what = "lights, brakes, siren, aux, door or ignition", .accepts = IsInput},
    {"ITEM", "the number of an item", kWhole, 0, kMost32},
    {"KBPS", "kilobits a second", kWhole, 0, kMost16},
    {"KMH", "kilometres an hour", kDecimal, 0, 1000},
    {"LATITUDE", "degrees, negative to the south", kDecimal, -90, 90},
    {"LIVE", "a live stream", kWhole, 0, 5},
    {"LONGITUDE", "degrees, negative to the west", kDecimal, -180, 180},
    {"MASK", "a number, decimal or 0x...", kWhole, 0, kMost32},
    {"METRES", "altitude", kDecimal, -20000, 20000},
    {"MIC", "a microphone", kWhole, 0, 3},
    {"MS", "milliseconds", kWhole, 0, 60000},
    {"PORT", "a port number", kWhole, 0, kMost16},
    {.name = "PRESENCE", .what = "present or absent", .accepts = IsPresence},
    {.name = "PROCESS", .what = "a process of the system by name (GpsHal, ...) or number", .accepts = IsProcess},
    {"RATE", "readings per second of the drive; 0: none", kDecimal, 0, 1000},
    {.name = "RESOLUTION", .what = "WIDTHxHEIGHT, each 0 to 65535, as 1280x720", .accepts = IsResolution},
    {"SECONDS", "seconds", kWhole, 0, kMost16},
    {"SENSOR", "a temperature sensor", kWhole, 0, 3},
    {.name = "SERVER", .what = "a server around MetadataMgr by name (GpsHal, ...)", .accepts = IsServer},
    {.name = "SOURCE", .what = "a source by its name in the list of what was sent (gps, temp, ...)", .accepts = IsSource},
    {"SPEED", "kilometres an hour", kWhole, 0, kMost16},
    {"STATE", "a state; cameras in state 1 and 2 are active", kWhole, 0, kMost32},
    {"STREAM", "a video stream", kWhole, 0, 3},
    {.name = "SWITCH", .what = "on or off", .accepts = IsSwitch},
    {.name = "TEXT", .what = "at most 255 bytes, with _ in place of blanks", .accepts = IsText},
    {"TICK", "a system tick", kWhole, 0, kMost32},
};
// clang-format on

// Hexadecimal numbers have no sign.
bool ReadWhole(const std::string& word, double& value) {
  std::uint32_t number = 0;
  if (!word.starts_with('-')) {
    if (!ReadNumber(word, number)) return false;
    value = number;
    return true;
  }
  return ReadDecimal(word, value) && word.find('.') == std::string::npos;
}

std::string Shown(double number) {
  char text[32];
  (void)std::snprintf(text, sizeof text, "%.10g", number);
  return text;
}

}  // namespace

bool ArgumentType::Accepts(const std::string& word) const {
  if (kind == kWord) return accepts(word);
  double number = 0;
  const bool read = kind == kWhole ? ReadWhole(word, number) : ReadDecimal(word, number);
  return read && number >= least && number <= most;
}

std::string ArgumentType::Describe() const {
  if (kind == kWord) return what;
  return Shown(least) + " to " + Shown(most) + ": " + what;
}

std::span<const ArgumentType> ArgumentTypes() {
  return kArgumentTypes;
}

const ArgumentType* FindArgumentType(const std::string& name) {
  const auto* found = std::find_if(std::begin(kArgumentTypes), std::end(kArgumentTypes),
                                   [&name](const ArgumentType& type) { return name == type.name; });
  return found == std::end(kArgumentTypes) ? nullptr : found;
}

std::uint32_t InputBit(const std::string& word) {
  for (const Input& input : kInputs) {
    if (word == input.name) return input.bit;
  }
  return 0;
}

}  // namespace bench
