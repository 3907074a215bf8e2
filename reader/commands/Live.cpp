#include <poll.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstring>

#include "Declarations.h"
#include "Output.h"
#include "Print.h"
#include "sharedmem/MetadataSharedMemReader.h"
#include "system/BigEndian.h"

namespace reader {
namespace {

using Fields = MetadataSharedMemReader::Fields;

// Reads values of the shared record by offset.
struct Record {
  const Fields& fields;

  int Byte(std::size_t offset) const { return fields[offset]; }
  int Short(std::size_t offset) const { return GetU16(fields.data() + offset); }
  std::uint32_t Word(std::size_t offset) const { return GetU32(fields.data() + offset); }
  std::int32_t Signed(std::size_t offset) const { return static_cast<std::int32_t>(Word(offset)); }
  double Tenths(std::size_t offset) const { return Short(offset) / 10.0; }
};

constexpr std::size_t kVersion = 0x00;
constexpr int kKept = 0x0100;
constexpr std::int32_t kNoAltitude = 0x07FFFFFF;
constexpr int kNoRadarReading = 0x80;

void PutPlace(const Record& r, std::string& out) {
  Print(out, "%u\xC2\xB0%02d.%04u' %c  %u\xC2\xB0%02d.%04u' %c", r.Word(0x0C), r.Short(0x10), r.Word(0x14),
        r.Byte(0x08) == 'N' ? 'N' : 'S', r.Word(0x1C), r.Short(0x20), r.Word(0x24),
        r.Byte(0x18) == 'E' ? 'E' : 'W');
}

void PutAltitude(const Record& r, std::string& out) {
  if (r.Signed(0x34) == kNoAltitude) {
    out += "not known";
  } else {
    Print(out, "%.1f m", r.Signed(0x34) / 10.0);
  }
}

void PutUtc(const Record& r, std::string& out) {
  const unsigned int date = r.Word(0x48);
  const unsigned int seconds = r.Word(0x44) / 1000;
  Print(out, "%04u-%02u-%02uT%02u:%02u:%02uZ", date / 10000, date / 100 % 100, date % 100, seconds / 3600,
        seconds / 60 % 60, seconds % 60);
}

struct Line {
  const char* name;
  void (*put)(const Record& r, std::string& out);
};
constexpr Line kLines[] = {
    {"record",
     [](const Record& r, std::string& out) {
       out += r.Short(kVersion) == kKept ? "kept by MetadataMgr" : "no longer kept";
     }},
    {"GPS",
     [](const Record& r, std::string& out) {
       Print(out, "%s, quality %u, %u dimensions", r.Byte(0x04) == 1 ? "valid" : "not valid", r.Word(0x2C),
             r.Word(0x30));
     }},
    {"place", PutPlace},
    {"altitude", PutAltitude},
    {"speed", [](const Record& r,
                 std::string& out) { Print(out, "%.1f km/h, %.1f knots", r.Tenths(0x40), r.Tenths(0x28)); }},
    {"course", [](const Record& r, std::string& out) { Print(out, "%.1f\xC2\xB0", r.Tenths(0x42)); }},
    {"satellites",
     [](const Record& r, std::string& out) {
       Print(out, "%u used, %d in view, the best at %d dB", r.Word(0x38), r.Short(0x2A), r.Signed(0x3C));
     }},
    {"GPS time", PutUtc},
    {"radar",
     [](const Record& r, std::string& out) {
       Print(out, "%s, status 0x%04x", (r.Short(0x4C) & kNoRadarReading) != 0 ? "no reading" : "reading",
             static_cast<unsigned int>(r.Short(0x4C)));
     }},
    {"radar speeds",
     [](const Record& r, std::string& out) {
       Print(out, "patrol %d, target %d, fastest %d, locked %d km/h", r.Short(0x4E), r.Short(0x50),
             r.Short(0x52), r.Short(0x54));
     }},
};

struct LiveOptions {
  bool once = false;
  double everySeconds = 0.5;
};

// On a terminal, repaints in place.
int Live(const LiveOptions& options) {
  MetadataSharedMemReader reader;
  if (const int error = reader.Attach(); error != 0) {
    (void)std::fprintf(stderr, "metadata: no shared record (METADATA_SHM): %s\n", std::strerror(error));
    return kFinding;
  }
  const bool refresh = !options.once && isatty(STDOUT_FILENO) != 0;
  Output out(Output::Kind::kDrawing);
  if (refresh) out.Text() = "\x1B[2J";
  do {
    Fields fields{};
    if (refresh) out.Text() += "\x1B[H";
    const bool whole = reader.Read(fields);
    if (!whole) out.Text() += "the record was left half written\n";
    for (const Line& line : kLines) {
      Print(out.Text(), "%-14s", line.name);
      line.put(Record{fields}, out.Text());
      out.Text() += refresh ? "\x1B[K\n" : "\n";
    }
    if (!out.Flush() || (!refresh && !whole)) return kFinding;
    if (refresh) (void)poll(nullptr, 0, static_cast<int>(options.everySeconds * 1000));
  } while (refresh);
  return kGood;
}

}  // namespace

Action DeclareLive(CLI::App& app) {
  auto options = std::make_shared<LiveOptions>();
  app.add_flag("--once", options->once, "prints the values once; the default if the output is no terminal");
  app.add_option("--every", options->everySeconds, "interval between two refreshes")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.05, 3600.0))
      ->capture_default_str();
  app.footer(
      "On a terminal, runs until it is interrupted.\n"
      "Examples:\n"
      "  metadata live\n"
      "  metadata live --once | grep place");
  return [options] { return Live(*options); };
}

}  // namespace reader
